#include "Vyx/VFPtrInterface.h"

namespace Vyx {

bool VFPtrInterface::enableThreadSafePointers = false;

} // namespace Vyx
