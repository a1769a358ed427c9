#include "pbrctl/TypePrinter.h"

#include "frame/AttributeFlags.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace Pbrctl {

namespace {

using Vyx::VyxAttr;
using Vyx::VyxType;

std::string textOf(Vyx::Name const& name) { return std::string(name.view()); }

char const* kindOf(VyxType const& type) {
  if (type.isEntity()) return "entity";
  if (type.isEnumType()) return "enum";
  return type.isValue() ? "value" : "type";
}

std::string hex(std::uint32_t word) { return Vyx::format("0x%x", static_cast<unsigned>(word)).charPtr(); }

std::string typeText(VyxAttr const& attr) {
  std::string text = attr.valueType() ? textOf(attr.valueType()->fullTypeName()) : "void";
  VyxType const* const key = attr.keyAttr() ? attr.keyAttr()->valueType() : attr.keyType();
  if (key) text += " by " + textOf(key->fullTypeName());
  return text;
}

struct FlagWord {
  std::uint32_t low;
  std::uint32_t high;
  char const* word;
};

constexpr FlagWord kFlagWords[] = {
    {0, frame::kFixed, "fixed"}, {frame::kWritable, 0, "writable"},     {frame::kNotifying, 0, "notifying"},
    {frame::kKeyed, 0, "keyed"}, {frame::kPointsAtEntity, 0, "entity"}, {0, frame::kParentMakes, "owned"},
};

std::string flagWords(VyxAttr::AttrFlags flags) {
  std::string words;
  for (FlagWord const& f : kFlagWords)
    if ((flags.low & f.low) != 0 || (flags.high & f.high) != 0) (words += words.empty() ? "" : " ") += f.word;
  return words;
}

template <class Visit> void eachAttribute(VyxType const& type, Visit visit) {
  for (VyxType::AttributeQIteratorConst at(type); at; ++at) visit(*at);
}

std::vector<std::pair<std::string, std::string>> parametersOf(VyxType const& type) {
  std::vector<std::pair<std::string, std::string>> parameters;
  auto const& names = type.constructorArgNameQ();
  auto const& types = type.constructorArgTypeQ();
  for (std::size_t i = 0; i < names.size() && i < types.size(); ++i)
    parameters.emplace_back(textOf(names[i]), textOf(types[i]));
  return parameters;
}

nlohmann::json attributeJson(VyxAttr const& attr) {
  nlohmann::json out = {{"id", attr.id()},
                        {"name", textOf(attr.name())},
                        {"flags", {hex(attr.flags().low), hex(attr.flags().high)}},
                        {"introspection", attr.introspection().value()}};
  if (attr.valueType()) out["type"] = textOf(attr.valueType()->fullTypeName());
  if (attr.keyAttr()) out["keyAttribute"] = textOf(attr.keyAttr()->name());
  if (attr.keyType()) out["keyType"] = textOf(attr.keyType()->fullTypeName());
  for (VyxAttr::Argument const& a : attr.arguments())
    out["arguments"].push_back({{"name", textOf(a.name)}, {"type", textOf(a.type)}});
  return out;
}

} // namespace

std::vector<VyxType const*> allTypes() {
  std::vector<VyxType const*> types = VyxType::types();
  std::sort(types.begin(), types.end(), [](VyxType const* a, VyxType const* b) {
    return a->fullTypeName().view() < b->fullTypeName().view();
  });
  return types;
}

VyxType const* findType(std::string const& name) {
  if (VyxType const* const type = VyxType::typeByName(Vyx::Name(name))) return type;
  VyxType const* found = nullptr;
  for (VyxType const* type : VyxType::types()) {
    if (type->name() != Vyx::Name(name)) continue;
    if (found) return nullptr;
    found = type;
  }
  return found;
}

void printTypes(std::vector<VyxType const*> const& types, std::ostream& out) {
  for (VyxType const* type : types) {
    out << std::left << std::setw(7) << kindOf(*type) << type->fullTypeName();
    if (type->baseType()) out << " : " << type->baseType()->fullTypeName();
    out << '\n';
  }
}

void printType(VyxType const& type, std::ostream& out) {
  printTypes({&type}, out);
  out << "  constructor (";
  char const* separator = "";
  for (auto const& [name, typeName] : parametersOf(type)) {
    out << separator << name << ": " << typeName;
    separator = ", ";
  }
  out << ")\n";
  eachAttribute(type, [&](VyxAttr const& attr) {
    out << std::right << std::setw(6) << attr.id() << "  " << std::left << std::setw(32)
        << textOf(attr.name()) << ' ' << std::setw(44) << typeText(attr) << ' ' << std::setw(10)
        << hex(attr.flags().low) << ' ' << std::setw(11) << hex(attr.flags().high) << ' '
        << flagWords(attr.flags()) << '\n';
    for (VyxAttr::Argument const& a : attr.arguments())
      out << "            " << textOf(a.name) << ": " << textOf(a.type) << '\n';
  });
}

nlohmann::json typeJson(VyxType const& type) {
  nlohmann::json out = {{"name", textOf(type.fullTypeName())},
                        {"kind", kindOf(type)},
                        {"attributes", nlohmann::json::array()},
                        {"constructor", nlohmann::json::array()}};
  if (type.baseType()) out["base"] = textOf(type.baseType()->fullTypeName());
  for (auto const& [name, typeName] : parametersOf(type))
    out["constructor"].push_back({{"name", name}, {"type", typeName}});
  eachAttribute(type, [&](VyxAttr const& attr) { out["attributes"].push_back(attributeJson(attr)); });
  return out;
}

} // namespace Pbrctl
