// The list of reactors typed with the class that the notifier's line tells.

#pragma once

#include "Vyx/ReactorList.h"

namespace Vyx {

template <class T> class ListRaw : public BaseRefCollection<T, ReactorList> {
public:
  class LrIteratorConst;

  T* head() const { return static_cast<T*>(ReactorList::head()); }
};

// Walks the list as it stands. REQUIRES: the list doesn't change while the iterator is used; a round, which
// must bear changes, uses SnapshotIterator.
template <class T> class ListRaw<T>::LrIteratorConst {
public:
  explicit LrIteratorConst(ListRaw const& list) : version_(list.version()), at_(list.head()) {}
  explicit operator bool() const { return at_ != nullptr; }
  T* operator->() const { return at_; }
  T& operator*() const { return *at_; }
  LrIteratorConst& operator++() {
    at_ = static_cast<T*>(ReactorList::next(at_));
    return *this;
  }

private:
  std::uint32_t version_;
  T* at_;
};

} // namespace Vyx
