#include "Kest/UniqueId.h"

#include "Vyx/ValueType.h"

#include <ostream>

namespace Kest {

Vyx::String8 valueToStrep(UniqueId const& id) { return Kest::idText(id); }

UniqueId sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, UniqueId*) {
  return Kest::readId<UniqueId>(at, end, "UniqueId");
}

std::ostream& operator<<(std::ostream& out, UniqueId const& id) { return out << valueToStrep(id); }

Vyx::VyxType const* UniqueId::_fwkType() { return Vyx::valueTypeRecord<UniqueId>("Kest::UniqueId"); }

} // namespace Kest
