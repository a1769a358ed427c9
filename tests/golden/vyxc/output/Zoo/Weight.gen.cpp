// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Weight.h"
#include "frame/TypeRecord.h"
#include "frame/ValueMembers.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

namespace {

// The members of Weight, as its record and reflection see them.
struct VyxSchemaWeight {
  static constexpr Vyx::ValueOperators operators = Vyx::ValueOperators::all;
  static constexpr std::array<char const*, 1> kVyxParameterNames{"kilograms"};
  static constexpr std::array<char const*, 1> kVyxParameterTypes{"U16"};
  using VyxParameterTuple = std::tuple<unsigned short>;

  struct VyxAttrKilograms : frame::ValueMember<Weight, unsigned short, 2> {
    static constexpr char const* name = "kilograms";
    static unsigned short get(Weight const& of) { return of.kilograms(); }
    static void set(Weight& of, unsigned short value) { of.kilogramsIs(value); }
  };

  struct VyxAttrHeaviest : frame::ValueConstant<Weight, unsigned short, 3> {
    static constexpr char const* name = "heaviest";
    static constexpr unsigned short value = 6000;
  };

  using VyxAttributes = frame::AttributeList<VyxAttrKilograms, VyxAttrHeaviest>;
};

using VyxRecordWeight = frame::ValueRecord<Weight, VyxSchemaWeight>;

} // namespace

void vyxDefineWeight(Vyx::IntrospectionReactor& reactor, char const* fullName) {
  frame::defineValue<Weight, VyxSchemaWeight>(reactor, fullName);
}

Vyx::VyxType const* Weight::_fwkType() {
  return frame::TypeRecord<VyxRecordWeight, void>::get(vyxUnitZoo, "Weight");
}

} // namespace Zoo
