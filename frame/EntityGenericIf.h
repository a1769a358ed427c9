// Reflection on the entities of one type, and the reactor by which a reflection object hears of changes.

#pragma once

#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"

namespace frame {

// Forwards what it hears to its reflection object, while there is one.
template <class X> class GenericIfAdapter : public X::Notifiee {
public:
  explicit GenericIfAdapter(Vyx::GenericIfEntity* to) : to_(to) {}
  void genericIfIs(Vyx::GenericIfEntity* to) { to_ = to; }

protected:
  void forward(Vyx::AttributeId id) {
    if (to_) to_->vyxForwardChange(id, nullptr);
  }
  template <class Key> void forward(Vyx::AttributeId id, Key const& key) {
    if (!to_) return;
    Vyx::Ptr<Vyx::GenericIf const> wrapped;
    if (to_->hasChangeListener()) wrapped = Vyx::wrap<Key>(key);
    to_->vyxForwardChange(id, wrapped);
  }

private:
  Vyx::GenericIfEntity* to_; // Not counted: the reflection object holds the adapter.
};

// `Self` is X::GenericIf_, with the nested GenericIf_Adapter_.
template <class X, class Self> class EntityGenericIf : public Vyx::GenericIfEntity {
public:
  using Vyx::GenericIfEntity::GenericIfEntity;
  ~EntityGenericIf() override { drop(); }

  // A registered reflection object hears of every change by onAttribute(id), its change listener by
  // onChange(id, key).
  void isRegisteredNotifieeIs(bool registered) const override {
    if (registered == static_cast<bool>(adapter_)) return;
    if (!registered) {
      drop();
      return;
    }
    adapter_ = Vyx::ptrFromNew(new typename Self::GenericIf_Adapter_(const_cast<EntityGenericIf*>(this)));
    adapter_->isRegisteredNotifieeIs(true);
    adapter_->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(this->entity().ptr()));
  }

private:
  void drop() const {
    if (!adapter_) return;
    adapter_->genericIfIs(nullptr);
    adapter_->notifierIs(nullptr);
    adapter_ = nullptr;
  }
  mutable Vyx::Ptr<GenericIfAdapter<X>> adapter_;
};

} // namespace frame
