// The outputs of a unit: the header that brings all of its types, and the source that registers them.

#include "Emit.h"
#include "EntityParts.h"
#include "Namer.h"

namespace vyxc {

namespace {

// The name of the file that has the unit's types; of several, the first one's.
std::string schemaOfUnit(Model const& model) {
  return model.unit.types.empty() ? "an empty schema" : model.schemaOf.at(model.unit.types.front());
}

std::string registration(Type const& type) {
  auto const define = asEnum(&type)    ? "&frame::defineEnumeration<" + type.name + ">"
                      : asValue(&type) ? "&" + Namer::valueDefinition(type.name)
                                       : "&frame::defineEntity<" + type.name + ">";
  auto const record = asEnum(&type) ? "&" + Namer::enumRecord(type.name) : "&" + type.name + "::_fwkType";
  return "{" + quoted(type.qualifiedName()) + ", " + record + ", " + define + "},";
}

void emitTypeNames(CodeWriter& out, Unit const& unit) {
  if (unit.types.empty()) return;
  out.line("// For tools that list the library's types without loading it.");
  std::vector<std::string> names;
  for (auto const* type : unit.types)
    names.push_back(type->qualifiedName() + (type == unit.types.back() ? "" : "\\0"));
  out.strings("[[gnu::section(\".vyx.type\"), gnu::used]] static char const vyxTypeNames[] =", names);
  out.blank();
}

// Of what the sources of enumerations and values define.
void emitDeclarations(CodeWriter& out, Unit const& unit) {
  bool any = false;
  for (auto const* type : unit.types) {
    if (asEnum(type)) {
      out.line("frame::Enumerators<" + type->name + "> vyxEnumerators(" + type->name + " const*);");
    } else if (asValue(type)) {
      out.line("void " + Namer::valueDefinition(type->name) +
               "(Vyx::IntrospectionReactor& reactor, char const* fullName);");
    }
    any = any || !asEntity(type);
  }
  if (any) out.blank();
}

// ORDER: of registration.
void emitTable(CodeWriter& out, Unit const& unit) {
  out.line("namespace {");
  out.open("std::vector<frame::UnitType> vyxTypes() {");
  out.openList("return {");
  for (auto const* type : unit.types) out.line(registration(*type));
  out.closeList("};");
  out.close();
  out.line("} // namespace");
  out.blank();
}

} // namespace

std::string unitHeader(Model const& model) {
  CodeWriter out;
  emitHead(out, schemaOfUnit(model));
  out.line("#pragma once");
  out.blank();
  std::set<std::string> headers;
  for (auto const* type : model.unit.types) headers.insert(type->header);
  headers.insert(model.unit.imported.begin(), model.unit.imported.end());
  headers.erase(model.unit.header);
  for (auto const& header : headers) out.line("#include \"" + header + "\"");
  return out.text();
}

std::string unitSource(Model const& model) {
  CodeWriter out;
  auto const& unit = model.unit;
  emitHead(out, schemaOfUnit(model));
  std::set<std::string> headers{unit.header, "frame/EntityReflection.h", "frame/Enumeration.h",
                                "frame/ValueMembers.h"};
  for (auto const* type : unit.types) {
    if (auto const* entity = asEntity(type)) headers.merge(headersOfReflection(*entity));
  }
  emitIncludes(out, "", headers);
  out.line("namespace " + unit.space + " {");
  out.blank();
  emitTypeNames(out, unit);
  emitDeclarations(out, unit);
  emitTable(out, unit);
  auto const function = Namer::unit(unit.name) + "()";
  out.line("// Made by the first use, which may come before this library is loaded whole.");
  out.open("frame::RegistrationUnit& " + function + " {");
  out.line("static frame::RegistrationUnit unit(" + quoted(unit.space) + ", vyxTypes());");
  out.line("return unit;");
  out.close();
  out.blank();
  out.line("namespace {");
  out.line("frame::UnitLoader const vyxLoader(" + function + ");");
  out.line("} // namespace");
  out.blank();
  out.line("} // namespace " + unit.space);
  return out.text();
}

} // namespace vyxc
