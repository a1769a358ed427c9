#include "Vyx/GenericIfEntity.h"

#include "Vyx/KeyHash.h"

namespace Vyx {

std::uint32_t GenericIfEntity::hash() const {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(entity_.ptr()) >> 4);
}

} // namespace Vyx
