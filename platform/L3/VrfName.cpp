#include "L3/VrfName.h"

#include "Vyx/ValueType.h"

#include <ostream>

namespace L3 {

Vyx::String8 valueToStrep(VrfName const& name) { return name.stringValue(); }

VrfName sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, VrfName*) {
  return Kest::readTextId<VrfName>(at, end);
}

std::ostream& operator<<(std::ostream& out, VrfName const& name) { return out << name.stringValue(); }

Vyx::VyxType const* VrfName::_fwkType() { return Vyx::valueTypeRecord<VrfName>("L3::VrfName"); }

} // namespace L3
