#include "support/TreeText.h"

#include "Vyx/GenericIfEntity.h"

#include <map>

namespace support {

namespace {

using Vyx::GenericIf;
using Vyx::Ptr;

void addEntity(std::string& text, std::string const& path, Vyx::Entity const& entity);

std::string shown(Ptr<GenericIf> const& value) {
  return value ? std::string(value->strRep().view()) : "null";
}

void addChild(std::string& text, std::string const& path, Ptr<GenericIf> const& child) {
  if (!child) {
    text += path + " = null\n";
    return;
  }
  addEntity(text, path, *static_cast<Vyx::Entity const*>(child->object()));
}

// The members by the text of their keys, since the order of a hash table's walk is not what is compared.
void addCollection(std::string& text, std::string const& path, Vyx::GenericIfEntity& self,
                   Vyx::VyxAttr const& attr) {
  bool const isOwned = attr.keyAttr() != nullptr;
  std::map<std::string, Ptr<GenericIf>> members;
  for (auto at = self.attributeIteratorConst(attr.id()); at; ++at) members[shown(at.key())] = at.value();
  for (auto const& [key, value] : members) {
    std::string const place = path + "[" + key + "]";
    if (isOwned)
      addChild(text, place, value);
    else
      text += place + " = " + shown(value) + "\n";
  }
}

void addAttribute(std::string& text, std::string const& path, Vyx::GenericIfEntity& self,
                  Vyx::VyxAttr const& attr) {
  std::string const place = path + "." + std::string(attr.name().view());
  constexpr unsigned kKeyed = 0x1800000;
  constexpr unsigned kParentMakes = 0x10000000;
  if (attr.flags().low & kKeyed) return addCollection(text, place, self, attr);
  auto const value = self.attributeOp({attr.id(), GenericIf::AttributeOp::read}, {}, {});
  if (attr.flags().high & kParentMakes) return addChild(text, place, value);
  text += place + " = " + shown(value) + "\n";
}

void addEntity(std::string& text, std::string const& path, Vyx::Entity const& entity) {
  auto const* type = entity.fwkType();
  text +=
      path + ": " + std::string(type->fullTypeName().view()) + " " + std::string(entity.name().view()) + "\n";
  Vyx::GenericIfEntity self{Ptr<Vyx::Entity const>(&entity)};
  constexpr unsigned kStored = 0x100;
  for (Vyx::VyxType::AttributeQIteratorConst at(*type); at; ++at)
    if ((at->flags().low & kStored) && at->ops()) addAttribute(text, path, self, *at);
}

} // namespace

std::string treeText(Vyx::Entity const& root) {
  std::string text;
  addEntity(text, "", root);
  return text;
}

} // namespace support
