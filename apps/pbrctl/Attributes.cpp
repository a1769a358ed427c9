#include "pbrctl/Attributes.h"

#include "frame/AttributeFlags.h"

#include <algorithm>

namespace Pbrctl {

using Vyx::VyxAttr;
using Vyx::VyxType;

bool isData(VyxAttr const& attr) { return attr.flags().low & frame::kData; }
bool isState(VyxAttr const& attr) {
  return (attr.flags().low & frame::kStored) && isData(attr) && attr.ops();
}
bool isFixed(VyxAttr const& attr) { return attr.flags().high & frame::kFixed; }
bool isKeyed(VyxAttr const& attr) { return attr.flags().low & frame::kKeyed; }
bool holdsEntities(VyxAttr const& attr) { return attr.flags().low & frame::kPointsAtEntity; }
bool isOwning(VyxAttr const& attr) { return attr.flags().high & frame::kParentMakes; }
bool isReference(VyxAttr const& attr) { return holdsEntities(attr) && !isOwning(attr); }

bool isNamedByValue(VyxAttr const& attr) {
  return std::any_of(attr.arguments().begin(), attr.arguments().end(),
                     [](VyxAttr::Argument const& argument) { return argument.name == Vyx::Name(kName); });
}

bool hasMembers(VyxType const& type) {
  if (type.isEntity()) return false;
  for (VyxType::AttributeQIteratorConst at(type); at; ++at)
    if (isKeyed(*at)) return true;
  return false;
}

VyxType const& keyTypeOf(VyxAttr const& attr) {
  return attr.keyAttr() ? *attr.keyAttr()->valueType() : *attr.keyType();
}

std::string plainText(Vyx::GenericIf const& value) {
  std::string text(value.strRep().view());
  bool const inQuotes = text.size() >= 2 && text.front() == '\'' && text.back() == '\'';
  return value.type()->isEnumType() && inQuotes ? text.substr(1, text.size() - 2) : text;
}

} // namespace Pbrctl
