// The outputs of an entity type that join it to attribute logs: its stream adapter, with the reactor that
// stands for it in the entity's list, and what the entity knows of its adapters.

#include "Emit.h"
#include "EntityParts.h"
#include "Namer.h"

#include <algorithm>

namespace vyxc {

namespace {

char const* const kAdapter = "VyxNboAttrLogSa";
char const* const kReactor = "VyxNboAttrLogSaAdapter_";
char const* const kMaking = "Vyx_BitSet flags, Vyx::Ptr<{}> const& entity, unsigned int options, "
                            "Log const& out, Vyx::PtrInterface* channelEntry";
char const* const kMade = "flags, entity, options, out, channelEntry";

bool isText(Attribute const& attribute) {
  return attribute.kind == AttributeKind::kMutable && attribute.type->qualifiedName() == "Vyx::String8";
}

class AdapterEmitter {
public:
  AdapterEmitter(Model const& model, EntityType const& type)
      : model_(model), type_(type), cpp_(type.space), base_(cpp_.name(*type.base)) {
    for (auto const& attribute : type.attributes)
      if (hasReactorEntry(attribute)) travelling_.push_back(&attribute);
    std::stable_sort(travelling_.begin(), travelling_.end(),
                     [](auto const* a, auto const* b) { return a->id < b->id; });
  }

  std::string header();
  std::string source();

private:
  void head();
  void dirtyBits();
  void flowOut();
  void construction();
  void reactions();
  void reaction(Attribute const& attribute);
  void childOperations(Attribute const& attribute);
  void reactor();
  void tells(EntityType const& of);
  static void addHeadersOf(EntityType const& of, std::set<std::string>& headers);
  void definitions();
  // An operation of the adapter: declared here, defined in the source, where the children's adapters are
  // known.
  void operation(std::string const& words, std::string const& result, std::string const& signature,
                 std::string const& statement);

  bool owesOwn() const { return isFirstOfLine(type_) || !travelling_.empty(); }
  std::string dirtySet() const { return "VyxDirtyBitSet" + std::to_string(type_.level - 1); }
  std::string making(std::string const& entity) const {
    std::string text(kMaking);
    return text.replace(text.find("{}"), 2, entity);
  }
  static std::string nondestructing(std::string const& of) {
    return "replication::IsNondestructing<" + of + ">";
  }
  std::vector<std::string> list() const;
  std::string keyArgument(Attribute const& attribute) const;

