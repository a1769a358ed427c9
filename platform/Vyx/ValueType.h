// The record of a value type.
//
// A hand-written value class T declares `static Vyx::VyxType const* _fwkType();` and its source defines it by
//
//   Vyx::VyxType const* T::_fwkType() { return Vyx::valueTypeRecord<T>("Namespace::T"); }
//
// An enumeration has the free function `vyxTypeOf(E const*)` instead, of the same body.

#pragma once

#include "Vyx/ValueGenericIf.h"

namespace Vyx {

class ValueTypeBase : public VyxType {
public:
  ValueTypeBase(Name shortName, ValueOperators operators)
      : VyxType(std::move(shortName), nullptr, nullptr, {}), operators_(operators) {}
  ValueOperators operators() const { return operators_; }

private:
  ValueOperators operators_;
};

template <class T> class ValueType : public ValueTypeBase {
public:
  using ValueTypeBase::ValueTypeBase;
  Ptr<GenericIf> valueFromStrep(String8 const& text) const override { return wrap<T>(strepToValue<T>(text)); }
};

// Enters a hand-written value type that has no attributes, once. RETURNS its record.
VyxType const* enterValueType(Ptr<ValueTypeBase> const& record, char const* fullName, unsigned size,
                              bool isEnum);

template <class T> VyxType const* valueTypeRecord(char const* fullName) {
  static VyxType const* const record = [fullName] {
    std::string_view const full = fullName;
    std::size_t const colon = full.rfind(':');
    Name const shortName(colon == full.npos ? full : full.substr(colon + 1));
    return enterValueType(ptrFromNew(new ValueType<T>(shortName, ValueOperators::all)), fullName, sizeof(T),
                          std::is_enum_v<T>);
  }();
  return record;
}

} // namespace Vyx
