// Builds the model of a unit from its files, and finds whatever is wrong with them.

#pragma once

#include "Diagnostics.h"
#include "Loader.h"
#include "Model.h"
#include "Scope.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vyxc {

class Checker {
public:
  Checker(std::vector<LoadedFile> const& files, Diagnostics& diagnostics);

  // Worth reading only if no error was found.
  Model check();

private:
  struct Declared {
    Type* type;
    ast::TypeDecl const* decl;
    std::size_t file;
  };
  struct DeclaredBase {
    EntityType* type;
    ast::Name const* base;
    std::size_t file;
  };

  void declareExterns(std::size_t file);
  void declareTypes(std::size_t file);
  void declare(std::unique_ptr<Type> type, ast::TypeDecl const& decl, std::size_t file);
  void fillEnum(EnumType& type, ast::TypeDecl const& decl, std::size_t file);
  void resolveBases();
  bool resolveLevels();
  void checkMembers();
  void checkCyclicChildren();
  void checkUnit();
  std::vector<std::string> importedHeaders() const;
  void listUnit(ast::Unit const& unit, std::size_t file);

  std::vector<LoadedFile> const& files_;
  Diagnostics& diagnostics_;
  Scope scope_;
  Model model_;
  std::vector<Declared> declared_;
  std::vector<DeclaredBase> bases_;
};

} // namespace vyxc
