// What a call that is to fail says.

#pragma once

#include "Vyx/Exception.h"

#include <string>

// The message with which another instance of a name that is taken is refused.
template <class Call> std::string nameInUse(Call call) {
  try {
    call();
  } catch (Vyx::NameInUseException const& error) {
    return error.what();
  }
  return "nothing was thrown";
}
