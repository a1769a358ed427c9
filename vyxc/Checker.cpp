#include "Checker.h"

#include "MemberChecker.h"
#include "NameRules.h"
#include "Namer.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

namespace vyxc {

namespace {

constexpr std::uint32_t kMaxLevel = 250;

std::unique_ptr<Type> makeType(ast::TypeKind kind, std::string const& space, std::string const& name) {
  switch (kind) {
  case ast::TypeKind::kEnum:
    return std::make_unique<EnumType>(space, name);
  case ast::TypeKind::kValue:
    return std::make_unique<ValueType>(space, name);
  case ast::TypeKind::kEntity:
    break;
  }
  return std::make_unique<EntityType>(space, name);
}

std::pair<std::string, std::string> splitName(std::string const& qualified) {
  auto const at = qualified.rfind("::");
  if (at == std::string::npos) return {"", qualified};
  return {qualified.substr(0, at), qualified.substr(at + 2)};
}

} // namespace

Checker::Checker(std::vector<LoadedFile> const& files, Diagnostics& diagnostics)
    : files_(files), diagnostics_(diagnostics), scope_(files, diagnostics) {}

Model Checker::check() {
  for (std::size_t i = 0; i < files_.size(); ++i) declareTypes(i);
  for (std::size_t i = 0; i < files_.size(); ++i) declareExterns(i);
  resolveBases();
  if (resolveLevels()) {
    checkMembers();
    checkCyclicChildren();
    checkUnit();
  }
  for (auto& builtin : scope_.builtins()) model_.types.push_back(std::move(builtin));
  return std::move(model_);
}

void Checker::declareExterns(std::size_t file) {
  for (auto const& decl : files_[file].ast.externs) {
    auto const [space, name] = splitName(decl.name.text);
    auto type = makeType(decl.kind, space, name);
    type->isExtern = true;
    type->header = decl.header.text;
    type->byReference = decl.byReference;
    type->span = decl.name.span;
    if (!decl.base.text.empty() && decl.kind != ast::TypeKind::kEntity) {
      diagnostics_.error(decl.base.span, "only an entity has a base");
    }
    auto* entity = decl.kind == ast::TypeKind::kEntity ? static_cast<EntityType*>(type.get()) : nullptr;
    if (scope_.declare(type.get(), file) && entity) {
      bases_.push_back({entity, decl.base.text.empty() ? nullptr : &decl.base, file});
    } else if (entity) {
      entity->base = scope_.rootEntity();
    }
    model_.types.push_back(std::move(type));
  }
}

void Checker::declareTypes(std::size_t file) {
  auto const& ast = files_[file].ast;
  for (auto const& decl : ast.types) {
    auto const why = refusedName(decl.name.text);
    if (!why.empty()) diagnostics_.error(decl.name.span, "reserved name: `" + decl.name.text + "` " + why);
    declare(makeType(decl.kind, ast.space.text, decl.name.text), decl, file);
  }
}

void Checker::declare(std::unique_ptr<Type> type, ast::TypeDecl const& decl, std::size_t file) {
  type->doc = decl.doc;
  type->span = decl.name.span;
  type->inUnit = files_[file].inUnit;
  type->byReference = decl.kind == ast::TypeKind::kValue;
  type->header =
      decl.kind == ast::TypeKind::kValue ? decl.header.text : Namer::header(type->space, type->name);
  model_.schemaOf[type.get()] = std::filesystem::path(files_[file].source->path()).filename().string();
  if (scope_.declare(type.get(), file)) {
    declared_.push_back({type.get(), &decl, file});
    if (decl.kind == ast::TypeKind::kEntity) {
      bases_.push_back({static_cast<EntityType*>(type.get()), &decl.base, file});
    } else if (decl.kind == ast::TypeKind::kEnum) {
      fillEnum(static_cast<EnumType&>(*type), decl, file);
    }
  } else if (decl.kind == ast::TypeKind::kEntity) {
    static_cast<EntityType&>(*type).base = scope_.rootEntity();
  }
  model_.types.push_back(std::move(type));
}

void Checker::fillEnum(EnumType& type, ast::TypeDecl const& decl, std::size_t file) {
  std::map<std::uint64_t, Span> values;
  for (auto const& enumerator : decl.enumerators) {
    auto const why = refusedName(enumerator.name.text);
    if (!why.empty()) {
      diagnostics_.error(enumerator.name.span, "reserved name: `" + enumerator.name.text + "` " + why);
    }
    if (enumerator.value.value > UINT32_MAX) {
      diagnostics_.error(enumerator.value.span, "number does not fit in a `U32`");
    }
    auto const [seen, isNew] = values.try_emplace(enumerator.value.value, enumerator.name.span);
    if (!isNew) {
      diagnostics_.error(enumerator.value.span, "duplicate value " + std::to_string(enumerator.value.value));
      diagnostics_.note(seen->second, "used here before");
    }
    Enumerator made{enumerator.name.text, static_cast<std::uint32_t>(enumerator.value.value), enumerator.doc};
    scope_.declareEnumerator(&type, made, enumerator.name.span, file);
    type.enumerators.push_back(std::move(made));
  }
  if (type.enumerators.empty()) diagnostics_.error(decl.name.span, "enum without an enumerator");
}

// An entity whose base cannot be used is taken as one directly under Vyx::Entity, so that checking can go on.
void Checker::resolveBases() {
  for (auto const& [type, base, file] : bases_) {
    type->base = scope_.rootEntity();
    if (!base || base->text.empty()) continue;
    auto* found = scope_.type(*base, file);
    if (!found) continue;
    if (found->kind == TypeKind::kEntity) {
      type->base = static_cast<EntityType*>(found);
    } else {
      diagnostics_.error(base->span, "base `" + base->text + "` is no entity");
    }
  }
}

// Follows each line of bases upwards to what is known already, then numbers it downwards.
// RETURNS false for a line so long that looking at every pair on it would take for ever.
bool Checker::resolveLevels() {
  std::map<EntityType const*, DeclaredBase const*> entries;
  for (auto const& entry : bases_) entries[entry.type] = &entry;
  auto above = [&entries](EntityType const& type) -> EntityType* {
    auto const found = entries.find(type.base);
    return found == entries.end() ? nullptr : found->second->type;
  };
  for (auto const& entry : bases_) {
    std::vector<EntityType*> line;
    std::set<EntityType const*> inLine;
    for (auto* type = entry.type; type && type->level == 0; type = above(*type)) {
      if (!inLine.insert(type).second) {
        diagnostics_.error(entries[type]->base->span,
                           "cyclic base: `" + type->qualifiedName() + "` derives from itself");
        type->base = scope_.rootEntity();
        break;
      }
      line.push_back(type);
    }
    for (auto type = line.rbegin(); type != line.rend(); ++type) (*type)->level = (*type)->base->level + 1;
    if (entry.type->level <= kMaxLevel) continue;
    diagnostics_.error(entry.type->span, "`" + entry.type->name + "` is more than " +
                                             std::to_string(kMaxLevel) + " levels below Vyx::Entity");
    return false;
  }
  return true;
}

void Checker::checkMembers() {
  std::deque<ValueChecker> values;
  std::deque<EntityChecker> entities;
  auto ordered = declared_;
  auto level = [](Declared const& declared) {
    auto const* entity = asEntity(declared.type);
    return entity ? entity->level : 0;
  };
  std::stable_sort(ordered.begin(), ordered.end(),
                   [&](Declared const& a, Declared const& b) { return level(a) < level(b); });
  for (auto const& [type, decl, file] : ordered) {
    Resolver const resolver(scope_, diagnostics_, file);
    if (type->kind == TypeKind::kValue) values.emplace_back(*decl, static_cast<ValueType&>(*type), resolver);
    if (type->kind == TypeKind::kEntity)
      entities.emplace_back(*decl, static_cast<EntityType&>(*type), resolver);
  }
  for (auto& value : values) value.shape();
  for (auto& value : values) value.attributes();
  for (auto& entity : entities) entity.shape();
  for (auto& entity : entities) entity.attributes();
  for (auto& entity : entities) entity.relations();
}

// A constructor that makes a child whose constructor makes … the first entity again would never end. Each
// step removes the types that make none but removed types; what stays is on a cycle, or makes something on
// one.
void Checker::checkCyclicChildren() {
  std::map<EntityType const*, std::set<EntityType const*>> makes;
  for (auto const& declared : declared_) {
    auto const* entity = asEntity(declared.type);
    if (!entity) continue;
    auto& made = makes[entity];
    made.insert(entity->base);
    for (auto const& attribute : entity->attributes) {
      if (attribute.arguments) made.insert(asEntity(attribute.type));
    }
  }
  std::map<EntityType const*, std::set<EntityType const*>> madeBy;
  std::vector<EntityType const*> done;
  for (auto& [entity, made] : makes) {
    std::erase_if(made, [&](EntityType const* type) { return !type || !makes.count(type); });
    for (auto const* type : made) madeBy[type].insert(entity);
    if (made.empty()) done.push_back(entity);
  }
  while (!done.empty()) {
    auto const* entity = done.back();
    done.pop_back();
    for (auto const* maker : madeBy[entity]) {
      makes[maker].erase(entity);
      if (makes[maker].empty()) done.push_back(maker);
    }
  }
  for (auto const& declared : declared_) {
    auto const* entity = asEntity(declared.type);
    if (!entity || makes[entity].empty()) continue;
    diagnostics_.error(declared.decl->name.span,
                       "the constructor of `" + entity->name + "` makes children without end");
    return;
  }
}

void Checker::checkUnit() {
  ast::Unit const* unit = nullptr;
  std::size_t file = 0;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    if (!files_[i].inUnit) continue;
    for (auto const& candidate : files_[i].ast.units) {
      if (unit) {
        diagnostics_.error(candidate.name.span, "a second unit; there is exactly one");
        diagnostics_.note(unit->name.span, "the first is here");
      } else {
        unit = &candidate;
        file = i;
      }
    }
  }
  if (unit) return listUnit(*unit, file);
  for (auto const& loaded : files_) {
    if (!loaded.inUnit) continue;
    diagnostics_.error({loaded.source.get(), 0, 0}, "no unit; there is exactly one");
    return;
  }
}

