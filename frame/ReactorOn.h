// How a reactor of the class X::NotifieeConst is attached to an X.
//
// Invariants:
// (1) A reactor is in its notifier's list exactly while it has a notifier, is registered and no zombie.
// (2) A reactor that works for a stream adapter stands at the head of the list, every other at its tail.
// (3) The notifier is counted, unless the reactor is weak.

#pragma once

#include "Vyx/ListRaw.h"
#include "Vyx/StreamAdapter.h"
#include "frame/LineCast.h"

namespace frame {

// A zombie is linked when it comes back.
template <class X> void linkReactor(X const& to, Vyx::Entity::NotifieeConst* reactor) {
  if (reactor->vyxMarkedForDeletion()) return;
  auto const behind = reactor->vyxReactor();
  bool const forAdapter =
      behind.ptr() != reactor && dynamic_cast<Vyx::Entity::VyxNboAttrLogSa const*>(behind.ptr()) != nullptr;
  if (forAdapter)
    to.vyxReactors().linkHead(reactor);
  else
    to.vyxReactors().linkTail(reactor);
}

// The part of a reactor interface that is the same for every entity type X; Base is the base type's
// interface.
template <class X, class Base> class ReactorOn : public Base {
public:
  Vyx::Ptr<X const> notifier() const { return current(); }

  Vyx::String8 name() const override { return current() ? Vyx::String8(current()->name()) : Vyx::String8(); }

  void isRegisteredNotifieeIs(bool registered) const override {
    if (this->isRegisteredNotifiee() == registered) return;
    this->vyxIsRegistered(registered);
    Vyx::Ptr<X const> const held(current());
    if (!held) return;
    if (registered)
      linkReactor(*held, self());
    else
      held->vyxReactors().unlink(self());
  }

  void notifierIs(Vyx::Ptr<Vyx::PtrInterface const> const& notifier) override {
    auto const* next = lineCast<X const>(notifier.ptr());
    X const* const before = current();
    if (next == before) return;
    Vyx::Ptr<X const> const held(before);
    Vyx::Entity::NotifieeConst::notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(next));
    if (this->isWeakReference()) {
      if (before) before->vyxReferenceInc();
      if (next) next->vyxReferenceDec();
    }
    if (!this->isRegisteredNotifiee()) return;
    if (before) before->vyxReactors().unlink(self());
    if (next) linkReactor(*next, self());
  }

  ~ReactorOn() override { leave(); }

protected:
  ReactorOn() = default;

  // The notifier has been checked to be an X when it was set.
  X const* current() const { return static_cast<X const*>(this->vyxNotifier()); }

private:
  Vyx::Entity::NotifieeConst* self() const { return const_cast<ReactorOn*>(this); }

  // A zombie was taken out of the list before. The classes of a line share the list: the first of them to end
  // unlinks, the others find nothing more to do.
  void leave() {
    if (!this->vyxNotifier() || !this->isRegisteredNotifiee() || this->vyxMarkedForDeletion()) return;
    Vyx::Ptr<X const> const held(current());
    held->vyxReactors().unlink(self());
    this->vyxIsRegistered(false);
  }
};

// A reactor for a writable notifier.
template <class X> class WritableReactorOn : public X::NotifieeConst {
public:
  Vyx::Ptr<X> notifier() const { return const_cast<X*>(this->current()); }

protected:
  WritableReactorOn() = default;
};

} // namespace frame
