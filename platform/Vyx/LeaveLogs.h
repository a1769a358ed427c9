// An entity that leaves its parent leaves every attribute log with it.

#pragma once

#include "Vyx/ReactorList.h"

namespace Vyx {

void leaveLogsOfAdapters(ReactorList const& reactors);

// Takes the entity of these reactors, and everything below it, off every log that it is on.
inline void leaveLogs(ReactorList const& reactors) {
  if (!reactors.empty()) leaveLogsOfAdapters(reactors);
}

} // namespace Vyx
