// Reflection on entities.

#pragma once

#include "Vyx/GenericIf.h"

namespace Vyx {

class GenericIfEntity : public GenericIf {
public:
  explicit GenericIfEntity(Ptr<Entity> entity) : GenericIf(false), entity_(std::move(entity)) {}
  // On a const instance every modifying operation is refused.
  explicit GenericIfEntity(Ptr<Entity const> const& entity)
      : GenericIf(true), entity_(const_cast<Entity*>(entity.ptr())) {}

  Ptr<Entity> const& entity() const { return entity_; }

  VyxType const* type() const override { return entity_->fwkType(); }
  void* object() const override { return entity_.ptr(); }
  // Accepts the entity's own type and every type that it derives from.
  void* rawPtr(VyxType const* as) const override {
    if (!type()->isA(as)) throwTypeException(type()->name().charPtr());
    return entity_.ptr();
  }
  String8 attributeString(AttributeId id) const override { return entity_->attributeString(id); }
  // The entity's path, as people read it.
  String8 strRep() const override { return entity_->fullName(); }
  std::uint32_t hash() const override;

private:
  Ptr<Entity> entity_;
};

} // namespace Vyx
