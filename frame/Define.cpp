#include "frame/Define.h"

#include "frame/EntityStandards.h"

namespace frame {

Definition::Definition(Vyx::IntrospectionReactor& reactor, Vyx::VyxType& type)
    : reactor_(reactor), type_(type) {
  reactor_.handleType(&type, type.baseType());
}

Definition::~Definition() { reactor_.handleScopeExit(); }

void Definition::parameter(char const* name, char const* type) {
  type_.constructorArgNameQEnq(name);
  type_.constructorArgTypeQEnq(type);
}

void Definition::inherit(Vyx::VyxType const* base) {
  for (Vyx::VyxType::AttributeQIteratorConst at(*base); at; ++at) {
    Vyx::Ptr<Vyx::VyxAttr> const attr = at->copy();
    type_.attributeQEnq(attr);
    reactor_.handleAttr(attr);
    reactor_.handleAttrContextExit();
  }
}

void Definition::entityStandards(bool directlyUnderEntity) {
  if (directlyUnderEntity)
    plain("isNondestructing", Vyx::typeOf<bool>(), nullptr, flags::isNondestructing, Introspection(),
          Vyx::kIsNondestructingId, &opsInstance<IsNondestructingOps>());
  plain("vyxHasAttrLogInterface", Vyx::typeOf<bool>(), nullptr, flags::hasAttrLogInterface,
        Introspection::isFunction_(), Vyx::kHasAttrLogInterfaceId, &opsInstance<HasAttrLogInterfaceOps>());
}

void Definition::key(Vyx::VyxType const* keyType) {
  plain("fwkKey", keyType, nullptr, flags::fwkKey, Introspection(), Vyx::kFwkKeyId, nullptr);
}

Vyx::VyxAttr& Definition::plain(char const* name, Vyx::VyxType const* valueType, Vyx::VyxType const* keyType,
                                AttrFlags const& flags, Introspection introspection, Vyx::AttributeId id,
                                Vyx::AttributeOps const* ops) {
  Vyx::VyxAttr* attr =
      reactor_.defNoninstantiatingAttr(type_, name, valueType, keyType, flags, introspection, id);
  attr->opsIs(ops);
  return *attr;
}

Vyx::VyxAttr& Definition::withArguments(char const* name, Vyx::VyxType const* valueType,
                                        AttrFlags const& flags, std::vector<Argument> const& arguments,
                                        Introspection introspection, Vyx::AttributeId id,
                                        Vyx::AttributeOps const* ops, char const* keyAttr, bool hashed) {
  type_.attrDel(name);
  Vyx::Ptr<Vyx::VyxAttr> const attr = type_.attrIs(name, valueType, nullptr, flags, id);
  for (Argument const& argument : arguments) attr->argumentEnq(argument.name, argument.type);
  if (keyAttr) attr->keyAttrIs(valueType->attr(Vyx::Name(keyAttr)));
  attr->hashedIs(hashed);
  attr->introspectionIs(introspection);
  attr->opsIs(ops);
  type_.attributeQEnq(attr);
  reactor_.handleAttr(attr);
  reactor_.handleAttrContextExit();
  return *attr;
}

} // namespace frame
