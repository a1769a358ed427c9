// The record class of one entity type.

#pragma once

#include "Vyx/ValidPtr.h"
#include "frame/FunctionOps.h"
#include "replication/Values.h"

namespace frame {

// Reflection on an X, and making an X from constructor arguments by name. A wrong argument is refused before
// anything is made.
template <class X> class EntityType : public Vyx::VyxType {
public:
  EntityType(char const* shortName, Vyx::VyxType const* base) : VyxType(shortName, nullptr, base, {}) {}

  Operand genericIf(Vyx::Ptr<Vyx::Entity> const& entity) const override {
    return Vyx::ptrFromNew(new typename X::GenericIf_(entity));
  }
  Operand genericIf(Vyx::Ptr<Vyx::Entity const> const& entity) const override {
    return Vyx::ptrFromNew(new typename X::GenericIf_(entity));
  }
  Operand newInstance(Index const& arguments) const override {
    auto const& list = argumentList(this->name().charPtr(), arguments, X::kVyxParameterNames);
    auto make = [](auto const&... values) { return Vyx::make<X>(values...); };
    return Vyx::wrap(applyArguments<typename X::VyxParameterTuple>(list, X::kVyxParameterNames, make));
  }
  // An X that a log announces; its constructor's values stand next in the message.
  Vyx::Ptr<Vyx::Entity> newEntity(Vyx::Ptr<Vyx::NboAttrLog::In> const& in, Vyx_BitSet, unsigned,
                                  Vyx::PtrInterface*) const override {
    auto const values = replication::ValuesReader<typename X::VyxParameterTuple>::read(*in, in->demuxer());
    return std::apply([](auto const&... value) { return Vyx::make<X>(value...); }, values);
  }
};

// RETURNS the name of the type's own attribute of that id, else what the base answers.
template <class X, class... Attrs>
Vyx::String8 attributeString(X const& of, Vyx::AttributeId id, AttributeList<Attrs...>) {
  char const* name = nullptr;
  [[maybe_unused]] auto const own = [&]<class Attr>(Attr const*) {
    if constexpr (requires { Attr::redefines; })
      return;
    else if (Attr::id == id)
      name = Attr::name;
  };
  (own(static_cast<Attrs const*>(nullptr)), ...);
  return name ? Vyx::String8(name) : of.X::VyxBase::attributeString(id);
}

} // namespace frame
