// The iterators of an entity's collections.

#pragma once

#include "Vyx/Ptr.h"

namespace frame {

// Adds to a collection's iterator how a loop reads the member: `key()` and, of a record, `value()`; an entity
// is reached by `*it` and `it->`. Const or not, it walks the same way; see the collection for what a loop's
// body may do.
template <class Base, class Member> class MemberIterator : public Base {
public:
  using Base::Base;
  decltype(auto) value() const { return Base::current()->value(); }
  Member& operator*() const { return *Base::current(); }
  Member* operator->() const { return Base::current(); }
  MemberIterator& operator++() {
    Base::advance();
    return *this;
  }
};

// REQUIRES: the entity outlives the iterator.
template <class Map>
using IteratorConst = MemberIterator<typename Map::IteratorConst, typename Map::Member const>;

// Also keeps the entity whose collection it walks alive for as long as the iterator lives.
template <class X, class Map>
class Iterator : public MemberIterator<typename Map::Iterator, typename Map::Member> {
public:
  using Base = MemberIterator<typename Map::Iterator, typename Map::Member>;
  Iterator(Vyx::Ptr<X> of, Map const& map) : Base(map), of_(std::move(of)) {}
  template <class K>
  Iterator(Vyx::Ptr<X> of, Map const& map, K const& key) : Base(map, key), of_(std::move(of)) {}
  Iterator(Iterator const&) = default;
  Iterator& operator=(Iterator const&) = default;
  // The collection may end with the entity, so the member goes back to it before.
  ~Iterator() override {
    if constexpr (requires { this->release(); }) this->release();
  }

private:
  Vyx::Ptr<X> of_;
};

} // namespace frame
