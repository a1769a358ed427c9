// The members of value types, as their records and reflection see them.
//
// A member is an empty class derived from one of the kinds below, with `name` and, as its kind needs, static
// `get(of)`, `set(of, value)` or `value`.

#pragma once

#include "Vyx/ValueType.h"
#include "frame/Define.h"

namespace frame {

template <class X, class T, Vyx::AttributeId Id> struct ValueMember : AttributeOf<X, T, Id> {};
template <class X, class T, Vyx::AttributeId Id> struct ValueConstMember : AttributeOf<X, T, Id> {};
template <class X, class T, Vyx::AttributeId Id> struct ValueComputed : AttributeOf<X, T, Id> {};
template <class X, class T, Vyx::AttributeId Id> struct ValueConstant : AttributeOf<X, T, Id> {};

template <class Attr> class ValueMemberOps final : public Vyx::AttributeOps {
public:
  using Type = typename Attr::Type;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override {
    if (index) GenericIf::throwBadIndexAttrException(Attr::name);
    auto& of = *static_cast<typename Attr::Owner*>(self.object());
    if (code == GenericIf::AttributeOp::read) return Vyx::wrap<Type>(read(of));
    if constexpr (requires(Type const& v) { Attr::set(of, v); })
      if (code == GenericIf::AttributeOp::write) {
        Attr::set(of, Vyx::unwrapOr<Type>(value, Attr::name));
        return {};
      }
    GenericIf::throwOpNotSupportedException(Attr::name, code, false);
  }

private:
  template <class X> static Type read(X const& of) {
    if constexpr (requires { Attr::value; })
      return Attr::value;
    else
      return Attr::get(of);
  }
};

template <class Attr>
void defineValueMember(Definition& type, AttrFlags const& flags, Introspection introspection) {
  type.plain(Attr::name, Vyx::typeOf<typename Attr::Type>(), nullptr, flags, introspection, Attr::id,
             &opsInstance<ValueMemberOps<Attr>>());
}

template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueMember<X, T, I> const*) {
  defineValueMember<Attr>(type, flags::valueMember, Introspection::isIndependentDomainAttr_());
}
template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueConstMember<X, T, I> const*) {
  defineValueMember<Attr>(type, flags::constant, Introspection::isIndependentDomainAttr_());
}
template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueComputed<X, T, I> const*) {
  defineValueMember<Attr>(type, flags::valueComputed, Introspection());
}
template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueConstant<X, T, I> const*) {
  defineValueMember<Attr>(type, flags::valueConstant, Introspection());
}

// The record class of a value type with members. `Schema` has the constructor's parameters (as an entity's,
// see Parameters.h), `operators`, and the list of members.
template <class X, class Schema> class ValueRecord : public Vyx::ValueType<X> {
public:
  ValueRecord(char const* shortName, Vyx::VyxType const*) : Vyx::ValueType<X>(shortName, Schema::operators) {}

  Operand newInstance(Index const& arguments) const override {
    auto const& list = argumentList(this->name().charPtr(), arguments, Schema::kVyxParameterNames);
    auto make = [](auto const&... values) { return X(values...); };
    return Vyx::wrap<X>(
        applyArguments<typename Schema::VyxParameterTuple>(list, Schema::kVyxParameterNames, make));
  }
};

// What fills the record of the value type X; see RegistrationUnit.
template <class X, class Schema> void defineValue(Vyx::IntrospectionReactor& reactor, char const*) {
  auto& record = *const_cast<Vyx::VyxType*>(X::_fwkType());
  Definition type(reactor, record);
  record.sizeIs(sizeof(X));
  record.isValueIs(true);
  record.hasGenericIfSupportIs(true);
  for (auto const& parameter : parameterList<Schema>()) type.parameter(parameter.name, parameter.type);
  defineAttributes(type, typename Schema::VyxAttributes());
  record.valAttrIs(record.attr(Vyx::Name("value")));
}

} // namespace frame
