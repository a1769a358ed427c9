// The outputs of an entity type: its class with reactor interface and factory, and what reflection needs.

#include "AttributeEmitter.h"
#include "Emit.h"
#include "EntityParts.h"
#include "Namer.h"

namespace vyxc {

namespace {

class EntityEmitter {
public:
  EntityEmitter(Model const& model, EntityType const& type)
      : model_(model), type_(type), cpp_(type.space), base_(cpp_.name(*type.base)),
        links_(linksOf(model, type)) {}

  std::string header();
  std::string source();

private:
  void forwardDeclarations(std::set<Type const*> const& types, bool ofOwnSpace);
  void classHead();
  void construction();
  void constructor(std::string const& scope);
  void standards();
  void adapterOperations();
  void key();
  void fields();
  void reactors();
  void adapter();
  void definitions();

  // With something to do beyond the initializers, it stands in the source.
  std::vector<std::string> constructorStatements() const;
  std::vector<std::string> initializers() const;
  std::vector<std::string> destructorStatements() const;
  std::string explicitWord() const { return type_.parameters.size() == 1 ? "explicit " : ""; }
  std::string factorySignature() const;

  Model const& model_;
  EntityType const& type_;
  CppTypes cpp_;
  std::string base_;
  Links links_;
  CodeWriter out_;
};

std::string EntityEmitter::header() {
  auto used = usedTypes(type_);
  used.headers.insert("frame/EntityFrame.h");
  emitHead(out_, model_.schemaOf.at(&type_));
  out_.line("#pragma once");
  out_.blank();
  emitIncludes(out_, "", used.headers);
  out_.line("static_assert(frame::kVersion == 1, \"made for another version of the frame\");");
  out_.blank();
  forwardDeclarations(used.forward, false);
  out_.line("namespace " + type_.space + " {");
  out_.blank();
  forwardDeclarations(used.forward, true);
  classHead();
  out_.blank();
  reactors();
  if (type_.hasFactory) {
    out_.line(factorySignature() + ";");
    out_.blank();
  }
  out_.line("} // namespace " + type_.space);
  return out_.text();
}

void EntityEmitter::forwardDeclarations(std::set<Type const*> const& types, bool ofOwnSpace) {
  std::set<std::pair<std::string, std::string>> sorted;
  for (auto const* type : types) {
    if ((type->space == type_.space) == ofOwnSpace) sorted.emplace(type->space, type->name);
  }
  if (sorted.empty()) return;
  std::string space = ofOwnSpace ? type_.space : "";
  for (auto const& [itsSpace, name] : sorted) {
    if (itsSpace != space) {
      if (!space.empty()) out_.line("} // namespace " + space);
      out_.line("namespace " + itsSpace + " {");
      space = itsSpace;
    }
    out_.line("class " + name + ";");
  }
  if (!ofOwnSpace) out_.line("} // namespace " + space);
  out_.blank();
}

void EntityEmitter::classHead() {
  out_.doc(type_.doc);
  out_.openClass("class " + type_.name, "public " + base_);
  out_.access("public");
  out_.line("using VyxBase = " + base_ + ";");
  for (char const* nested : {"NotifieeConst", "Notifiee", "VyxNboAttrLogSa", "GenericIf_", "_Type"}) {
    out_.line(std::string("class ") + nested + ";");
  }
  out_.blank();
  construction();
  out_.blank();
  standards();
  key();
  AttributeEmitter attributes(out_, type_);
  std::vector<std::string> list;
  for (auto const& attribute : type_.attributes) {
    out_.blank();
    attributes.declaration(attribute);
    list.push_back(Namer::attribute(attribute.name));
  }
  out_.blank();
  out_.line("using VyxAttributes = frame::AttributeList<" + joined(list) + ">;");
  fields();
  out_.close("};");
}

void EntityEmitter::construction() {
  if (constructorStatements().empty()) {
    constructor("");
  } else {
    out_.line(explicitWord() + type_.name + "(" + cpp_.declared(type_.parameters) + ");");
  }
  if (type_.destructorAnnounces) out_.line("~" + type_.name + "() override;");
  emitNames(out_, "kVyxParameterNames", names(type_.parameters));
  emitNames(out_, "kVyxParameterTypes", schemaTypes(type_.parameters));
  out_.line("using VyxParameterTuple = " + cpp_.tuple(type_.parameters) + ";");
  out_.function("static auto vyxParameters(" + type_.name + " const&" +
                    (type_.parameters.empty() ? "" : " of") + ")",
                "return VyxParameterTuple(" + joined(parameterGetters(type_.parameters, "of")) + ");");
}

void EntityEmitter::constructor(std::string const& scope) {
  out_.constructor((scope.empty() ? explicitWord() : scope) + type_.name + "(" +
                       cpp_.declared(type_.parameters) + ")",
                   initializers(), constructorStatements());
}

std::vector<std::string> EntityEmitter::initializers() const {
  std::vector<std::string> result{base_ + "(" + cpp_.expressions(type_.baseArguments) + ")"};
  for (auto const& attribute : type_.attributes) {
    if (attribute.kind != AttributeKind::kConst) continue;
    result.push_back(Namer::field(attribute.name) + "(" + attribute.name + ")");
  }
  return result;
}

std::vector<std::string> EntityEmitter::constructorStatements() const {
  std::vector<std::string> result;
  for (auto const& attribute : type_.attributes) {
    if (!attribute.arguments) continue;
    auto const qualified = attribute.isVirtual ? type_.name + "::" : "";
    result.push_back(qualified + Namer::setter(attribute.name) + "(" +
                     cpp_.expressions(*attribute.arguments) + ");");
  }
  return result;
}

std::vector<std::string> EntityEmitter::destructorStatements() const {
  std::vector<std::string> result;
  for (auto const& attribute : type_.attributes) {
    auto const qualified = attribute.isVirtual ? type_.name + "::" : "";
    if (attribute.kind == AttributeKind::kChildren)
      result.push_back(qualified + Namer::delAll(attribute.name) + "();");
    if (attribute.kind == AttributeKind::kChild)
      result.push_back(qualified + Namer::del(attribute.name) + "();");
  }
  return result;
}

void EntityEmitter::standards() {
  out_.line("static Vyx::VyxType const* _fwkType();");
  out_.function("Vyx::VyxType const* fwkType() const override", "return _fwkType();");
  out_.line("Vyx::String8 attributeString(Vyx::AttributeId id) const override;");
  adapterOperations();
  if (!isFirstOfLine(type_)) return;
  out_.function("void isNondestructingIs(bool value) override", "frame::isNondestructingIs(*this, value);");
  out_.function("void zeroReferencesIs(bool) override", "frame::zeroReferencesIs(*this);");
  out_.function("Vyx::ListRaw<NotifieeConst>& vyxReactors() const", "return reactors_;");
}

// ORDER: that of their slots.
void EntityEmitter::adapterOperations() {
  out_.line("VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) const override;");
  out_.function("bool vyxHasAttrLogInterface() const override", "return true;");
  out_.line("VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) override;");
  out_.line("VyxAdapter vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const override;");
  out_.line("VyxAdapter vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out, "
            "Vyx::PtrInterface* channelEntry) override;");
  out_.line("VyxAdapter vyxNboAttrLogSaDel(VyxConstLog const& out) override;");
}

void EntityEmitter::key() {
  if (!type_.key) return;
  auto const& key = *type_.key;
  out_.blank();
  out_.line("// The key under which a collection of the parent holds this entity.");
  bool const isName = key.name == "name" && !type_.find("name");
  out_.function((isName ? cpp_.name(*key.type) : cpp_.result(*key.type)) + " fwkKey() const",
                "return " + key.name + "();");
  if (!key.isUnlisted) out_.line("using VyxListedKey = " + cpp_.name(*key.type) + ";");
}

void EntityEmitter::fields() {
  bool const linksFirst = type_.key && type_.key->isFirst;
  std::string access = "public";
  auto section = [&](std::string const& wanted) {
    if (access == wanted) return;
    out_.blank();
    out_.access(wanted);
    access = wanted;
  };
  auto links = [&] {
    if (!links_.hash && !links_.tree) return;
    access.clear();
    section("public");
    if (links_.hash) out_.line("Vyx::HashLink fwkHmNext_; // Written by the table that holds this entity.");
    if (links_.tree)
      out_.line("Vyx::RbTreeLinks fwkRbLinks_; // Written by the tree that holds this entity.");
  };
  if (linksFirst) links();
  AttributeEmitter attributes(out_, type_);
  for (auto const& attribute : type_.attributes) {
    if (attribute.kind == AttributeKind::kFunction) continue;
    section("private");
    attributes.field(attribute);
  }
  if (!linksFirst) links();
  if (!isFirstOfLine(type_)) return;
  section("private");
  out_.line("mutable Vyx::ListRaw<NotifieeConst> reactors_;");
}

void EntityEmitter::reactors() {
  auto const& name = type_.name;
  out_.line("// Hears of changes of a " + name + "; every entry is empty.");
  out_.openClass("class " + name + "::NotifieeConst",
                 "public frame::ReactorOn<" + name + ", " + base_ + "::NotifieeConst>");
  auto const entries = reactorEntries(type_, cpp_);
  if (isFirstOfLine(type_) || !entries.empty()) {
    out_.access("public");
    if (isFirstOfLine(type_)) out_.line("virtual void onIsNondestructing() {}");
    for (auto const& entry : entries)
      out_.line(entry.isOfRoot ? entry.signature() + " override {}" : "virtual " + entry.signature() + " {}");
    out_.blank();
  }
  out_.access("protected");
  out_.line("NotifieeConst() = default;");
  out_.close("};");
  out_.blank();
  out_.openClass("class " + name + "::Notifiee", "public frame::WritableReactorOn<" + name + ">");
  out_.access("protected");
  out_.line("Notifiee() = default;");
  out_.close("};");
  out_.blank();
}

std::string EntityEmitter::factorySignature() const {
  return "Vyx::Ptr<" + type_.name + "> " + Namer::factory(type_.name) + "(" +
         cpp_.declared(type_.parameters) + ")";
}

std::string EntityEmitter::source() {
  emitHead(out_, model_.schemaOf.at(&type_));
  auto headers = headersOfReflection(type_);
  headers.insert("frame/EntityReflection.h");
  emitIncludes(out_, type_.header, headers);
  out_.line("namespace " + type_.space + " {");
  out_.blank();
  emitUnitDeclaration(out_, model_);
  out_.openClass("class " + type_.name + "::_Type final", "public frame::EntityType<" + type_.name + ">");
  out_.access("public");
  out_.line("using EntityType::EntityType;");
  out_.close("};");
  out_.blank();
  adapter();
  definitions();
  out_.line("} // namespace " + type_.space);
  return out_.text();
}

void EntityEmitter::adapter() {
  auto const& name = type_.name;
  out_.openClass("class " + name + "::GenericIf_ final",
                 "public frame::EntityGenericIf<" + name + ", " + name + "::GenericIf_>");
  out_.access("public");
  out_.line("using EntityGenericIf::EntityGenericIf;");
  out_.openClass("class GenericIf_Adapter_ final", "public frame::GenericIfAdapter<" + name + ">");
  out_.access("public");
  out_.line("using GenericIfAdapter::GenericIfAdapter;");
  std::vector<EntityType const*> line;
  for (auto const* type = &type_; !type->isRoot(); type = type->base) line.insert(line.begin(), type);
  constexpr std::uint32_t kIsNondestructing = 6;
  std::vector<ReactorEntry> entries{{"onIsNondestructing", {}, kIsNondestructing, false}};
  for (auto const* type : line) {
    auto const own = reactorEntries(*type, cpp_);
    entries.insert(entries.end(), own.begin(), own.end());
  }
  for (auto const& entry : entries) {
    bool const hasKey = !entry.keyType.empty();
    out_.function(entry.signature(hasKey ? "key" : "") + " override",
                  "forward(" + std::to_string(entry.id) + (hasKey ? ", key);" : ");"));
  }
  out_.close("};");
  out_.close("};");
  out_.blank();
}

void EntityEmitter::definitions() {
  auto const& name = type_.name;
  auto const scope = name + "::";
  if (!constructorStatements().empty()) {
    constructor(scope);
    out_.blank();
  }
  if (type_.destructorAnnounces) {
    out_.function(scope + "~" + name + "()", destructorStatements());
    out_.blank();
  }
  out_.function("Vyx::VyxType const* " + scope + "_fwkType()",
                "return frame::TypeRecord<_Type, VyxBase>::get(" + Namer::unit(model_.unit.name) + ", " +
                    quoted(name) + ");");
  out_.blank();
  out_.function("Vyx::String8 " + scope + "attributeString(Vyx::AttributeId id) const",
                "return frame::attributeString(*this, id, VyxAttributes());");
  out_.blank();
  if (!type_.hasFactory) return;
  out_.function(factorySignature(),
                "return Vyx::make<" + name + ">(" + joined(names(type_.parameters)) + ");");
  out_.blank();
}

} // namespace

std::string entityHeader(Model const& model, EntityType const& type) {
  return EntityEmitter(model, type).header();
}

std::string entitySource(Model const& model, EntityType const& type) {
  return EntityEmitter(model, type).source();
}

} // namespace vyxc
