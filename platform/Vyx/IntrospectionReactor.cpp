#include "Vyx/IntrospectionReactor.h"

namespace Vyx {

Ptr<IntrospectionReactor> IntrospectionReactor::global() {
  static auto* reactor = new Ptr<IntrospectionReactor>(ptrFromNew(new IntrospectionReactor));
  return *reactor;
}

void IntrospectionReactor::handleNameSpace(char const* name) {
  heard_.push_back(std::string("namespace ") + name);
}

void IntrospectionReactor::handleType(Ptr<VyxType const> const& type, Ptr<VyxType const> const& base) {
  std::string line = "type " + std::string(type->name().view());
  if (base) line += " : " + std::string(base->name().view());
  heard_.push_back(std::move(line));
}

VyxAttr* IntrospectionReactor::defNoninstantiatingAttr(VyxType& type, Name const& name,
                                                       VyxType const* valueType, VyxType const* keyType,
                                                       VyxAttr::AttrFlags const& flags,
                                                       VyxAttr::VyxAttrIntrospectionFlags introspection,
                                                       AttributeId id) {
  type.attrDel(name);
  Ptr<VyxAttr> attr = type.attrIs(name, valueType, keyType, flags, id);
  attr->introspectionIs(introspection);
  type.attributeQEnq(attr);
  handleAttr(attr);
  handleAttrContextExit();
  return attr.ptr();
}

void IntrospectionReactor::handleAttr(Ptr<VyxAttr> const& attr) {
  heard_.push_back("attr " + std::string(attr->name().view()));
}

void IntrospectionReactor::handleAttrContextExit() { heard_.push_back("attr exit"); }

void IntrospectionReactor::handleScopeExit() { heard_.push_back("exit"); }

} // namespace Vyx
