// The notification round: the one road by which reactors hear of anything.
//
// Invariants:
// (1) A round visits the reactors that were linked when it began, stream adapters first, then in the order of
//     registration. One that nobody else holds any more when its turn comes is passed over.
// (2) What a reactor's entry throws goes to that reactor's onNotificationException and the round goes on.
// What
//     that throws ends the round and reaches the caller; what was stored stays stored.
// (3) Without reactors a round costs one comparison. A round allocates only when a list of reactors changes,
//     or a counted object ends, during it while more than 16 reactors are still to be called.

#pragma once

#include "Vyx/Exception.h"
#include "Vyx/SnapshotIterator.h"
#include "frame/LineCast.h"

namespace frame {

// Calls `tell` for each reactor of the class Target; reactors of the list's base class alone are skipped.
template <class Target, class Listed, class Tell>
void runRound(Vyx::ListRaw<Listed> const& reactors, Vyx::AttributeId id, Tell const& tell) {
  for (Vyx::SnapshotIterator<Vyx::ListRaw<Listed>> at(reactors); Listed* reactor = at.current();
       at.advance()) {
    try {
      Vyx::Expect expect(Vyx::Exception::kAny);
      if (Target* target = lineCast<Target>(reactor)) tell(*target);
    } catch (...) {
      reactor->onNotificationException(id);
    }
  }
}

// Tells the entity's reactors of its attribute; for a keyed one, with the key.
// NOTIFIES: the attribute's own entry.
template <class Attr, class... Key> void notify(typename Attr::Owner const& of, Key const&... key) {
  auto const& reactors = of.vyxReactors();
  if (__builtin_expect(reactors.empty(), true)) return; // The quiet way has no jump.
  runRound<typename Attr::Owner::NotifieeConst>(reactors, Attr::id,
                                                [&](auto& reactor) { Attr::tell(reactor, key...); });
}

// NOTIFIES: onIsNondestructing(), when the state changes. An object that nobody holds ends when it becomes
// destructible again.
template <class X> void isNondestructingIs(X& of, bool value) {
  if (of.isNondestructing() == value) return;
  Vyx::Ptr<X> const held(&of);
  of.Vyx::PtrInterface::isNondestructingIs(value);
  if (of.vyxReactors().empty()) return;
  runRound<typename X::NotifieeConst>(of.vyxReactors(), Vyx::kIsNondestructingId,
                                      [](auto& reactor) { reactor.onIsNondestructing(); });
}

// NOTIFIES: onZeroReferences().
template <class X> void zeroReferencesIs(X& of) {
  if (of.vyxReactors().empty()) return;
  runRound<typename X::NotifieeConst>(of.vyxReactors(), Vyx::kZeroReferencesId,
                                      [](auto& reactor) { reactor.onZeroReferences(); });
}

} // namespace frame
