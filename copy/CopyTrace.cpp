#include "CopyTrace.h"

namespace Pbr {

Vyx::TraceHandle& copyTrace() {
  static Vyx::TraceHandle handle("PbrCopy", false);
  return handle;
}

} // namespace Pbr
