// Reflection on values: the interface object holds a copy of the value.

#pragma once

#include "Vyx/GenericIf.h"
#include "Vyx/KeyHash.h"
#include "Vyx/TypeOf.h"

namespace Vyx {

// Which operators reflection offers on a value type, as operations on attribute id 0.
enum class ValueOperators { none, negation, all };

ValueOperators valueOperators(VyxType const* type);

// RETURNS the operand of a comparison: the value, else the index, else the index's argument "vyxOpArg".
// THROWS: TypeException naming "vyxOpArg" when there is none.
GenericIf const& comparisonOperand(Ptr<GenericIf const> const& index, Ptr<GenericIf> const& value);

template <class T> class ValueGenericIf : public GenericIf {
public:
  ValueGenericIf(T value, bool isConst) : GenericIf(isConst), value_(std::move(value)) {}

  T const& value() const { return value_; }
  VyxType const* type() const override { return typeOf<T>(); }
  void* object() const override { return &value_; }
  void* rawPtr(VyxType const* as) const override {
    if (as != type()) throwTypeException(type()->name().charPtr());
    return &value_;
  }
  String8 strRep() const override { return valueToStrep(value_); }
  std::uint32_t hash() const override {
    if constexpr (requires(T const& v) { keyHash(v); } && !std::is_floating_point_v<T>)
      return keyHash(value_);
    else
      return String8(strRep()).hash();
  }
  Ptr<GenericIf> attributeOp(AttributeOp const& op, Ptr<GenericIf const> const& index,
                             Ptr<GenericIf> const& value) override {
    if (op.id == 0 && op.code >= AttributeOp::equal && op.code <= AttributeOp::negation)
      return wrapBool(apply(op.code, index, value));
    return GenericIf::attributeOp(op, index, value);
  }

private:
  static Ptr<GenericIf> wrapBool(bool result);

  bool apply(AttributeOp::OpId code, Ptr<GenericIf const> const& index, Ptr<GenericIf> const& value) const {
    ValueOperators const offered = valueOperators(type());
    if (offered == ValueOperators::none ||
        (offered == ValueOperators::negation && code != AttributeOp::negation))
      throwOpNotSupportedException(type()->name().charPtr(), code, false);
    if (code == AttributeOp::negation) return negated();
    return compare(code, *static_cast<T const*>(comparisonOperand(index, value).rawPtr(type())));
  }
  bool negated() const {
    if constexpr (requires(T const& v) { !v; })
      return !value_;
    else
      return value_ == T();
  }
  bool compare(AttributeOp::OpId code, T const& other) const {
    switch (code) {
    case AttributeOp::equal:
      return value_ == other;
    case AttributeOp::notEqual:
      return !(value_ == other);
    case AttributeOp::less:
      return value_ < other;
    case AttributeOp::greater:
      return other < value_;
    case AttributeOp::lessEqual:
      return isLessOrEqual(value_, other);
    default:
      return isLessOrEqual(other, value_);
    }
  }

  // A type's `<=` need not be its `<` or its `==`: not for a number that is none, nor for a set of next hops.
  static bool isLessOrEqual(T const& a, T const& b) {
    if constexpr (requires { a <= b; })
      return a <= b;
    else
      return !(b < a);
  }

  mutable T value_;
};

template <class T> Ptr<GenericIf> ValueGenericIf<T>::wrapBool(bool result) {
  return ptrFromNew(new ValueGenericIf<bool>(result, false));
}

// An interface on a copy of the value, or on the entity that a counted pointer points at.
template <class T> Ptr<GenericIf> wrap(T const& value) {
  if constexpr (IsPtr<T>::value) {
    using Any = std::conditional_t<std::is_const_v<typename T::element_type>, Entity const, Entity>;
    return value ? value->fwkType()->genericIf(Ptr<Any>(value)) : Ptr<GenericIf>();
  } else
    return ptrFromNew(new ValueGenericIf<T>(value, false));
}

// THROWS: TypeException when the interface is on another type.
template <class T> decltype(auto) unwrap(GenericIf const& from) {
  if constexpr (IsPtr<T>::value)
    return T(static_cast<typename T::element_type*>(static_cast<Entity*>(from.rawPtr(typeOf<T>()))));
  else
    return static_cast<T const&>(*static_cast<T const*>(from.rawPtr(typeOf<T>())));
}

// THROWS: TypeException with `what` for a null pointer.
template <class T, class G> decltype(auto) unwrapOr(Ptr<G> const& from, char const* what) {
  if (!from) GenericIf::throwTypeException(what);
  return unwrap<T>(*from);
}

} // namespace Vyx
