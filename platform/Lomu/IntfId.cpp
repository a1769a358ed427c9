#include "Lomu/IntfId.h"

#include "Vyx/ValueType.h"

#include <ostream>

namespace Lomu {

Vyx::String8 valueToStrep(IntfId const& name) { return name.stringValue(); }

IntfId sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IntfId*) {
  return Kest::readTextId<IntfId>(at, end);
}

std::ostream& operator<<(std::ostream& out, IntfId const& name) { return out << name.stringValue(); }

Vyx::VyxType const* IntfId::_fwkType() { return Vyx::valueTypeRecord<IntfId>("Lomu::IntfId"); }

} // namespace Lomu