std::vector<std::string> Checker::importedHeaders() const {
  std::vector<std::string> result;
  for (auto const& loaded : files_) {
    if (!loaded.inUnit) continue;
    for (auto const imported : loaded.imports) {
      for (auto const& unit : files_[imported].ast.units) {
        bool const isNew = std::find(result.begin(), result.end(), unit.header.text) == result.end();
        if (!files_[imported].inUnit && isNew) result.push_back(unit.header.text);
      }
    }
  }
  return result;
}

void Checker::listUnit(ast::Unit const& unit, std::size_t file) {
  Resolver(scope_, diagnostics_, file).usableName(unit.name);
  model_.unit = {unit.name.text, files_[file].ast.space.text, unit.header.text, {}, importedHeaders()};
  std::map<std::string, Declared const*> missing;
  for (auto const& declared : declared_) {
    if (declared.type->inUnit) missing[declared.type->name] = &declared;
  }
  for (auto const& loaded : files_) {
    auto const& space = loaded.ast.space;
    if (!loaded.inUnit || space.text == model_.unit.space) continue;
    diagnostics_.error(space.span,
                       "the files of a unit have one namespace, here `" + model_.unit.space + "`");
  }
  std::set<std::string> listed;
  for (auto const& name : unit.types) {
    auto const found = missing.find(name.text);
    if (!listed.insert(name.text).second) {
      diagnostics_.error(name.span, "unit lists `" + name.text + "` twice");
    } else if (found == missing.end()) {
      diagnostics_.error(name.span, "unit lists `" + name.text + "`, which is not declared here");
    } else {
      model_.unit.types.push_back(found->second->type);
      missing.erase(found);
    }
  }
  for (auto const& declared : declared_) {
    if (declared.type->inUnit && declared.type->header == unit.header.text) {
      diagnostics_.error(unit.header.span, "this is the header of `" + declared.type->name + "` already");
    }
    auto const found = missing.find(declared.type->name);
    if (found == missing.end() || found->second != &declared) continue;
    diagnostics_.error(declared.decl->name.span,
                       "`" + declared.type->name + "` is missing in the unit's list");
    diagnostics_.note(unit.name.span, "the unit is here");
  }
}

} // namespace vyxc
