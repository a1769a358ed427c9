// A fixture's verbs for reading and changing an object through its reflection interface alone. What fails
// answers with the exception's class and text: "ConstException: attempting to modify a const instance".

#pragma once

#include "Vyx/GenericIfEntity.h"
#include "Vyx/ValueGenericIf.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string>

using Vyx::GenericIf;
using Object = Vyx::Ptr<GenericIf>;
using Op = GenericIf::AttributeOp;

// Codes that no attribute has, one that reads and one that modifies.
constexpr auto kUnknownCode = static_cast<Op::OpId>(77);
constexpr auto kUnknownModifyingCode = static_cast<Op::OpId>(200);

template <class X> Object on(Vyx::Ptr<X> const& entity) {
  return entity->fwkType()->genericIf(Vyx::Ptr<Vyx::Entity>(entity));
}
template <class X> Object onConst(Vyx::Ptr<X> const& entity) {
  return entity->fwkType()->genericIf(Vyx::Ptr<Vyx::Entity const>(entity));
}
template <class T> Object valueOf(T const& value) { return Vyx::wrap<T>(value); }
template <class T> Object constValueOf(T const& value) {
  return Vyx::ptrFromNew(new Vyx::ValueGenericIf<T>(value, true));
}

inline Object apply(Object const& of, Op::OpId code, Vyx::AttributeId id, Object const& index = nullptr,
                    Object const& value = nullptr) {
  return of->attributeOp({id, code}, Vyx::Ptr<GenericIf const>(index), value);
}
inline Object read(Object const& of, Vyx::AttributeId id, Object const& index = nullptr) {
  return apply(of, Op::read, id, index);
}
// What was read, as a T. A write answers nothing.
template <class T> T readAs(Object const& of, Vyx::AttributeId id, Object const& index = nullptr) {
  return Vyx::unwrap<T>(*read(of, id, index));
}
template <class T> void write(Object const& of, Vyx::AttributeId id, T const& value) {
  EXPECT_FALSE(apply(of, Op::write, id, nullptr, valueOf(value)));
}

// The entity that an interface is on; null for none.
template <class X = Vyx::Entity> X* entityOn(Object const& object) {
  auto const* const interface = dynamic_cast<Vyx::GenericIfEntity const*>(object.ptr());
  return interface ? dynamic_cast<X*>(interface->entity().ptr()) : nullptr;
}

// The arguments of a call.
using Arguments = std::initializer_list<std::pair<char const*, Object>>;
inline Object listOf(Arguments arguments) {
  auto list = Vyx::ptrFromNew(new GenericIf::List_);
  for (auto const& [name, value] : arguments) list->argumentIs(name, value);
  return list;
}

// How a call fails.
template <class Call> std::string failure(Call call) {
  try {
    call();
  } catch (Vyx::Exception const& error) {
    std::unique_ptr<char, void (*)(void*)> const type(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, nullptr), &std::free);
    return std::string(type.get()).substr(5) + ": " + error.what();
  }
  return "nothing was thrown";
}
inline std::string failureOf(Object const& of, Op::OpId code, Vyx::AttributeId id,
                             Object const& index = nullptr, Object const& value = nullptr) {
  return failure([&] { apply(of, code, id, index, value); });
}

// The texts of the exceptions.
constexpr char const* kConst = "ConstException: attempting to modify a const instance";
inline std::string unsupported(Op::OpId code, std::string const& attribute) {
  return "OpNotSupportedException: operation " + std::to_string(static_cast<unsigned>(code)) +
         " is not supported on " + attribute;
}
inline std::string badIndex(std::string const& attribute) {
  return "BadIndexAttrException: attribute " + attribute + " takes no index";
}
inline std::string badType(std::string const& what) {
  return "TypeException: missing or of the wrong type: " + what;
}
inline std::string unknownArgument(std::string const& function) {
  return "UnknownArgException: unknown argument of " + function;
}
inline std::string unknownAttribute(std::string const& attribute) {
  return "UnknownAttrException: unknown attribute: " + attribute;
}

// The order in which an attribute without an index checks what it is given, from a const instance, on which
// everything is wrong, down to a value of the wrong type. `wrong` is such a value.
inline void expectScalarChecks(Object const& of, Object const& constant, Vyx::AttributeId id,
                               std::string const& name, Object const& wrong, std::string const& wrongType) {
  Object const index = valueOf<unsigned>(1);
  EXPECT_EQ(kConst, failureOf(constant, kUnknownModifyingCode, id, index, wrong));
  EXPECT_EQ(badIndex(name), failureOf(of, kUnknownModifyingCode, id, index, wrong));
  EXPECT_EQ(badIndex(name), failureOf(constant, Op::read, id, index));
  EXPECT_EQ(unsupported(kUnknownModifyingCode, name),
            failureOf(of, kUnknownModifyingCode, id, nullptr, wrong));
  EXPECT_EQ(unsupported(kUnknownCode, name), failureOf(constant, kUnknownCode, id));
  EXPECT_EQ(badType(name), failureOf(of, Op::write, id));
  EXPECT_EQ(badType(wrongType), failureOf(of, Op::write, id, nullptr, wrong));
}

// The same for what can't be written at all.
inline void expectReadOnlyChecks(Object const& of, Object const& constant, Vyx::AttributeId id,
                                 std::string const& name) {
  Object const index = valueOf<unsigned>(1);
  EXPECT_EQ(kConst, failureOf(constant, Op::write, id, index));
  EXPECT_EQ(badIndex(name), failureOf(of, Op::write, id, index));
  EXPECT_EQ(badIndex(name), failureOf(of, Op::read, id, index));
  EXPECT_EQ(unsupported(Op::write, name), failureOf(of, Op::write, id));
  EXPECT_EQ(unsupported(kUnknownCode, name), failureOf(constant, kUnknownCode, id));
}
