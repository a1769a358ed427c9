#include "frame/EntityStandards.h"

#include "frame/Define.h"

namespace frame {

void StandardOps::readOnly(char const* name, OpId code, Index const& index) {
  if (index) GenericIf::throwBadIndexAttrException(name);
  if (code != GenericIf::AttributeOp::read) GenericIf::throwOpNotSupportedException(name, code, false);
}

Operand IsNondestructingOps::op(GenericIf& self, OpId code, Index const& index, Operand const& value) const {
  if (code != GenericIf::AttributeOp::write) {
    readOnly("isNondestructing", code, index);
    return Vyx::wrap<bool>(entity(self).isNondestructing());
  }
  if (index) GenericIf::throwBadIndexAttrException("isNondestructing");
  entity(self).isNondestructingIs(Vyx::unwrapOr<bool>(value, "isNondestructing"));
  return {};
}

Operand HasAttrLogInterfaceOps::op(GenericIf& self, OpId code, Index const& index, Operand const&) const {
  readOnly("vyxHasAttrLogInterface", code, index);
  return Vyx::wrap<bool>(entity(self).vyxHasAttrLogInterface());
}

namespace {

// A text of the entity that follows from its place in the tree.
template <class Text, Text (Vyx::Entity::*read)() const> class TextOps final : public StandardOps {
public:
  explicit TextOps(char const* name) : name_(name) {}
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const&) const override {
    readOnly(name_, code, index);
    return Vyx::wrap<Text>((entity(self).*read)());
  }

private:
  char const* name_;
};

class RootType final : public Vyx::VyxType {
public:
  RootType() : VyxType("Entity", nullptr, nullptr, {}) {}
};

constexpr Vyx::AttributeId kNameId = 130;
constexpr Vyx::AttributeId kFullNameId = 131;
constexpr Vyx::AttributeId kUriPathId = 132;

void defineRoot(Vyx::IntrospectionReactor& reactor, RootType& record) {
  Definition type(reactor, record);
  record.sizeIs(sizeof(Vyx::Entity));
  record.isEntityIs(true);
  static TextOps<Vyx::Name, &Vyx::Entity::name> const name("name");
  static TextOps<Vyx::String8, &Vyx::Entity::fullName> const fullName("fullName");
  static TextOps<Vyx::String8, &Vyx::Entity::uriPath> const uriPath("uriPath");
  type.plain("name", Vyx::typeOf<Vyx::Name>(), nullptr, flags::constant, Introspection(), kNameId, &name);
  type.plain("fullName", Vyx::typeOf<Vyx::String8>(), nullptr, flags::function, Introspection(), kFullNameId,
             &fullName);
  type.plain("uriPath", Vyx::typeOf<Vyx::String8>(), nullptr, flags::function, Introspection(), kUriPathId,
             &uriPath);
  type.entityStandards(true);
}

} // namespace
} // namespace frame

// The root of all lines: it has no unit of its own, and is filled when it is first asked for.
Vyx::VyxType const* Vyx::Entity::_fwkType() {
  static Vyx::VyxType const* const record = [] {
    auto* root = new frame::RootType;
    root->isNondestructingIs(true);
    Vyx::VyxType::typeNodeIs(root, "Vyx::Entity");
    Vyx::IntrospectionReactor::global()->handleNameSpace("Vyx");
    frame::defineRoot(*Vyx::IntrospectionReactor::global(), *root);
    Vyx::IntrospectionReactor::global()->handleScopeExit();
    return root;
  }();
  return record;
}
