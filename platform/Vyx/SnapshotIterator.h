// A walk over the reactors that were in a list when it began, typed with the list's class.

#pragma once

#include "Vyx/ListRaw.h"
#include "Vyx/ReactorSnapshot.h"

namespace Vyx {

template <class List> class SnapshotIterator;

template <class R> class SnapshotIterator<ListRaw<R>> : public ReactorSnapshot {
public:
  explicit SnapshotIterator(ListRaw<R> const& list) : ReactorSnapshot(list) {}
  R* current() const { return static_cast<R*>(ReactorSnapshot::current()); }
};

} // namespace Vyx
