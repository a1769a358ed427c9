#include "Pbr/PbrFwdAction.h"

namespace Pbr {

namespace {

// Whether the other action forwards to every next hop of this one. One-sided on purpose: the other may have
// more, and this action's own values aren't looked at.
bool forwardsToAllOf(PbrFwdAction const& one, PbrFwdAction const& other) {
  for (auto at = one.nexthopIteratorConst(); at; ++at)
    if (!other.nexthop(at.key())) return false;
  return true;
}

} // namespace

// Only what the type of forwarding uses is compared; a stale value of another type makes no difference.
bool PbrFwdAction::equalTo(Vyx::Ptr<PolicyMap::Action const> const& other) const {
  auto const that = Vyx::dynamicPtrCast<PbrFwdAction const>(other);
  if (!that || that->fwdActionType() != fwdActionType()) return false;
  switch (fwdActionType()) {
  case nexthopAction:
    return recursive() == that->recursive() && forwardsToAllOf(*this, *that);
  case nexthopGroupAction:
    return nexthopGroup() == that->nexthopGroup();
  default:
    return true;
  }
}

} // namespace Pbr
