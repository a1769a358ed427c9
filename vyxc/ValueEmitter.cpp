// The output of a hand-written value class: its record and reflection.

#include "Emit.h"
#include "Namer.h"

namespace vyxc {

namespace {

char const* operatorsName(Operators operators) {
  switch (operators) {
  case Operators::kNone:
    return "none";
  case Operators::kNot:
    return "negation";
  case Operators::kAll:
    break;
  }
  return "all";
}

char const* kindName(AttributeKind kind) {
  switch (kind) {
  case AttributeKind::kConst:
    return "ValueConstMember";
  case AttributeKind::kComputed:
    return "ValueComputed";
  case AttributeKind::kConstant:
    return "ValueConstant";
  case AttributeKind::kCollection:
    return "ValueMemberCollection";
  default:
    return "ValueMember";
  }
}

void emitCollectionMember(CodeWriter& out, CppTypes const& cpp, ValueType const& type,
                          Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const key = cpp.name(*attribute.keyType) + " const& key";
  auto const value = cpp.name(*attribute.type);
  auto const iterator = Namer::iteratorConstFrom(name);
  out.function("static unsigned int count(" + type.name + " const& of)",
               "return of." + Namer::plural(name) + "();");
  out.function("static auto iterator(" + type.name + " const& of)", "return of." + iterator + "();");
  out.function("static auto iterator(" + type.name + " const& of, " + key + ")",
               "return of." + iterator + "(key);");
  out.function("static " + value + " get(" + type.name + " const& of, " + key + ")",
               "return of." + name + "(key);");
  out.function("static void set(" + type.name + "& of, " + key + ", " + cpp.argument(*attribute.type) +
                   " value)",
               "of." + Namer::setter(name) + "(key, value);");
  out.function("static " + value + " del(" + type.name + "& of, " + key + ")",
               "return of." + Namer::del(name) + "(key);");
}

void emitMember(CodeWriter& out, CppTypes const& cpp, ValueType const& type, Attribute const& attribute) {
  auto const value = cpp.name(*attribute.type);
  auto const keyed = attribute.kind == AttributeKind::kCollection ? cpp.name(*attribute.keyType) + ", " : "";
  out.doc(attribute.doc);
  out.openClass("struct " + Namer::attribute(attribute.name),
                std::string("frame::") + kindName(attribute.kind) + "<" + type.name + ", " + keyed + value +
                    ", " + std::to_string(attribute.id) + ">");
  out.line("static constexpr char const* name = " + quoted(attribute.name) + ";");
  if (attribute.kind == AttributeKind::kConstant) {
    out.line("static constexpr " + value + " value = " + cpp.expression(*attribute.initial) + ";");
  } else if (attribute.kind == AttributeKind::kCollection) {
    emitCollectionMember(out, cpp, type, attribute);
  } else {
    out.function("static " + value + " get(" + type.name + " const& of)",
                 "return of." + attribute.name + "();");
  }
  if (attribute.kind == AttributeKind::kMember) {
    out.function("static void set(" + type.name + "& of, " + cpp.argument(*attribute.type) + " value)",
                 "of." + Namer::setter(attribute.name) + "(value);");
  }
  out.close("};");
}

} // namespace

std::string valueSource(Model const& model, ValueType const& type) {
  CodeWriter out;
  CppTypes const cpp(type.space);
  auto const schema = Namer::valueSchema(type.name);
  auto const record = Namer::valueRecord(type.name);
  emitHead(out, model.schemaOf.at(&type));
  std::set<std::string> headers;
  for (auto const& attribute : type.attributes) {
    if (!attribute.type->header.empty()) headers.insert(attribute.type->header);
    if (attribute.keyType && !attribute.keyType->header.empty()) headers.insert(attribute.keyType->header);
  }
  headers.insert({"frame/TypeRecord.h", "frame/ValueMembers.h"});
  for (auto const& attribute : type.attributes) {
    if (attribute.kind == AttributeKind::kCollection) headers.insert("frame/ValueMemberCollection.h");
  }
  emitIncludes(out, type.header, headers);
  out.line("namespace " + type.space + " {");
  out.blank();
  emitUnitDeclaration(out, model);
  out.line("namespace {");
  out.blank();
  out.line("// The members of " + type.name + ", as its record and reflection see them.");
  out.open("struct " + schema + " {");
  out.line(std::string("static constexpr Vyx::ValueOperators operators = Vyx::ValueOperators::") +
           operatorsName(type.operators) + ";");
  emitNames(out, "kVyxParameterNames", names(type.parameters));
  emitNames(out, "kVyxParameterTypes", schemaTypes(type.parameters));
  out.line("using VyxParameterTuple = " + cpp.tuple(type.parameters) + ";");
  std::vector<std::string> list;
  for (auto const& attribute : type.attributes) {
    out.blank();
    emitMember(out, cpp, type, attribute);
    list.push_back(Namer::attribute(attribute.name));
  }
  out.blank();
  out.line("using VyxAttributes = frame::AttributeList<" + joined(list) + ">;");
  out.close("};");
  out.blank();
  out.line("using " + record + " = frame::ValueRecord<" + type.name + ", " + schema + ">;");
  out.blank();
  out.line("} // namespace");
  out.blank();
  out.function("void " + Namer::valueDefinition(type.name) +
                   "(Vyx::IntrospectionReactor& reactor, char const* fullName)",
               "frame::defineValue<" + type.name + ", " + schema + ">(reactor, fullName);");
  out.blank();
  out.function("Vyx::VyxType const* " + type.name + "::_fwkType()",
               "return frame::TypeRecord<" + record + ", void>::get(" + Namer::unit(model.unit.name) + ", " +
                   quoted(type.name) + ");");
  out.blank();
  out.line("} // namespace " + type.space);
  return out.text();
}

} // namespace vyxc
