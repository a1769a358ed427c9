// The trace facility of the session copy.

#pragma once

#include "Vyx/Trace.h"

namespace Pbr {

// "PbrCopy"; made by the first use.
Vyx::TraceHandle& copyTrace();

// Composes a statement of the copy if anyone wants to hear it.
template <class... Parts>
void traceCopy(unsigned level, int line, char const* function, Parts const&... parts) {
  if (Vyx::traceWanted(copyTrace(), level))
    Vyx::trace(copyTrace(), level, "PbrCopy", line, function, parts...);
}

} // namespace Pbr
