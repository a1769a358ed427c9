// Type records as rows of text, in the form in which the schema is told to its users.

#pragma once

#include "Vyx/IntrospectionReactor.h"

#include <sstream>
#include <string>
#include <vector>

inline std::string textOf(Vyx::StringN<unsigned char> const& text) { return std::string(text.view()); }

inline std::string typeText(Vyx::VyxType const* type) { return type ? textOf(type->fullTypeName()) : "void"; }

// id | attribute | value type | key type | low | high | introspection | arguments, key attribute
inline std::string attributeRow(Vyx::VyxAttr const& attr) {
  std::ostringstream row;
  row << attr.id() << " | " << attr.name() << " | " << typeText(attr.valueType()) << " | ";
  if (attr.keyType()) row << typeText(attr.keyType()) << ' ';
  row << std::hex << "| 0x" << attr.flags().low << " | 0x" << attr.flags().high << std::dec << " | "
      << attr.introspection().value() << " |";
  for (auto const& argument : attr.arguments()) row << ' ' << argument.name << ' ' << argument.type;
  if (attr.keyAttr()) row << ' ' << attr.keyAttr()->name() << " hashed=" << attr.hashed();
  return row.str();
}

// In the order of the queue.
inline std::vector<std::string> attributeRows(Vyx::VyxType const& type) {
  std::vector<std::string> rows;
  for (Vyx::VyxType::AttributeQIteratorConst at(type); at; ++at) rows.push_back(attributeRow(*at));
  return rows;
}
inline std::vector<std::string> attributeNames(Vyx::VyxType const& type) {
  std::vector<std::string> names;
  for (Vyx::VyxType::AttributeQIteratorConst at(type); at; ++at) names.push_back(textOf(at->name()));
  return names;
}

// The constructor's parameters, each with its type.
inline std::string parameterText(Vyx::VyxType const& type) {
  std::string text;
  auto const& names = type.constructorArgNameQ();
  auto const& types = type.constructorArgTypeQ();
  for (std::size_t i = 0; i < names.size() && i < types.size(); ++i)
    text += (i ? " " : "") + textOf(names[i]) + " " + textOf(types[i]);
  return names.size() == types.size() ? text : text + " and unequal queues";
}

// The full names of the types whose names begin so, in the order in which they were entered.
inline std::vector<std::string> typesOfNamespace(std::string const& prefix) {
  std::vector<std::string> names;
  for (Vyx::VyxType const* type : Vyx::VyxType::types())
    if (type->fullTypeName().view().starts_with(prefix)) names.push_back(textOf(type->fullTypeName()));
  return names;
}
