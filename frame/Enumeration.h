// What every enumeration can do, from the table of its enumerators' names. An enumeration E has, found beside
// it, `constexpr frame::Enumerators<E> vyxEnumerators(E const*)`.

#pragma once

#include "frame/ValueMembers.h"

#include <ostream>
#include <span>

namespace frame {

template <class E> struct Enumerator {
  E value;
  char const* name;
};

template <class E> struct Enumerators {
  char const* typeName; // The short name; also the text of the range exceptions.
  std::span<Enumerator<E> const> table;
};

template <class E> Enumerators<E> enumeratorsOf() { return vyxEnumerators(static_cast<E const*>(nullptr)); }

// THROWS: RangeException with the type's name for a number that is no enumerator.
template <class E> E enumeratorOf(unsigned number) {
  for (auto const& one : enumeratorsOf<E>().table)
    if (static_cast<unsigned>(one.value) == number) return one.value;
  Vyx::throwRangeException(enumeratorsOf<E>().typeName);
}

// The name must match exactly. THROWS: RangeException with the type's name.
template <class E> E enumeratorOf(Vyx::String8 const& name) {
  for (auto const& one : enumeratorsOf<E>().table)
    if (name.view() == one.name) return one.value;
  Vyx::throwRangeException(enumeratorsOf<E>().typeName);
}

// The enumerator's name; "Type(7)" for a number that is none. Never throws a range exception.
template <class E> Vyx::String8 enumeratorName(E value) {
  for (auto const& one : enumeratorsOf<E>().table)
    if (one.value == value) return one.name;
  return Vyx::format("%s(%d)", enumeratorsOf<E>().typeName, static_cast<int>(value));
}

// The text form has the name in single quotes; a stream gets the bare name.
template <class E> Vyx::String8 enumeratorStrep(E value) {
  return Vyx::String8("'") + enumeratorName(value) + Vyx::String8("'");
}

template <class E> E readEnumerator(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end) {
  return enumeratorOf<E>(Vyx::sequenceToValue(at, end, static_cast<Vyx::String8*>(nullptr)));
}

template <class E> std::ostream& writeEnumerator(std::ostream& out, E value) {
  return out << enumeratorName(value);
}

// Reading an enumerator as an attribute of its type.
template <class E> class EnumeratorOps final : public Vyx::AttributeOps {
public:
  explicit EnumeratorOps(Enumerator<E> const& of) : of_(of) {}
  Operand op(GenericIf&, OpId code, Index const& index, Operand const&) const override {
    if (index) GenericIf::throwBadIndexAttrException(of_.name);
    if (code != GenericIf::AttributeOp::read) GenericIf::throwOpNotSupportedException(of_.name, code, false);
    return Vyx::wrap<E>(of_.value);
  }

private:
  Enumerator<E> of_;
};

template <class E> class EnumerationRecord final : public Vyx::ValueType<E> {
public:
  EnumerationRecord(char const* shortName, Vyx::VyxType const*)
      : Vyx::ValueType<E>(shortName, Vyx::ValueOperators::all) {}
};

// What fills the record of the enumeration E; see RegistrationUnit.
template <class E> void defineEnumeration(Vyx::IntrospectionReactor& reactor, char const*) {
  auto& record = *const_cast<Vyx::VyxType*>(Vyx::typeOf<E>());
  Definition type(reactor, record);
  record.sizeIs(sizeof(E));
  record.isValueIs(true);
  record.isEnumTypeIs(true);
  record.hasGenericIfSupportIs(true);
  // Records live for ever, and what they point at.
  for (auto const& one : enumeratorsOf<E>().table)
    type.plain(one.name, &record, nullptr, flags::enumerator, Introspection(),
               static_cast<Vyx::AttributeId>(one.value), new EnumeratorOps<E>(one));
  record.valAttrIs(record.attr(Vyx::Name("value")));
}

} // namespace frame
