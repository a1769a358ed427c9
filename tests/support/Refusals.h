// What a call that is to fail says.

#pragma once

#include "Vyx/Exception.h"

#include <string>
#include <utility>

// The message of an exception of that type.
template <class Error, class Call> std::string refusal(Call call) {
  try {
    call();
  } catch (Error const& error) {
    return error.what();
  }
  return "nothing was thrown";
}

// The message with which another instance of a name that is taken is refused.
template <class Call> std::string nameInUse(Call call) {
  return refusal<Vyx::NameInUseException>(std::move(call));
}
