#include "AttributeEmitter.h"

#include "Emit.h"
#include "EntityParts.h"
#include "Namer.h"

namespace vyxc {

namespace {

// REQUIRES: there is one of that name.
std::size_t placeOf(std::string const& name, std::vector<Parameter> const& parameters) {
  std::size_t place = 0;
  while (parameters[place].name != name) ++place;
  return place;
}

} // namespace

void AttributeEmitter::declaration(Attribute const& attribute) {
  out_.line("// " + attribute.name + ", id " + std::to_string(attribute.id));
  out_.doc(attribute.doc);
  switch (attribute.kind) {
  case AttributeKind::kFunction:
    return function(attribute);
  case AttributeKind::kConst:
    return constant(attribute);
  case AttributeKind::kMutable:
    return scalar(attribute);
  case AttributeKind::kReference:
    return reference(attribute);
  case AttributeKind::kChild:
    return child(attribute);
  case AttributeKind::kCollection:
    return collection(attribute);
  case AttributeKind::kReferences:
    return references(attribute);
  case AttributeKind::kChildren:
    return children(attribute);
  case AttributeKind::kQueue:
    return queue(attribute);
  case AttributeKind::kMember:
  case AttributeKind::kComputed:
  case AttributeKind::kConstant:
    break; // Only of values.
  }
}

void AttributeEmitter::field(Attribute const& attribute) {
  auto const name = " " + Namer::field(attribute.name);
  switch (attribute.kind) {
  case AttributeKind::kFunction:
    return;
  case AttributeKind::kConst:
    return out_.line(cpp_.name(*attribute.type) + name + ";");
  case AttributeKind::kReference:
    return out_.line(cpp_.pointer(*attribute.type, attribute.isConst) + name + ";");
  case AttributeKind::kChild:
    return out_.line("frame::ChildPtr<" + cpp_.name(*attribute.type) + ">" + name + ";");
  case AttributeKind::kMutable:
    break;
  default:
    return out_.line(Namer::map(attribute.name) + name + ";");
  }
  auto const initial = attribute.initial
                           ? " = " + cpp_.expression(*attribute.initial)
                           : std::string(CppTypes::needsInitializer(*attribute.type) ? "{}" : "");
  out_.line(cpp_.name(*attribute.type) + name + initial + ";");
}

void AttributeEmitter::function(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const result = cpp_.held(*attribute.type);
  auto const isVoid = result == "void";
  out_.line((attribute.redefined ? "" : "virtual ") + result + " " + name + "(" +
            cpp_.declared(attribute.parameters) + ")" + (attribute.isConst ? " const" : "") +
            (attribute.redefined ? " override;" : ";"));
  openAttribute(attribute, "Function", result);
  if (attribute.redefined) out_.line("static constexpr bool redefines = true;");
  out_.line(std::string("static constexpr bool isConst = ") + (attribute.isConst ? "true;" : "false;"));
  out_.line("using Arguments = " + cpp_.tuple(attribute.parameters) + ";");
  emitNames(out_, "argumentNames", names(attribute.parameters));
  emitNames(out_, "argumentTypes", schemaTypes(attribute.parameters));
  out_.function("static " + result + " call(auto& of, auto const&... arguments)",
                std::string(isVoid ? "" : "return ") + "of." + name + "(arguments...);");
  out_.close("};");
}

void AttributeEmitter::constant(Attribute const& attribute) {
  out_.function(cpp_.result(*attribute.type) + " " + attribute.name + "() const",
                "return " + Namer::field(attribute.name) + ";");
  openAttribute(attribute, "Constant", cpp_.name(*attribute.type));
  fieldAccess(attribute);
  out_.close("};");
}

void AttributeEmitter::scalar(Attribute const& attribute) {
  auto const& name = attribute.name;
  out_.function(cpp_.result(*attribute.type) + " " + name + "() const", "return " + Namer::field(name) + ";");
  out_.function(ifVirtual(attribute) + "void " + Namer::setter(name) + "(" + cpp_.argument(*attribute.type) +
                    " value)",
                call("set", attribute, "value"));
  openAttribute(attribute, "Scalar", cpp_.name(*attribute.type));
  fieldAccess(attribute);
  tell(attribute);
  if (attribute.isVirtual) {
    out_.function("static void write(auto& of, " + cpp_.name(*attribute.type) + " const& value)",
                  "of." + Namer::setter(name) + "(value);");
  }
  out_.close("};");
}

void AttributeEmitter::reference(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const pointer = cpp_.pointer(*attribute.type, attribute.isConst) + " const&";
  auto const target = cpp_.name(*attribute.type) + (attribute.isConst ? " const" : "");
  out_.function(pointer + " " + name + "() const", "return " + Namer::field(name) + ";");
  out_.function(ifVirtual(attribute) + "void " + Namer::setter(name) + "(" + pointer + " value)",
                call("set", attribute, "value"));
  if (attribute.within) {
    openAttribute(attribute, "OwnReference", target + ", " + Namer::attribute(attribute.within->name));
  } else {
    openAttribute(attribute, "Reference", target);
  }
  fieldAccess(attribute);
  tell(attribute);
  if (attribute.isVirtual) {
    out_.function("static void write(auto& of, " + pointer + " value)",
                  "of." + Namer::setter(name) + "(value);");
  }
  out_.close("};");
}

void AttributeEmitter::child(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const& held = *asEntity(attribute.type);
  auto const pointer = cpp_.pointer(held);
  auto const parameters = cpp_.declared(held.parameters);
  auto const values = joined(names(held.parameters));
  openAttribute(attribute, "Child", cpp_.name(held));
  fieldAccess(attribute);
  tell(attribute);
  auto const unnamed = held.parameters.empty() ? "" : " child";
  out_.function("static auto like(auto& of, " + cpp_.name(held) + " const&" + unnamed + ")",
                "return of." + Namer::setter(name) + "(" +
                    joined(parameterGetters(held.parameters, "child")) + ");");
  instantiation(attribute);
  out_.close("};");
  out_.function(pointer + " " + name + "() const", "return " + Namer::field(name) + ";");
  out_.function(pointer + " " + Namer::make(name) + "(" + parameters + ")",
                "return " + call("newChild", attribute, values));
  out_.function(ifVirtual(attribute) + pointer + " " + Namer::del(name) + "()",
                "return " + call("childDel", attribute));
  out_.function(ifVirtual(attribute) + pointer + " " + Namer::setter(name) + "(" + parameters + ")",
                "return " + call("childIs", attribute, values));
}

void AttributeEmitter::collection(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const value = cpp_.name(*attribute.type);
  auto const keyed = key(attribute) + ", " + value;
  record(attribute, attribute.isTree ? "TreeRecord" : "HashRecord", keyed);
  openAttribute(attribute, "ValueCollection", keyed + ", " + Namer::record(name));
  fieldAccess(attribute);
  tell(attribute);
  if (attribute.isVirtual) keyedWrite(attribute, "of." + Namer::setter(name) + "(key, value);");
  out_.close("};");
  iteratorTypes(attribute);

  auto const keyAndValue = keyArgument(attribute) + ", " + cpp_.argument(*attribute.type) + " value";
  out_.function(value + " " + name + "(" + keyArgument(attribute) + ") const",
                "return " + call("value", attribute, "key"));
  out_.function("std::uint32_t " + Namer::plural(name) + "() const",
                "return " + Namer::field(name) + ".count();");
  out_.function("Vyx::Ptr<" + Namer::record(name) + "> " + Namer::make(name) + "(" + keyAndValue + ")",
                "return " + call("newValue", attribute, "key, value"));
  out_.function(ifVirtual(attribute) + "void " + Namer::setter(name) + "(" + keyAndValue + ")",
                call("valueIs", attribute, "key, value"));
  valueDeletion(attribute, value);
  notification(attribute);
  iterators(attribute);
}

void AttributeEmitter::references(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const pointer = cpp_.pointer(*attribute.type);
  record(attribute, "HashRecord", key(attribute) + ", " + pointer);
  openAttribute(attribute, "ReferenceCollection",
                key(attribute) + ", " + cpp_.name(*attribute.type) + ", " + Namer::record(name));
  fieldAccess(attribute);
  tell(attribute);
  out_.function("static void write(auto& of, " + key(attribute) + " const&, " + pointer + " const& value)",
                "of." + Namer::setter(name) + "(value);");
  out_.close("};");
  iteratorTypes(attribute);

  out_.function(pointer + " " + name + "(" + keyArgument(attribute) + ") const",
                "return " + call("value", attribute, "key"));
  out_.function("std::uint32_t " + Namer::plural(name) + "() const",
                "return " + Namer::field(name) + ".count();");
  out_.function("Vyx::Ptr<" + Namer::record(name) + "> " + Namer::make(name) + "(" + keyArgument(attribute) +
                    ", " + pointer + " const& value)",
                "return " + call("newValue", attribute, "key, value"));
  out_.function("virtual void " + Namer::setter(name) + "(" + pointer + " const& value)",
                call("valueIs", attribute, "value->" + attribute.keyName + "(), value"));
  valueDeletion(attribute, pointer);
  notification(attribute);
  iterators(attribute);
}

void AttributeEmitter::children(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const& held = *asEntity(attribute.type);
  auto const pointer = cpp_.pointer(held);
  auto const given = givenParameters(attribute);
  auto const parameters = cpp_.declared(given);
  auto const values = joined(names(given));
  bool const isHashed = attribute.keyType->qualifiedName() == "Kest::UniqueId";
  out_.line("using " + Namer::map(name) + " = " + mapType(attribute) + ";");
  openAttribute(attribute, "ChildCollection", key(attribute) + ", " + cpp_.name(held));
  fieldAccess(attribute);
  tell(attribute);
  out_.line("static constexpr char const* keyName = " + quoted(attribute.keyName) + ";");
  out_.line(std::string("static constexpr bool hashed = ") + (isHashed ? "true;" : "false;"));
  if (!attribute.namedBy.empty())
    out_.line("static constexpr std::size_t namedBy = " + std::to_string(placeOf(attribute.namedBy, given)) +
              ";");
  out_.function("static auto like(auto& of, " + cpp_.name(held) + " const& member)",
                "return of." + Namer::setter(name) + "(" + joined(parameterGetters(given, "member")) + ");");
  out_.line("static constexpr std::size_t keyPlace = " + std::to_string(placeOf(attribute.keyName, given)) +
            ";");
  instantiation(attribute);
  out_.close("};");
  iteratorTypes(attribute);

  out_.function(pointer + " " + name + "(" + keyArgument(attribute) + ") const",
                "return " + Namer::field(name) + ".find(key);");
  out_.function("std::uint32_t " + Namer::plural(name) + "() const",
                "return " + Namer::field(name) + ".count();");
  out_.function(pointer + " " + Namer::make(name) + "(" + parameters + ")",
                "return " + call("newMember", attribute, values));
  out_.function(ifVirtual(attribute) + pointer + " " + Namer::setter(name) + "(" + parameters + ")",
                "return " + call("memberIs", attribute, attribute.keyName + ", " + values));
  out_.function(ifVirtual(attribute) + pointer + " " + Namer::del(name) + "(" + keyArgument(attribute) + ")",
                "return " + call("memberDel", attribute, "key"));
  out_.function(ifVirtual(attribute) + pointer + " " + Namer::del(name) + "(" + Namer::iterator(name) +
                    "& at)",
                "return " + call("memberDelAt", attribute, "at"));
  out_.function(ifVirtual(attribute) + "void " + Namer::delAll(name) + "()",
                "frame::memberDelAll<" + Namer::iterator(name) + ", " + Namer::attribute(name) + ">(*this);");
  notification(attribute);
  iterators(attribute);
}

void AttributeEmitter::queue(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const value = cpp_.name(*attribute.type);
  auto const argument = cpp_.argument(*attribute.type) + " value";
  record(attribute, "QueueRecord", value);
  openAttribute(attribute, "Queue", value + ", " + Namer::record(name));
  fieldAccess(attribute);
  tell(attribute);
  out_.close("};");
  iteratorTypes(attribute);

  out_.function(value + " " + name + "(unsigned int key) const", "return " + call("value", attribute, "key"));
  out_.function("std::uint32_t " + Namer::plural(name) + "() const",
                "return " + Namer::field(name) + ".count();");
  out_.function(ifVirtual(attribute) + value + " " + Namer::del(name) + "(unsigned int key)",
                "return " + call("queueDel", attribute, "key"));
  out_.function(ifVirtual(attribute) + value + " " + Namer::del(name) + "(" + Namer::iterator(name) + "& at)",
                "return " + call("queueDelAt", attribute, "at"));
  notification(attribute);
  out_.function(ifVirtual(attribute) + "unsigned int " + Namer::enqueue(name) + "(" + argument + ")",
                "return " + call("queueEnq", attribute, "value"));
  out_.function(ifVirtual(attribute) + value + " " + Namer::dequeue(name) + "()",
                "return " + call("queueDeq", attribute));
  out_.function(ifVirtual(attribute) + "bool " + Namer::setter(name) + "(unsigned int key, " + argument + ")",
                "return " + call("queueIs", attribute, "key, value"));
  iterators(attribute);
}

void AttributeEmitter::openAttribute(Attribute const& attribute, std::string const& kind,
                                     std::string const& arguments) {
  out_.openClass("struct " + Namer::attribute(attribute.name), "frame::" + kind + "<" + type_.name + ", " +
                                                                   arguments + ", " +
                                                                   std::to_string(attribute.id) + ">");
  out_.line("static constexpr char const* name = " + quoted(attribute.name) + ";");
}

void AttributeEmitter::fieldAccess(Attribute const& attribute) {
  out_.function("static auto& field(auto& of)", "return of." + Namer::field(attribute.name) + ";");
}

void AttributeEmitter::tell(Attribute const& attribute) {
  bool const isKeyed = isKeyedByReactor(attribute);
  out_.function("static void tell(auto& reactor" + (isKeyed ? ", " + keyArgument(attribute) : "") + ")",
                "reactor." + Namer::entry(attribute.name) + (isKeyed ? "(key);" : "();"));
}

// With the values that the setter takes.
void AttributeEmitter::instantiation(Attribute const& attribute) {
  out_.function("static auto instantiate(auto& of, auto const&... values)",
                "return of." + Namer::setter(attribute.name) + "(values...);");
}

void AttributeEmitter::keyedWrite(Attribute const& attribute, std::string const& statement) {
  out_.function("static void write(auto& of, " + key(attribute) + " const& key, " +
                    cpp_.held(*attribute.type) + " const& value)",
                statement);
}

void AttributeEmitter::record(Attribute const& attribute, std::string const& base,
                              std::string const& arguments) {
  out_.openClass("class " + Namer::record(attribute.name) + " final",
                 "public frame::" + base + "<" + arguments + ">");
  out_.line("using " + base + "::" + base + ";");
  out_.close("};");
  out_.line("using " + Namer::map(attribute.name) + " = " + mapType(attribute) + ";");
}

void AttributeEmitter::iteratorTypes(Attribute const& attribute) {
  auto const& name = attribute.name;
  out_.line("using " + Namer::iteratorConst(name) + " = frame::IteratorConst<" + Namer::map(name) + ">;");
  out_.line("using " + Namer::iterator(name) + " = frame::Iterator<" + type_.name + ", " + Namer::map(name) +
            ">;");
  out_.line("using Vyx" + Namer::iterator(name) + " = " + Namer::iterator(name) + ";");
}

void AttributeEmitter::iterators(Attribute const& attribute) {
  auto const& name = attribute.name;
  auto const from = Namer::iteratorFrom(name);
  auto const constFrom = Namer::iteratorConstFrom(name);
  auto const field = Namer::field(name);
  out_.function(Namer::iteratorConst(name) + " " + constFrom + "() const",
                "return " + Namer::iteratorConst(name) + "(" + field + ");");
  out_.function(Namer::iteratorConst(name) + " " + constFrom + "(" + keyArgument(attribute) + ") const",
                "return {" + field + ", key};");
  out_.function(Namer::iterator(name) + " " + from + "()", "return {this, " + field + "};");
  out_.function(Namer::iterator(name) + " " + from + "(" + keyArgument(attribute) + ")",
                "return {this, " + field + ", key};");
}

void AttributeEmitter::notification(Attribute const& attribute) {
  out_.function(ifVirtual(attribute) + "void " + Namer::notify(attribute.name) + "(" +
                    keyArgument(attribute) + ")",
                call("notify", attribute, "key"));
}

void AttributeEmitter::valueDeletion(Attribute const& attribute, std::string const& value) {
  auto const& name = attribute.name;
  out_.function(ifVirtual(attribute) + value + " " + Namer::del(name) + "(" + keyArgument(attribute) + ")",
                "return " + call("valueDel", attribute, "key"));
  out_.function(ifVirtual(attribute) + value + " " + Namer::del(name) + "(" + Namer::iterator(name) + "& at)",
                "return " + call("valueDelAt", attribute, "at"));
  out_.function(ifVirtual(attribute) + "void " + Namer::delAll(name) + "()",
                "frame::valueDelAll<" + Namer::iterator(name) + ", " + Namer::attribute(name) + ">(*this);");
}

std::string AttributeEmitter::key(Attribute const& attribute) const {
  return attribute.keyType ? cpp_.name(*attribute.keyType) : "unsigned int";
}

std::string AttributeEmitter::keyArgument(Attribute const& attribute) const {
  return (attribute.keyType ? cpp_.argument(*attribute.keyType) : "unsigned int") + " key";
}

std::string AttributeEmitter::mapType(Attribute const& attribute) const {
  auto const member =
      attribute.kind == AttributeKind::kChildren ? cpp_.name(*attribute.type) : Namer::record(attribute.name);
  auto const table = attribute.kind == AttributeKind::kQueue ? "LinkQueue"
                     : attribute.isTree                      ? "RbTreeMap"
                                                             : "HashMap";
  return std::string("Vyx::") + table + "<" + member + ", " + key(attribute) + ">";
}

std::string AttributeEmitter::call(char const* operation, Attribute const& attribute,
                                   std::string const& arguments) const {
  return std::string("frame::") + operation + "<" + Namer::attribute(attribute.name) + ">(*this" +
         (arguments.empty() ? "" : ", " + arguments) + ");";
}

} // namespace vyxc
