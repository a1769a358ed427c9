#include "GeneratedNames.h"
#include "MemberChecker.h"
#include "NameRules.h"

#include <utility>

namespace vyxc {

using ast::MemberKind;

namespace {

bool isAttribute(MemberKind kind) {
  return kind != MemberKind::kConstructor && kind != MemberKind::kBase && kind != MemberKind::kDestructor &&
         kind != MemberKind::kKey && kind != MemberKind::kNoFactory;
}

AttributeKind attributeKind(MemberKind kind) {
  switch (kind) {
  case MemberKind::kFunction:
    return AttributeKind::kFunction;
  case MemberKind::kConst:
    return AttributeKind::kConst;
  case MemberKind::kCollection:
    return AttributeKind::kCollection;
  case MemberKind::kReference:
    return AttributeKind::kReference;
  case MemberKind::kReferences:
    return AttributeKind::kReferences;
  case MemberKind::kChild:
    return AttributeKind::kChild;
  case MemberKind::kChildren:
    return AttributeKind::kChildren;
  case MemberKind::kQueue:
    return AttributeKind::kQueue;
  default:
    return AttributeKind::kMutable;
  }
}

bool heldByPointer(MemberKind kind) {
  return kind == MemberKind::kReference || kind == MemberKind::kReferences || kind == MemberKind::kChild ||
         kind == MemberKind::kChildren;
}

char const* repeated(MemberKind kind) {
  switch (kind) {
  case MemberKind::kConstructor:
    return "a second constructor";
  case MemberKind::kBase:
    return "a second `base`";
  case MemberKind::kDestructor:
    return "a second `destructor`";
  default:
    return "a second key";
  }
}

bool sameSignature(Attribute const& a, Attribute const& b) {
  if (a.type != b.type || a.isConst != b.isConst || a.parameters.size() != b.parameters.size()) return false;
  for (std::size_t i = 0; i < a.parameters.size(); ++i) {
    if (a.parameters[i].type != b.parameters[i].type || a.parameters[i].isConst != b.parameters[i].isConst) {
      return false;
    }
  }
  return true;
}

std::string quoted(std::string const& name) { return "`" + name + "`"; }

} // namespace

void EntityChecker::shape() {
  std::set<MemberKind> seen;
  for (auto const& member : decl_.members) {
    if (isAttribute(member.kind)) continue;
    if (!seen.insert(member.kind).second) {
      diagnostics().error(member.keyword, repeated(member.kind));
    } else if (member.kind == MemberKind::kConstructor) {
      type_.parameters = resolver_.parameters(member.parameters, Use::kValue);
    } else if (member.kind == MemberKind::kDestructor) {
      type_.destructorAnnounces = true;
    } else if (member.kind == MemberKind::kNoFactory) {
      type_.hasFactory = false;
    } else if (member.kind == MemberKind::kKey) {
      addKey(member);
    }
  }
  if (!seen.count(MemberKind::kConstructor)) {
    diagnostics().error(decl_.name.span, "missing constructor in " + quoted(decl_.name.text));
  }
}

void EntityChecker::addKey(ast::Member const& member) {
  Key key;
  key.name = member.name.text;
  key.type = resolver_.type(member.type.name, Use::kValue);
  key.span = member.name.span;
  key.isUnlisted = member.isUnlisted;
  key.isFirst = member.isFirst;
  type_.key = key;
}

void EntityChecker::attributes() {
  AttributeNumbers numbers(type_.firstId(), type_.blockStart() + kBlockSize - 1, diagnostics());
  std::map<std::string, Span> own;
  for (auto const& member : decl_.members) {
    if (!isAttribute(member.kind) || !nameIsFree(member, own)) continue;
    own.emplace(member.name.text, member.name.span);
    addAttribute(member, numbers);
  }
}

bool EntityChecker::nameIsFree(ast::Member const& member, std::map<std::string, Span> const& own) {
  auto const& name = member.name;
  if (!resolver_.usableName(name)) return false;
  if (name.text == type_.name || isNameOfRoot(name.text)) {
    auto const whose = name.text == type_.name ? "the type itself" : "an attribute of Vyx::Entity";
    diagnostics().error(name.span, "reserved name: " + quoted(name.text) + " is " + whose);
    return false;
  }
  auto const seen = own.find(name.text);
  auto const* inherited = type_.base->find(name.text);
  bool const redefinition =
      inherited && member.kind == MemberKind::kFunction && inherited->kind == AttributeKind::kFunction;
  if (seen == own.end() && (!inherited || redefinition)) return true;
  diagnostics().error(name.span, "duplicate attribute " + quoted(name.text));
  diagnostics().note(seen == own.end() ? inherited->span : seen->second, "declared here before");
  return false;
}

void EntityChecker::addAttribute(ast::Member const& member, AttributeNumbers& numbers) {
  Attribute attribute{};
  attribute.kind = attributeKind(member.kind);
  attribute.name = member.name.text;
  attribute.doc = member.doc;
  attribute.span = member.name.span;
  attribute.isTree = member.isTree;
  attribute.isVirtual = member.isVirtual;
  attribute.isConst = member.isConst || member.type.isConst;
  attribute.keyName = member.keyName.text;
  resolveTypes(member, attribute);
  if (!redefines(member, attribute)) attribute.id = numbers.assign(member);
  if (member.kind == MemberKind::kConst) checkConst(member, attribute);
  if (member.initial) attribute.initial = resolver_.expression(*member.initial, attribute.type, {});
  type_.attributes.push_back(std::move(attribute));
  attributeOf_[&member] = &type_.attributes.back();
}

void EntityChecker::resolveTypes(ast::Member const& member, Attribute& attribute) {
  auto const use = member.kind == MemberKind::kFunction ? Use::kResult
                   : heldByPointer(member.kind)         ? Use::kEntity
                                                        : Use::kValue;
  attribute.type = resolver_.type(member.type.name, use);
  if (member.kind == MemberKind::kCollection)
    attribute.keyType = resolver_.type(member.keyType.name, Use::kValue);
  if (member.kind == MemberKind::kFunction) {
    attribute.parameters = resolver_.parameters(member.parameters, Use::kParameter);
  }
}

bool EntityChecker::redefines(ast::Member const& member, Attribute& attribute) {
  auto const* inherited = type_.base->find(attribute.name);
  if (!inherited) return false;
  attribute.id = inherited->id;
  attribute.redefined = inherited->redefined;
  for (auto const* base = type_.base; !attribute.redefined; base = base->base) {
    if (base->own(attribute.name)) attribute.redefined = base;
  }
  if (member.id) {
    diagnostics().error(member.id->span, "a redefinition keeps the id of what it redefines, " +
                                             std::to_string(attribute.id) + "; leave `@` out");
  }
  if (!sameSignature(*inherited, attribute)) {
    diagnostics().error(member.name.span,
                        "redefinition of " + quoted(attribute.name) + " with another signature");
    diagnostics().note(inherited->span, "declared here before");
  }
  return true;
}

void EntityChecker::checkConst(ast::Member const& member, Attribute const& attribute) {
  auto const* parameter = type_.parameter(attribute.name);
  if (!parameter) {
    diagnostics().error(member.name.span,
                        "const attribute " + quoted(attribute.name) + " is no constructor parameter");
  } else if (parameter->type && attribute.type && parameter->type != attribute.type) {
    diagnostics().error(member.type.name.span, "const attribute and constructor parameter " +
                                                   quoted(attribute.name) + " differ in type");
  }
}

void EntityChecker::relations() {
  if (type_.key) checkKey();
  checkBaseArguments();
  checkParametersKept();
  checkGeneratedNames();
  for (auto const& member : decl_.members) {
    auto const found = attributeOf_.find(&member);
    if (found != attributeOf_.end() && found->second->type) checkRelation(member, *found->second);
  }
}

// The key is given to the constructor; that it can be read afterwards holds for every parameter.
void EntityChecker::checkKey() {
  auto const& key = *type_.key;
  if (auto const* inherited = type_.base->inheritedKey()) {
    diagnostics().error(key.span, "the base has a key already");
    diagnostics().note(inherited->span, "declared here");
  }
  auto const* parameter = type_.parameter(key.name);
  if (!parameter) {
    diagnostics().error(key.span, "key " + quoted(key.name) + " is no constructor parameter");
    return;
  }
  if (parameter->type && key.type && parameter->type != key.type) {
    diagnostics().error(key.span, "key and constructor parameter " + quoted(key.name) + " differ in type");
  }
}

// Without `base`: the name if there is one, else the parameters that the type does not keep itself.
void EntityChecker::checkBaseArguments() {
  auto const* given = first(MemberKind::kBase);
  bool const isKnown = !type_.base->isExtern;
  auto const at = given ? given->keyword : decl_.name.span;
  if (given && isKnown) {
    type_.baseArguments = resolver_.arguments(given->arguments, type_.base->parameters, type_.parameters, at,
                                              type_.base->qualifiedName());
    return;
  }
  if (given) {
    for (auto const& argument : given->arguments) {
      type_.baseArguments.push_back(resolver_.expression(argument, nullptr, type_.parameters));
    }
    return;
  }
  for (auto const& parameter : type_.parameters) {
    auto const* own = type_.own(parameter.name);
    bool const wanted =
        type_.parameter("name") ? parameter.name == "name" : !own || own->kind != AttributeKind::kConst;
    if (wanted) type_.baseArguments.push_back({ast::ExprKind::kName, parameter.name});
  }
  if (isKnown && type_.baseArguments.size() != type_.base->parameters.size()) {
    diagnostics().error(at, "missing `base (…)`: the constructor of " + quoted(type_.base->qualifiedName()) +
                                " takes " + counted(type_.base->parameters.size()));
  }
}

// A child is made again from the values that it was made with.
void EntityChecker::checkParametersKept() {
  if (type_.hasUnknownParts()) return;
  for (auto const& parameter : first(MemberKind::kConstructor) ? first(MemberKind::kConstructor)->parameters
                                                               : std::vector<ast::Parameter>()) {
    auto const* attribute = type_.find(parameter.name.text);
    if (parameter.name.text == "name" || (attribute && attribute->kind == AttributeKind::kConst)) continue;
    diagnostics().error(parameter.name.span, "constructor parameter " + quoted(parameter.name.text) +
                                                 " is neither a const attribute nor `name`");
  }
}

// `nexthops` beside a collection `nexthop` would be declared twice.
void EntityChecker::checkGeneratedNames() {
  std::map<std::string, Attribute const*> taken;
  for (auto const* type = type_.base; type; type = type->base) {
    for (auto const& attribute : type->attributes) {
      for (auto const& name : generatedNames(attribute)) taken.emplace(name, &attribute);
    }
  }
  for (auto const& attribute : type_.attributes) {
    if (attribute.redefined) continue;
    for (auto const& name : generatedNames(attribute)) {
      auto const [other, isNew] = taken.emplace(name, &attribute);
      if (isNew || other->second == &attribute) continue;
      diagnostics().error(attribute.span, quoted(attribute.name) + " and " + quoted(other->second->name) +
                                              " both generate the name " + quoted(name));
      diagnostics().note(other->second->span, "the other is here");
      break;
    }
  }
}

void EntityChecker::checkRelation(ast::Member const& member, Attribute& attribute) {
  switch (attribute.kind) {
  case AttributeKind::kReferences:
    return checkKeyOfReferences(member, attribute);
  case AttributeKind::kChildren:
    checkKeyOfChildren(member, attribute);
    return checkNamedBy(member, attribute);
  case AttributeKind::kReference:
    return checkWithin(member, attribute);
  case AttributeKind::kChild:
    return checkChildArguments(member, attribute);
  default:
    break;
  }
}

void EntityChecker::checkKeyOfReferences(ast::Member const& member, Attribute& attribute) {
  auto const* held = asEntity(attribute.type)->find(attribute.keyName);
  if (held && held->kind == AttributeKind::kConst) {
    attribute.keyType = held->type;
    return;
  }
  diagnostics().error(member.keyName.span,
                      "missing key attribute: " + quoted(attribute.type->qualifiedName()) +
                          " has no const attribute " + quoted(attribute.keyName));
}

void EntityChecker::checkKeyOfChildren(ast::Member const& member, Attribute& attribute) {
  auto const& child = *asEntity(attribute.type);
  auto const* parameter = child.parameter(attribute.keyName);
  auto const* key = child.inheritedKey();
  if (!parameter) {
    diagnostics().error(member.keyName.span, "missing key attribute: the constructor of " +
                                                 quoted(child.qualifiedName()) + " has no parameter " +
                                                 quoted(attribute.keyName));
  } else if (!key || key->name != attribute.keyName) {
    diagnostics().error(member.keyName.span, "missing key attribute: " + quoted(child.qualifiedName()) +
                                                 " does not say `key " + attribute.keyName + "`");
  } else {
    attribute.keyType = parameter->type;
  }
}

// The name is then the one value that the maker of a member does not give, so it can't be the key.
void EntityChecker::checkNamedBy(ast::Member const& member, Attribute& attribute) {
  auto const& by = member.namedBy;
  if (by.text.empty()) return;
  auto const& child = *asEntity(attribute.type);
  if (child.parameters.empty() || child.parameters.front().name != "name") {
    diagnostics().error(by.span, "the constructor of " + quoted(child.qualifiedName()) +
                                     " does not begin with `name`, which would be made here");
  } else if (by.text == "name" || !child.parameter(by.text)) {
    diagnostics().error(by.span, quoted(by.text) + " is no constructor parameter of " +
                                     quoted(child.qualifiedName()) + " behind its name");
  } else if (attribute.keyName == "name") {
    diagnostics().error(member.keyName.span,
                        "the key `name` is to be given, not made from " + quoted(by.text));
  }
  attribute.namedBy = by.text;
}

void EntityChecker::checkWithin(ast::Member const& member, Attribute& attribute) {
  if (member.within.text.empty()) return;
  auto const* collection = type_.own(member.within.text);
  if (collection && collection->kind == AttributeKind::kChildren && collection->type == attribute.type) {
    if (collection->span.begin > attribute.span.begin) {
      diagnostics().error(member.within.span, quoted(member.within.text) + " is declared only below");
    }
    attribute.within = collection;
    return;
  }
  diagnostics().error(member.within.span, quoted(member.within.text) + " is no children collection of " +
                                              quoted(attribute.type->qualifiedName()));
}

void EntityChecker::checkChildArguments(ast::Member const& member, Attribute& attribute) {
  if (!member.hasArguments) return;
  auto const& child = *asEntity(attribute.type);
  if (child.isExtern) {
    attribute.arguments.emplace();
    for (auto const& argument : member.arguments) {
      attribute.arguments->push_back(resolver_.expression(argument, nullptr, type_.parameters));
    }
    return;
  }
  attribute.arguments = resolver_.arguments(member.arguments, child.parameters, type_.parameters,
                                            member.name.span, child.qualifiedName());
}

ast::Member const* EntityChecker::first(MemberKind kind) const {
  for (auto const& member : decl_.members) {
    if (member.kind == kind) return &member;
  }
  return nullptr;
}

} // namespace vyxc
