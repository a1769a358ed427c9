#include "Scope.h"

#include <algorithm>

namespace vyxc {

namespace {

bool sameExtern(Type const& a, Type const& b) {
  return a.isExtern && b.isExtern && a.kind == b.kind && a.header == b.header &&
         a.byReference == b.byReference;
}

} // namespace

Scope::Scope(std::vector<LoadedFile> const& files, Diagnostics& diagnostics)
    : files_(files), diagnostics_(diagnostics) {
  for (char const* name : {"bool", "U8", "U16", "U32", "U64", "double", "void"}) {
    addBuiltin(TypeKind::kBuiltin, "", name);
  }
  addBuiltin(TypeKind::kBuiltin, "Vyx", "Name");
  addBuiltin(TypeKind::kBuiltin, "Vyx", "String8");
  addBuiltin(TypeKind::kBuiltin, "Vyx", "String");
  auto root = std::make_unique<EntityType>("Vyx", "Entity");
  root->isExtern = true;
  root->header = "Vyx/Entity.h";
  root_ = root.get();
  types_["Vyx::Entity"] = {root_, {}};
  builtins_.push_back(std::move(root));
}

void Scope::addBuiltin(TypeKind kind, char const* space, char const* name, bool byReference) {
  auto type = std::make_unique<Type>(kind, space, name);
  type->byReference = byReference;
  types_[type->qualifiedName()] = {type.get(), {}};
  builtins_.push_back(std::move(type));
}

bool Scope::declare(Type* type, std::size_t file) {
  auto const name = type->qualifiedName();
  auto const [entry, isNew] = types_.try_emplace(name, TypeEntry{type, {file}});
  if (isNew) return true;
  if (sameExtern(*entry->second.type, *type)) {
    entry->second.files.push_back(file);
    return false;
  }
  diagnostics_.error(type->span, "duplicate type `" + name + "`");
  if (entry->second.type->span.file) diagnostics_.note(entry->second.type->span, "declared here before");
  return false;
}

bool Scope::declareEnumerator(EnumType const* type, Enumerator const& enumerator, Span at, std::size_t file) {
  auto const name = type->space + "::" + enumerator.name;
  auto const [entry, isNew] = enumerators_.try_emplace(name, EnumeratorEntry{type, file, at});
  if (isNew) return true;
  diagnostics_.error(at, "duplicate enumerator `" + enumerator.name +
                             "`; the enumerators of a namespace share one scope");
  diagnostics_.note(entry->second.at, "declared here before");
  return false;
}

Type* Scope::type(ast::Name const& name, std::size_t file) {
  TypeEntry const* hidden = nullptr;
  for (auto const& candidate : candidates(name.text, file)) {
    auto const found = types_.find(candidate);
    if (found == types_.end()) continue;
    if (sees(file, found->second)) return found->second.type;
    hidden = &found->second;
  }
  diagnostics_.error(name.span, "unknown type `" + name.text + "`");
  if (hidden) diagnostics_.note(hidden->type->span, "declared here, in a file that is not imported");
  return nullptr;
}

EnumType const* Scope::enumerator(std::string const& name, std::size_t file, std::string& qualified) const {
  for (auto const& candidate : candidates(name, file)) {
    auto const found = enumerators_.find(candidate);
    if (found == enumerators_.end() || !files_[file].sees[found->second.file]) continue;
    qualified = candidate;
    return found->second.type;
  }
  return nullptr;
}

// What no file declares is built in.
bool Scope::sees(std::size_t file, TypeEntry const& entry) const {
  auto const& seen = files_[file].sees;
  return entry.files.empty() ||
         std::any_of(entry.files.begin(), entry.files.end(), [&seen](std::size_t i) { return seen[i]; });
}

std::vector<std::string> Scope::candidates(std::string const& name, std::size_t file) const {
  std::vector<std::string> result;
  for (auto space = files_[file].ast.space.text; !space.empty();) {
    result.push_back(space + "::" + name);
    auto const inner = space.rfind("::");
    space.resize(inner == std::string::npos ? 0 : inner);
  }
  result.push_back(name);
  return result;
}

} // namespace vyxc
