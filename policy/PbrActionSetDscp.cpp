#include "Pbr/PbrActionSetDscp.h"

namespace Pbr {

// Whoever they belong to, two actions that write the same code point are equal.
bool PbrActionSetDscp::equalTo(Vyx::Ptr<PolicyMap::Action const> const& other) const {
  auto const that = Vyx::dynamicPtrCast<PbrActionSetDscp const>(other);
  return that && that->dscp() == dscp();
}

} // namespace Pbr
