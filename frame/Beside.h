// Finding the members of one collection in another of the same kind.

#pragma once

#include "Vyx/Ptr.h"

namespace frame {

// Asked for the keys of another collection in the order of a walk over that one. Equal collections walk
// alike, so the member asked for is usually the next one; only else it is looked up, unless it would stand
// behind all others. The collection may change meanwhile. REQUIRES: it outlives this object.
template <class Map> class Beside {
public:
  using Member = typename Map::Member;

  explicit Beside(Map const& map) : map_(map), next_(map), version_(map.version()) {}

  // RETURNS the member of that key, or null.
  Vyx::Ptr<Member> find(typename Map::Key const& key) {
    bool const isCurrent = version_ == map_.version();
    if (isCurrent && !next_) return {};
    bool const isNext = isCurrent && next_.key() == key;
    Vyx::Ptr<Member> found = isNext ? next_.member() : Vyx::Ptr<Member>(map_.place(key).member);
    if (!found) return found;
    if (!isNext) next_ = typename Map::IteratorConst(map_, key);
    next_.advance();
    version_ = map_.version();
    return found;
  }

  // The same; an absent member is entered by `make`, which RETURNS it.
  template <class Make> Vyx::Ptr<Member> findOr(typename Map::Key const& key, Make const& make) {
    Vyx::Ptr<Member> found = find(key);
    if (found) return found;
    std::uint32_t const version = map_.version();
    bool const isLast = version_ == version && !next_;
    found = make();
    if (isLast && map_.version() == version + 1) ++version_; // Nothing else has come.
    return found;
  }

private:
  Map const& map_;
  typename Map::IteratorConst next_; // Null: nothing stands behind what was asked for last.
  std::uint32_t version_;            // Of the collection when `next_` was found.
};

} // namespace frame
