#include "PolicyMap/ClassMapComparer.h"

#include "PolicyMap/PolicyMap.h"
#include "frame/ValueCollectionOps.h"

namespace PolicyMap {

// Two class maps match the same packets when their current rules are equal, sequence numbers included; one
// without content matches as one without rules. A null class map equals none.
bool ClassMapComparer::equal(Vyx::Ptr<ClassMapConfig const> const& left,
                             Vyx::Ptr<ClassMapConfig const> const& right) const {
  if (!left || !right) return false;
  auto const a = left->currentSubConfig();
  auto const b = right->currentSubConfig();
  if (!a || !b) return (!a || a->matchs() == 0) && (!b || b->matchs() == 0);
  using Match = ClassMapSubConfig::VyxAttrMatch;
  return frame::sameValues(Match::field(*a), Match::field(*b));
}

} // namespace PolicyMap
