#include "Acl/RuleCheckpointStatus.h"

#include "Vyx/ValueType.h"

#include <ostream>

namespace Acl {

Vyx::String8 valueToStrep(RuleCheckpointStatus const& status) { return Vyx::valueToStrep(status.pktMatch()); }

RuleCheckpointStatus sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end,
                                     RuleCheckpointStatus*) {
  auto const count = Vyx::sequenceToValue<unsigned long long>(at, end);
  return RuleCheckpointStatus(static_cast<std::uint32_t>(count >> 32), static_cast<std::uint32_t>(count));
}

std::ostream& operator<<(std::ostream& out, RuleCheckpointStatus const& status) {
  return out << valueToStrep(status);
}

Vyx::VyxType const* RuleCheckpointStatus::_fwkType() {
  return Vyx::valueTypeRecord<RuleCheckpointStatus>("Acl::RuleCheckpointStatus");
}

} // namespace Acl
