// Finding the members of one collection in another of the same kind.

#pragma once

#include "Vyx/Ptr.h"

namespace frame {

// Asked for the keys of another collection in the order of a walk over that one. Equal collections walk
// alike, so the member asked for is usually the next one; only else it is looked up. The collection may
// change meanwhile. REQUIRES: it outlives this object.
template <class Map> class Beside {
public:
  using Member = typename Map::Member;

  explicit Beside(Map const& map) : map_(map), next_(map) {}

  // RETURNS the member of that key, or null.
  Vyx::Ptr<Member> find(typename Map::Key const& key) {
    bool const isNext = next_ && next_.version() == map_.version() && next_.key() == key;
    Vyx::Ptr<Member> found = isNext ? next_.member() : Vyx::Ptr<Member>(map_.place(key).member);
    if (!found) return found;
    if (!isNext) next_ = typename Map::IteratorConst(map_, key);
    next_.advance();
    return found;
  }

private:
  Map const& map_;
  typename Map::IteratorConst next_;
};

} // namespace frame
