// Filling the record of a type: its flags, its constructor, what it inherits, then its own attributes in
// order.

#pragma once

#include "Vyx/IntrospectionReactor.h"
#include "frame/AttributeFlags.h"
#include "frame/ChildCollectionOps.h"
#include "frame/ChildOps.h"
#include "frame/FunctionOps.h"
#include "frame/ScalarOps.h"
#include "frame/ValueCollectionOps.h"

namespace frame {

using Introspection = Vyx::VyxAttr::VyxAttrIntrospectionFlags;

// One type while it is being filled.
class Definition {
public:
  Definition(Vyx::IntrospectionReactor& reactor, Vyx::VyxType& type);
  ~Definition();

  void parameter(char const* name, char const* type);
  // Copies the base's records, in their order.
  void inherit(Vyx::VyxType const* base);
  void entityStandards(bool directlyUnderEntity);
  void key(Vyx::VyxType const* keyType);

  Vyx::VyxAttr& plain(char const* name, Vyx::VyxType const* valueType, Vyx::VyxType const* keyType,
                      AttrFlags const& flags, Introspection introspection, Vyx::AttributeId id,
                      Vyx::AttributeOps const* ops);

  // An attribute with arguments of its own: built by hand, then announced.
  struct Argument {
    char const* name;
    char const* type;
  };
  Vyx::VyxAttr& withArguments(char const* name, Vyx::VyxType const* valueType, AttrFlags const& flags,
                              std::vector<Argument> const& arguments, Introspection introspection,
                              Vyx::AttributeId id, Vyx::AttributeOps const* ops,
                              char const* keyAttr = nullptr, bool hashed = false);

private:
  Vyx::IntrospectionReactor& reactor_;
  Vyx::VyxType& type_;
};

template <class T> std::vector<Definition::Argument> parameterList() {
  std::vector<Definition::Argument> list;
  for (std::size_t i = 0; i < T::kVyxParameterNames.size(); ++i)
    list.push_back({T::kVyxParameterNames[i], T::kVyxParameterTypes[i]});
  return list;
}

template <class Attr> std::vector<Definition::Argument> functionArguments() {
  std::vector<Definition::Argument> list;
  for (std::size_t i = 0; i < Attr::argumentNames.size(); ++i)
    list.push_back({Attr::argumentNames[i], Attr::argumentTypes[i]});
  return list;
}

// What the maker of a member gives.
template <class Attr> std::vector<Definition::Argument> memberArguments() {
  auto list = parameterList<typename Attr::ChildType>();
  if constexpr (NamesItsMembers<Attr>) list.erase(list.begin());
  return list;
}

// One overload for each kind; the attribute's class derives from its kind.

template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, Constant<X, T, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<T>(), nullptr, flags::constant,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<ConstantOps<Attr>>());
}

template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, Scalar<X, T, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<T>(), nullptr, flags::scalar, Introspection::isIndependentDomainAttr_(),
             I, &opsInstance<ScalarOps<Attr>>());
}

template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, Reference<X, T, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<Vyx::Ptr<T>>(), nullptr, flags::reference,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<ScalarOps<Attr>>());
}

template <class Attr, class X, class T, class In, Vyx::AttributeId I>
void defineAttr(Definition& type, OwnReference<X, T, In, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<Vyx::Ptr<T>>(), nullptr, flags::reference,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<OwnReferenceOps<Attr>>());
}

template <class Attr, class X, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, Child<X, T, I> const*) {
  type.withArguments(Attr::name, Vyx::typeOf<Vyx::Ptr<T>>(), flags::child, parameterList<T>(),
                     Introspection::isIndependentDomainAttr_(), I, &opsInstance<ChildOps<Attr>>());
}

template <class Attr, class X, class K, class V, class R, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueCollection<X, K, V, R, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<V>(), Vyx::typeOf<K>(), flags::valueCollection,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<ValueCollectionOps<Attr>>());
}

template <class Attr, class X, class K, class T, class R, Vyx::AttributeId I>
void defineAttr(Definition& type, ReferenceCollection<X, K, T, R, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<Vyx::Ptr<T>>(), Vyx::typeOf<K>(), flags::referenceCollection,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<ValueCollectionOps<Attr>>());
}

template <class Attr, class X, class V, class R, Vyx::AttributeId I>
void defineAttr(Definition& type, Queue<X, V, R, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<V>(), Vyx::typeOf<unsigned>(), flags::valueCollection,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<QueueOps<Attr>>());
}

// The record says "hashed" where the key is a Kest::UniqueId, whatever the collection.
template <class Attr, class X, class K, class T, Vyx::AttributeId I>
void defineAttr(Definition& type, ChildCollection<X, K, T, I> const*) {
  type.withArguments(Attr::name, Vyx::typeOf<Vyx::Ptr<T>>(), flags::childCollection, memberArguments<Attr>(),
                     Introspection::hasInternalIndex_(), I, &opsInstance<ChildCollectionOps<Attr>>(),
                     Attr::keyName, Attr::hashed);
}

template <class Attr, class X, class R, Vyx::AttributeId I>
void defineAttr(Definition& type, Function<X, R, I> const*) {
  type.withArguments(Attr::name, Vyx::typeOf<R>(), flags::function, functionArguments<Attr>(),
                     Introspection::isFunction_(), I, &opsInstance<FunctionOps<Attr>>());
}

template <class... Attrs> void defineAttributes(Definition& type, AttributeList<Attrs...>) {
  (defineAttr<Attrs>(type, static_cast<Attrs const*>(nullptr)), ...);
}

// What fills the record of the entity type X; see RegistrationUnit.
template <class X> void defineEntity(Vyx::IntrospectionReactor& reactor, char const*) {
  Vyx::VyxType& record = *const_cast<Vyx::VyxType*>(X::_fwkType());
  Definition type(reactor, record);
  record.sizeIs(sizeof(X));
  record.isEntityIs(true);
  record.hasGenericIfSupportIs(true);
  for (auto const& parameter : parameterList<X>()) type.parameter(parameter.name, parameter.type);
  type.inherit(X::VyxBase::_fwkType());
  type.entityStandards(std::is_same_v<typename X::VyxBase, Vyx::Entity>);
  defineAttributes(type, typename X::VyxAttributes());
  if constexpr (requires { typename X::VyxListedKey; }) type.key(Vyx::typeOf<typename X::VyxListedKey>());
}

} // namespace frame
