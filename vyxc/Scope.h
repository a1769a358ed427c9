// Every type and enumerator of a run by its qualified name, and who may use it.

#pragma once

#include "Diagnostics.h"
#include "Loader.h"
#include "Model.h"

#include <map>
#include <string>
#include <vector>

namespace vyxc {

class Scope {
public:
  Scope(std::vector<LoadedFile> const& files, Diagnostics& diagnostics);

  // A second declaration of a name is reported; an `extern` may be repeated word by word.
  // RETURNS whether the type is the first of its name.
  bool declare(Type* type, std::size_t file);
  bool declareEnumerator(EnumType const* type, Enumerator const& enumerator, Span at, std::size_t file);

  // `name` as written in `file`: looked up in the file's namespace, then in the ones around that.
  // RETURNS null if there is no such type; that is reported.
  Type* type(ast::Name const& name, std::size_t file);
  // RETURNS null if there is no such enumerator, silently. Sets `qualified` otherwise.
  EnumType const* enumerator(std::string const& name, std::size_t file, std::string& qualified) const;

  EntityType* rootEntity() const { return root_; }
  // To be handed on to the Model.
  std::vector<std::unique_ptr<Type>>& builtins() { return builtins_; }

private:
  struct TypeEntry {
    Type* type;
    std::vector<std::size_t> files;
  };
  struct EnumeratorEntry {
    EnumType const* type;
    std::size_t file;
    Span at;
  };

  void addBuiltin(TypeKind kind, char const* space, char const* name, bool byReference = false);
  bool sees(std::size_t file, TypeEntry const& entry) const;
  // The names that `name` may stand for in `file`, the nearest first.
  std::vector<std::string> candidates(std::string const& name, std::size_t file) const;

  std::vector<LoadedFile> const& files_;
  Diagnostics& diagnostics_;
  std::map<std::string, TypeEntry> types_;
  std::map<std::string, EnumeratorEntry> enumerators_;
  std::vector<std::unique_ptr<Type>> builtins_;
  EntityType* root_ = nullptr;
};

} // namespace vyxc
