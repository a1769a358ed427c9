// Reflection on entities.

#pragma once

#include "Vyx/GenericIf.h"

namespace Vyx {

class GenericIfEntity : public GenericIf {
public:
  // Hears what a registered object hears, with the member that it is about.
  class ChangeListener {
  public:
    // `key` is that of the member which has come, changed or gone; null where the attribute has no members.
    virtual void onChange(AttributeId id, Ptr<GenericIf const> const& key) = 0;

  protected:
    ~ChangeListener() = default;
  };

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

  // Null for none. REQUIRES: the listener is taken off before it ends.
  void changeListenerIs(ChangeListener* listener) { changeListener_ = listener; }
  bool hasChangeListener() const { return changeListener_; }

  // A change of the entity reached its adapter. ORDER: as GenericIf's, then the change listener.
  void vyxForwardChange(AttributeId id, Ptr<GenericIf const> const& key);

private:
  Ptr<Entity> entity_;
  ChangeListener* changeListener_ = nullptr;
};

} // namespace Vyx
