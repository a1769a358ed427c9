#include "Vyx/GenericIfEntity.h"

#include "Vyx/KeyHash.h"

namespace Vyx {

std::uint32_t GenericIfEntity::hash() const {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(entity_.ptr()) >> 4);
}

void GenericIfEntity::vyxForwardChange(AttributeId id, Ptr<GenericIf const> const& key) {
  Ptr<GenericIfEntity> const held(this); // A listener may let go of it.
  vyxForward(id);
  if (changeListener_ && !vyxMarkedForDeletion()) changeListener_->onChange(id, key);
}

} // namespace Vyx
