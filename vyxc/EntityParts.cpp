#include "EntityParts.h"

#include "NameRules.h"
#include "Namer.h"

#include <algorithm>

namespace vyxc {

namespace {

std::vector<Type const*> typesOf(Attribute const& attribute) {
  std::vector<Type const*> result{attribute.type};
  if (attribute.keyType) result.push_back(attribute.keyType);
  for (auto const& parameter : attribute.parameters) result.push_back(parameter.type);
  return result;
}

// The class with the key that a collection of `type` goes by.
EntityType const* keyedClass(EntityType const* type) {
  while (type && !type->key) type = type->base;
  return type;
}

// Whether the header of `from` brings that of `to` along, so that `to` cannot bring it too.
bool brings(EntityType const& from, EntityType const& to) {
  std::set<EntityType const*> seen;
  std::vector<EntityType const*> owed{&from};
  while (!owed.empty()) {
    auto const* type = owed.back();
    owed.pop_back();
    if (type == &to) return true;
    if (!type || type->isExtern || !seen.insert(type).second) continue;
    owed.push_back(type->base);
    for (auto const& attribute : type->attributes) {
      if (attribute.kind != AttributeKind::kFunction) owed.push_back(asEntity(attribute.type));
    }
  }
  return false;
}

void addWhole(UsedTypes& used, EntityType const& type, Type const* needed) {
  auto const* entity = asEntity(needed);
  if (needed == &type || needed->header.empty()) return;
  if (entity && !entity->isExtern && entity != type.base && brings(*entity, type)) {
    used.forward.insert(entity);
  } else {
    used.headers.insert(needed->header);
  }
}

} // namespace

bool isKeyedByReactor(Attribute const& attribute) {
  return attribute.kind == AttributeKind::kCollection || attribute.kind == AttributeKind::kReferences ||
         attribute.kind == AttributeKind::kChildren || attribute.kind == AttributeKind::kQueue;
}

bool hasReactorEntry(Attribute const& attribute) {
  return attribute.kind != AttributeKind::kFunction && attribute.kind != AttributeKind::kConst;
}

std::vector<ReactorEntry> reactorEntries(EntityType const& type, CppTypes const& cpp) {
  std::vector<ReactorEntry> result;
  for (auto const& attribute : type.attributes) {
    if (!hasReactorEntry(attribute)) continue;
    auto const entry = Namer::entry(attribute.name);
    if (isKeyedByReactor(attribute)) {
      auto const key = attribute.keyType ? cpp.argument(*attribute.keyType) : std::string("unsigned int");
      result.push_back({entry, key, attribute.id, false});
      result.push_back({Namer::immediateEntry(attribute.name), {}, attribute.id, false});
    }
    result.push_back({entry, {}, attribute.id, isEntryOfRoot(entry)});
  }
  std::stable_sort(result.begin(), result.end(),
                   [](ReactorEntry const& a, ReactorEntry const& b) { return a.id < b.id; });
  return result;
}

Links linksOf(Model const& model, EntityType const& type) {
  Links links;
  if (!type.key) return links;
  for (auto const& candidate : model.types) {
    auto const* owner = asEntity(candidate.get());
    if (!owner) continue;
    for (auto const& attribute : owner->attributes) {
      if (attribute.kind != AttributeKind::kChildren || keyedClass(asEntity(attribute.type)) != &type)
        continue;
      (attribute.isTree ? links.tree : links.hash) = true;
    }
  }
  if (!links.tree) links.hash = true;
  return links;
}

UsedTypes usedTypes(EntityType const& type) {
  UsedTypes used;
  addWhole(used, type, type.base);
  for (auto const& parameter : type.parameters) addWhole(used, type, parameter.type);
  if (type.key) addWhole(used, type, type.key->type);
  for (auto const& attribute : type.attributes) {
    if (attribute.kind != AttributeKind::kFunction) {
      for (auto const* needed : typesOf(attribute)) addWhole(used, type, needed);
      if (attribute.kind == AttributeKind::kChild || attribute.kind == AttributeKind::kChildren) {
        for (auto const& parameter : asEntity(attribute.type)->parameters)
          addWhole(used, type, parameter.type);
      }
      continue;
    }
    for (auto const* needed : typesOf(attribute)) {
      if (asEntity(needed)) {
        used.forward.insert(needed);
      } else {
        addWhole(used, type, needed);
      }
    }
  }
  used.forward.erase(&type);
  std::erase_if(used.forward, [&](Type const* one) {
    return one->qualifiedName() == "Vyx::Entity" || used.headers.count(one->header) > 0;
  });
  return used;
}

std::set<std::string> headersOfReflection(EntityType const& type) {
  std::set<std::string> result{type.header};
  for (auto const& attribute : type.attributes) {
    for (auto const* needed : typesOf(attribute)) {
      if (!needed->header.empty()) result.insert(needed->header);
    }
  }
  return result;
}

std::vector<Parameter> givenParameters(Attribute const& children) {
  auto result = asEntity(children.type)->parameters;
  if (!children.namedBy.empty()) result.erase(result.begin());
  return result;
}

std::vector<std::string> parameterGetters(std::vector<Parameter> const& parameters, std::string const& of) {
  std::vector<std::string> result;
  for (auto const& parameter : parameters) result.push_back(of + "." + parameter.name + "()");
  return result;
}

} // namespace vyxc