  Model const& model_;
  EntityType const& type_;
  CppTypes cpp_;
  std::string base_;
  std::vector<Attribute const*> travelling_;
  CodeWriter out_;
  CodeWriter definitions_;
};

void AdapterEmitter::operation(std::string const& words, std::string const& result,
                               std::string const& signature, std::string const& statement) {
  out_.line(words + result + " " + signature + ";");
  definitions_.function(result + " " + type_.name + "::" + kAdapter + "::" + signature, statement);
}

std::vector<std::string> AdapterEmitter::list() const {
  std::vector<std::string> result;
  if (isFirstOfLine(type_)) result.push_back(nondestructing(type_.name));
  for (auto const* attribute : travelling_) result.push_back(Namer::attribute(attribute->name));
  return result;
}

std::string AdapterEmitter::keyArgument(Attribute const& attribute) const {
  return (attribute.keyType ? cpp_.argument(*attribute.keyType) : std::string("unsigned int")) + " key";
}

std::string AdapterEmitter::header() {
  std::set<std::string> headers{type_.header, "replication/StreamAdapterOf.h"};
  if (!type_.base->isRoot()) headers.insert(Namer::adapterHeader(type_.base->space, type_.base->name));
  emitHead(out_, model_.schemaOf.at(&type_));
  out_.line("#pragma once");
  out_.blank();
  emitIncludes(out_, type_.header, headers);
  out_.line("namespace " + type_.space + " {");
  out_.blank();
  head();
  out_.line("} // namespace " + type_.space);
  out_.blank();
  out_.line("extern template class replication::StreamAdapterOf<" + type_.qualifiedName() + ">;");
  return out_.text();
}

void AdapterEmitter::head() {
  out_.line("// Joins a " + type_.name + " to an attribute log.");
  out_.openClass("class " + type_.name + "::" + kAdapter,
                 "public replication::StreamAdapterOf<" + type_.name + ">");
  out_.access("public");
  out_.line("using VyxReplicated = frame::AttributeList<" + joined(list()) + ">;");
  out_.line(std::string("class ") + kReactor + ";");
  if (owesOwn()) {
    out_.blank();
    dirtyBits();
    flowOut();
  }
  out_.blank();
  construction();
  reactions();
  out_.close("};");
  out_.blank();
}

void AdapterEmitter::dirtyBits() {
  out_.openClass("class " + dirtySet(), "public replication::DirtyBits<VyxReplicated>");
  out_.access("public");
  auto one = [&](std::string const& name, std::string const& attribute) {
    out_.function("void vyxIs" + Namer::upper(name) + "DirtyIs(bool dirty)",
                  "dirtyIs<" + attribute + ">(dirty);");
  };
  if (isFirstOfLine(type_)) one("isNondestructing", nondestructing(type_.name));
  for (auto const* attribute : travelling_) one(attribute->name, Namer::attribute(attribute->name));
  out_.close("};");
}

void AdapterEmitter::flowOut() {
  out_.openClass("class FlowOut", "public replication::FlowOutOf<" + base_ + "::" + kAdapter + "::FlowOut, " +
                                      dirtySet() + ">");
  out_.access("public");
  out_.line("using FlowOutOf::FlowOutOf;");
  out_.function(dirtySet() + "* vyxDirtyBitSet1()", "return dirty();");
  out_.close("};");
}

void AdapterEmitter::construction() {
  auto const& name = type_.name;
  out_.line(std::string(kAdapter) + "(" + making(name) + ");");
  definitions_.constructor(name + "::" + kAdapter + "::" + kAdapter + "(" + making(name) + ")",
                           {std::string("StreamAdapterOf(") + kMade + ")"}, {"transactAll();"});
  operation("static ", "Vyx::Ptr<" + name + "::Notifiee>",
            "vyxNewAdapter(Vyx::Ptr<" + name + "> const& entity, StreamAdapterOf* behind)",
            std::string("return Vyx::make<") + kReactor + ">(entity, behind);");
  out_.function("Vyx::Ptr<FlowOut> flowOut() const", "return replication::flowOutOf(*this);");
}

void AdapterEmitter::reactions() {
  if (isFirstOfLine(type_)) {
    out_.blank();
    operation("virtual ", "void", "onIsNondestructing()",
              "replication::react<" + nondestructing(type_.name) + ">(*this);");
  }
  for (auto const* attribute : travelling_) {
    out_.blank();
    out_.line("// " + attribute->name + ", id " + std::to_string(attribute->id));
    reaction(*attribute);
  }
}

void AdapterEmitter::reaction(Attribute const& attribute) {
  auto const marker = Namer::attribute(attribute.name);
  auto const handle = "vyxHandle" + Namer::upper(attribute.name) + "Serialize";
  bool const isKeyed = isKeyedByReactor(attribute);
  bool const isChildren = attribute.kind == AttributeKind::kChildren;
  operation("virtual ", "void",
            Namer::entry(attribute.name) + "(" + (isKeyed ? keyArgument(attribute) : "") + ")",
            "replication::react<" + marker + ">(*this" + (isKeyed ? ", key);" : ");"));
  if (isText(attribute))
    operation("", "bool", handle + "()", "return replication::textChanged<" + marker + ">(*this);");
  if (isChildren) {
    operation("", "void",
              handle + "Sing(" + keyArgument(attribute) + ", " + cpp_.pointer(*attribute.type) +
                  " const& child)",
              "replication::childChanged<" + marker + ">(*this, child, key);");
  } else if (isKeyed) {
    auto const value = attribute.kind == AttributeKind::kReferences
                           ? cpp_.pointer(*attribute.type) + " const&"
                           : cpp_.argument(*attribute.type);
    operation("", "void",
              handle + "Sing(" + keyArgument(attribute) + ", " + value + " value, bool keyMissing)",
              "replication::memberChanged<" + marker + ">(*this, key, value, keyMissing);");
  }
  if (isKeyed)
    operation("", "bool", handle + "Coll()", "return replication::walkCollection<" + marker + ">(*this);");
  if (isChildren || attribute.kind == AttributeKind::kChild) childOperations(attribute);
}

void AdapterEmitter::childOperations(Attribute const& attribute) {
  auto const child = cpp_.pointer(*attribute.type);
  auto const adapter = "Vyx::Ptr<" + cpp_.name(*attribute.type) + "::" + kAdapter + ">";
  auto const stem = attribute.name + "NboAttrLogAdapter";
  out_.line("// Nobody finds a child's adapter by this: it is asked of the child.");
  auto const asked = cpp_.pointer(*attribute.type, true);
  operation("", adapter, stem + "(" + asked + " const&)", "return {};");
  operation("", adapter, stem + "(" + asked + " const&) const", "return {};");
  operation("", adapter,
            stem + "Is(Vyx_BitSet flags, " + child +
                " const& child, unsigned int options, Log const& out, Vyx::PtrInterface* channelEntry)",
            "return replication::childAdapterIs<" + Namer::attribute(attribute.name) +
                ">(*this, flags, child, options, out, channelEntry);");
  operation("", adapter, stem + "Del(" + child + " const& child)",
            "return replication::childAdapterDel(*this, child);");
}

void AdapterEmitter::reactor() {
  auto const scope = type_.name + "::" + kAdapter + "::";
  out_.openClass("class " + scope + kReactor + " final", "public replication::AdapterOf<" + type_.name + ">");
  out_.access("public");
  out_.line("using AdapterOf::AdapterOf;");
  std::vector<EntityType const*> line;
  for (auto const* one = &type_; !one->isRoot(); one = one->base) line.insert(line.begin(), one);
  out_.function("void onIsNondestructing() override",
                "vyxTell<" + nondestructing(cpp_.name(*line.front())) + ">();");
  for (auto const* one : line) tells(*one);
  out_.close("};");
  out_.blank();
}

void AdapterEmitter::tells(EntityType const& of) {
  for (auto const& attribute : of.attributes) {
    if (!hasReactorEntry(attribute)) continue;
    auto const isKeyed = isKeyedByReactor(attribute);
    out_.function("void " + Namer::entry(attribute.name) + "(" + (isKeyed ? keyArgument(attribute) : "") +
                      ") override",
                  "vyxTell<" + Namer::attribute(attribute.name) + ">(" + (isKeyed ? "key);" : ");"));
  }
}

// What the reactions to the attributes of that class need: it hears of its bases', too.
void AdapterEmitter::addHeadersOf(EntityType const& of, std::set<std::string>& headers) {
  for (auto const& attribute : of.attributes) {
    auto const* entity = asEntity(attribute.type);
    if (!entity || !hasReactorEntry(attribute)) continue;
    headers.insert(entity->header);
    bool const isOwned =
        attribute.kind == AttributeKind::kChild || attribute.kind == AttributeKind::kChildren;
    if (isOwned) headers.insert(Namer::adapterHeader(entity->space, entity->name));
  }
}

// What the entity itself answers about its adapters.
void AdapterEmitter::definitions() {
  auto const answer = "Vyx::Entity::VyxAdapter " + type_.name + "::";
  auto const find = answer + "vyxNboAttrLogSa(VyxConstLog const& out)";
  out_.function(find + " const", "return const_cast<" + type_.name + "*>(this)->vyxNboAttrLogSa(out);");
  out_.function(find, "return replication::findAdapter(*this, out);");
  out_.function(answer + "vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const",
                "return replication::findForMsgChannel(*this, other);");
  out_.function(answer + "vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out, "
                         "Vyx::PtrInterface* channelEntry)",
                "return replication::adapterIs(*this, flags, options, out, channelEntry);");
  out_.function(answer + "vyxNboAttrLogSaDel(VyxConstLog const& out)",
                "return replication::adapterDel(*this, out);");
  out_.blank();
}

std::string AdapterEmitter::source() {
  std::set<std::string> headers;
  for (auto const* of = &type_; !of->isRoot(); of = of->base) addHeadersOf(*of, headers);
  header(); // Composes the definitions, too.
  out_ = CodeWriter();
  emitHead(out_, model_.schemaOf.at(&type_));
  emitIncludes(out_, Namer::adapterHeader(type_.space, type_.name), headers);
  out_.line("template class replication::StreamAdapterOf<" + type_.qualifiedName() + ">;");
  out_.blank();
  out_.line("namespace " + type_.space + " {");
  out_.blank();
  reactor();
  definitions();
  return out_.text() + definitions_.text() + "\n} // namespace " + type_.space + "\n";
}

} // namespace

std::string adapterHeader(Model const& model, EntityType const& type) {
  return AdapterEmitter(model, type).header();
}

std::string adapterSource(Model const& model, EntityType const& type) {
  return AdapterEmitter(model, type).source();
}

} // namespace vyxc
