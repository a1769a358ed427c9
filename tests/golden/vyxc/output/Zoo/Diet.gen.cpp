// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Diet.h"
#include "frame/Enumeration.h"
#include "frame/TypeRecord.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

namespace {
constexpr frame::Enumerator<Diet> kDiets[] = {
    {omnivore, "omnivore"},
    {herbivore, "herbivore"},
    {carnivore, "carnivore"},
};
} // namespace

frame::Enumerators<Diet> vyxEnumerators(Diet const*) { return {"Diet", kDiets}; }

Vyx::VyxType const* _fwkType_Diet() {
  return frame::TypeRecord<frame::EnumerationRecord<Diet>, void>::get(vyxUnitZoo, "Diet");
}
Diet DietInstance(unsigned int number) { return frame::enumeratorOf<Diet>(number); }
Diet DietInstance(Vyx::String8 name) { return frame::enumeratorOf<Diet>(name); }
Vyx::String8 stringValue(Diet value) { return frame::enumeratorName(value); }
Vyx::String8 valueToStrep(Diet const& value) { return frame::enumeratorStrep(value); }
Diet sequenceToValue(Vyx::String8::IteratorConst& at, Vyx::String8::IteratorConst const& end, Diet*) {
  return frame::readEnumerator<Diet>(at, end);
}
std::ostream& operator<<(std::ostream& out, Diet const& value) { return frame::writeEnumerator(out, value); }

} // namespace Zoo
