#include "Vyx/ValueType.h"

namespace Vyx {

ValueOperators valueOperators(VyxType const* type) {
  auto const* record = dynamic_cast<ValueTypeBase const*>(type);
  return record ? record->operators() : ValueOperators::none;
}

GenericIf const& comparisonOperand(Ptr<GenericIf const> const& index, Ptr<GenericIf> const& value) {
  if (value) return *value;
  if (auto const* list = dynamic_cast<GenericIf::List_ const*>(index.ptr())) {
    Ptr<GenericIf const> operand = list->argument("vyxOpArg");
    if (operand) return *operand;
  } else if (index) {
    return *index;
  }
  GenericIf::throwTypeException("vyxOpArg");
}

VyxType const* enterValueType(Ptr<ValueTypeBase> const& record, char const* fullName, unsigned size,
                              bool isEnum) {
  record->isNondestructingIs(true);
  record->isValueIs(true);
  if (isEnum) record->isEnumTypeIs(true);
  record->hasGenericIfSupportIs(true);
  record->sizeIs(size);
  VyxType::typeNodeIs(record.ptr(), fullName);
  return record.ptr();
}

VyxType const* vyxTypeOf(bool const*) { return valueTypeRecord<bool>("bool"); }
VyxType const* vyxTypeOf(unsigned char const*) { return valueTypeRecord<unsigned char>("U8"); }
VyxType const* vyxTypeOf(unsigned short const*) { return valueTypeRecord<unsigned short>("U16"); }
VyxType const* vyxTypeOf(unsigned const*) { return valueTypeRecord<unsigned>("U32"); }
VyxType const* vyxTypeOf(unsigned long long const*) { return valueTypeRecord<unsigned long long>("U64"); }
VyxType const* vyxTypeOf(double const*) { return valueTypeRecord<double>("double"); }
VyxType const* vyxTypeOf(Name const*) { return valueTypeRecord<Name>("Vyx::Name"); }
VyxType const* vyxTypeOf(String8 const*) { return valueTypeRecord<String8>("Vyx::String8"); }

} // namespace Vyx
