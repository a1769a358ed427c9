#include "Vyx/VyxType.h"

#include "Vyx/GenericIf.h"

namespace Vyx {

namespace {

// Filled while libraries load; kept until the process ends.
struct TypeTable {
  std::vector<VyxType const*> inOrder;
  std::unordered_map<std::string, VyxType const*> byName;
};

TypeTable& typeTable() {
  static auto* table = new TypeTable;
  return *table;
}

} // namespace

Ptr<VyxAttr> VyxAttr::copy() const {
  Ptr<VyxAttr> same = ptrFromNew(new VyxAttr(name(), valueType_, keyType_, flags_, id_));
  same->introspection_ = introspection_;
  same->hashed_ = hashed_;
  same->keyAttr_ = keyAttr_;
  same->ops_ = ops_;
  same->arguments_ = arguments_;
  return same;
}

VyxType::VyxType(Name shortName, VyxType*, VyxType const* baseType, VyxTypeFlags const& flags)
    : Entity(std::move(shortName)), baseType_(baseType), flags_(flags) {}

Ptr<GenericIf> VyxType::genericIf(Ptr<Entity> const&) const { return {}; }
Ptr<GenericIf> VyxType::genericIf(Ptr<Entity const> const&) const { return {}; }

Ptr<GenericIf> VyxType::valueFromStrep(String8 const&) const {
  throwRangeException((fullTypeName() + String8(" has no text form")).charPtr());
}

Ptr<GenericIf> VyxType::newInstance(Ptr<GenericIf const> const&) const {
  throwRangeException((fullTypeName() + String8(" can't be made by reflection")).charPtr());
}

Ptr<Entity> VyxType::newEntity(Ptr<NboAttrLog::In> const&, Vyx_BitSet, unsigned, PtrInterface*) const {
  return {};
}

VyxType const* VyxType::fwkType() const { return nullptr; }

bool VyxType::isA(VyxType const* other) const {
  for (VyxType const* at = this; at; at = at->baseType_)
    if (at == other) return true;
  return false;
}

VyxAttr* VyxType::attr(Name const& name) const {
  for (AttributeQIteratorConst at(*this); at; ++at)
    if (at->name() == name) return &*at;
  return nullptr;
}

VyxAttr* VyxType::attr(AttributeId id) const {
  for (auto* at = attributeQ_.head(); at; at = AttributeQ::next(at))
    if (at->attr()->id() == id) return at->attr().ptr();
  return nullptr;
}

void VyxType::attrDel(Name const& name) {
  for (AttributeQIteratorConst at(*this); at; ++at)
    if (at->name() == name) {
      attributeQ_.memberDel(at.current());
      return;
    }
}

Ptr<VyxAttr> VyxType::attrIs(Name name, VyxType const* valueType, VyxType const* keyType,
                             VyxAttr::AttrFlags const& flags, AttributeId id) const {
  return ptrFromNew(new VyxAttr(std::move(name), valueType, keyType, flags, id));
}

void VyxType::attributeQEnq(Ptr<VyxAttr> const& attr) {
  attributeQ_.enq(ptrFromNew(new VyxAttributeQ(nextKey_++, attr)));
}

void VyxType::findCopied() const {
  copied_.clear();
  for (auto const* at = attributeQ_.head(); at; at = AttributeQ::next(at))
    if (at->attr()->ops() && at->attr()->ops()->isCopied()) copied_.push_back(at->attr().ptr());
  copiedOf_ = attributeQ_.version();
}

void VyxType::typeFlagsDoEmbeddedWriteConstraints() {}

void VyxType::typeNodeIs(VyxType const* type, Name const& fullName) {
  type->fullName_ = fullName;
  if (typeTable().byName.emplace(std::string(fullName.view()), type).second)
    typeTable().inOrder.push_back(type);
}

VyxType const* VyxType::typeByName(Name const& fullName) {
  auto found = typeTable().byName.find(std::string(fullName.view()));
  return found == typeTable().byName.end() ? nullptr : found->second;
}

std::vector<VyxType const*> const& VyxType::types() { return typeTable().inOrder; }

} // namespace Vyx
