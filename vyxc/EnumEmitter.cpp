// The outputs of an enumeration.

#include "Emit.h"
#include "Namer.h"

namespace vyxc {

namespace {

// The functions that every enumeration has beside it, with what stands over them in the header and the one
// line of their bodies.
struct EnumFunction {
  std::string comment;
  std::string signature;
  std::string statement;
};

std::vector<EnumFunction> enumFunctions(std::string const& e) {
  auto const from = e + " " + Namer::enumFrom(e);
  return {
      {"THROWS: RangeException \"" + e + "\" for what is no enumerator.\n", from + "(unsigned int number)",
       "return frame::enumeratorOf<" + e + ">(number);"},
      {"", from + "(Vyx::String8 name)", "return frame::enumeratorOf<" + e + ">(name);"},
      {"The bare name; \"" + e + "(7)\" for a number that is no enumerator.\n",
       "Vyx::String8 stringValue(" + e + " value)", "return frame::enumeratorName(value);"},
      {"The name in single quotes.\n", "Vyx::String8 valueToStrep(" + e + " const& value)",
       "return frame::enumeratorStrep(value);"},
      {"",
       e + " sequenceToValue(Vyx::String8::IteratorConst& at, Vyx::String8::IteratorConst const& end, " + e +
           "*)",
       "return frame::readEnumerator<" + e + ">(at, end);"},
      {"", "std::ostream& operator<<(std::ostream& out, " + e + " const& value)",
       "return frame::writeEnumerator(out, value);"},
  };
}

} // namespace

std::string enumHeader(Model const& model, EnumType const& type) {
  CodeWriter out;
  emitHead(out, model.schemaOf.at(&type));
  out.line("#pragma once");
  out.blank();
  emitIncludes(out, "", {"Vyx/Fwd.h", "Vyx/String8.h"});
  out.line("#include <cstdint>");
  out.line("#include <iosfwd>");
  out.blank();
  out.line("namespace " + type.space + " {");
  out.blank();
  out.doc(type.doc);
  out.open("enum " + type.name + " : std::uint32_t {");
  for (auto const& enumerator : type.enumerators) {
    out.doc(enumerator.doc);
    out.line(enumerator.name + " = " + std::to_string(enumerator.value) + ",");
  }
  out.close("};");
  out.blank();
  auto const record = Namer::enumRecord(type.name) + "()";
  out.line("Vyx::VyxType const* " + record + ";");
  out.function("inline Vyx::VyxType const* vyxTypeOf(" + type.name + " const*)", "return " + record + ";");
  out.blank();
  for (auto const& function : enumFunctions(type.name)) {
    out.doc(function.comment);
    out.line(function.signature + ";");
  }
  out.line("// For templates, which know the type and not the function's name.");
  out.function("inline " + type.name + " vyxInstance(" + type.name + " const*, unsigned int number)",
               "return " + Namer::enumFrom(type.name) + "(number);");
  out.blank();
  out.line("} // namespace " + type.space);
  return out.text();
}

std::string enumSource(Model const& model, EnumType const& type) {
  CodeWriter out;
  auto const& e = type.name;
  auto const table = Namer::enumerators(e);
  emitHead(out, model.schemaOf.at(&type));
  emitIncludes(out, type.header, {"frame/Enumeration.h", "frame/TypeRecord.h"});
  out.line("namespace " + type.space + " {");
  out.blank();
  emitUnitDeclaration(out, model);
  out.line("namespace {");
  out.openList("constexpr frame::Enumerator<" + e + "> " + table + "[] = {");
  for (auto const& enumerator : type.enumerators) {
    out.line("{" + enumerator.name + ", " + quoted(enumerator.name) + "},");
  }
  out.closeList("};");
  out.line("} // namespace");
  out.blank();
  out.function("frame::Enumerators<" + e + "> vyxEnumerators(" + e + " const*)",
               "return {" + quoted(e) + ", " + table + "};");
  out.blank();
  out.function("Vyx::VyxType const* " + Namer::enumRecord(e) + "()",
               "return frame::TypeRecord<frame::EnumerationRecord<" + e + ">, void>::get(" +
                   Namer::unit(model.unit.name) + ", " + quoted(e) + ");");
  for (auto const& function : enumFunctions(e)) out.function(function.signature, function.statement);
  out.blank();
  out.line("} // namespace " + type.space);
  return out.text();
}

} // namespace vyxc
