// The reactor side of a stream adapter: what stands in the entity's list. A stream adapter derives from the
// runtime's base and can't be a reactor of X too, so this small object hears for it.

#pragma once

#include "replication/Walk.h"

namespace replication {

template <class X> class StreamAdapterOf;

// The class derived from this forwards each entry to the stream adapter's of the same name.
template <class X> class AdapterOf : public X::Notifiee {
public:
  using Behind = StreamAdapterOf<X>;

  AdapterOf(Vyx::Ptr<X> const& entity, Behind* behind) : behind_(behind) {
    this->isRegisteredNotifieeIs(true);
    this->notifierIs(entity);
    this->isWeakReferenceIs(true);
  }

  Vyx::Ptr<Vyx::PtrInterface const> vyxReactor() const override { return vyxRawReactor(); }
  Vyx::PtrInterface const* vyxRawReactor() const override {
    return behind_ ? static_cast<Vyx::PtrInterface const*>(behind_) : this;
  }
  Behind* vyxReactorAdapter() const { return behind_; }
  void vyxReactorAdapterIs(Behind* behind) { behind_ = behind; }

  // The two sides stop each other by the test for no change.
  void hasNotificationActiveIs(bool active) override {
    if (this->hasNotificationActive() == active) return;
    X::Notifiee::hasNotificationActiveIs(active);
    if (behind_ && !this->vyxMarkedForDeletion()) behind_->hasNotificationActiveIs(active);
  }

  void onZeroReferences() override {
    if (behind_) behind_->Vyx::Entity::VyxNboAttrLogSa::onZeroReferences();
    hasNotificationActiveIs(false);
  }

  using X::Notifiee::onNotificationException;
  void onNotificationException(Vyx::AttributeId aid) override {
    if (behind_) behind_->Vyx::Entity::VyxNboAttrLogSa::onNotificationException(aid);
  }

protected:
  // An entry of the entity's line has been called.
  template <class Attr, class... Key> void vyxTell(Key const&... key) {
    if (behind_) react<Attr>(static_cast<typename X::VyxNboAttrLogSa&>(*behind_), key...);
  }

private:
  Behind* behind_; // Not counted: the stream adapter owns this object.
};

} // namespace replication
