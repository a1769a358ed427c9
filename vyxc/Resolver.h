// Resolves what stands in one type's declaration: types in the place where they are used, and expressions.

#pragma once

#include "Ast.h"
#include "Diagnostics.h"
#include "Model.h"
#include "Scope.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vyxc {

// Where a type is used.
enum class Use {
  kValue,     // Held by value: no entity, not void.
  kEntity,    // Held by pointer: an entity.
  kParameter, // Of a function: anything but void.
  kResult,    // Anything.
};

// RETURNS "1 argument", "2 arguments".
std::string counted(std::size_t arguments);

class Resolver {
public:
  Resolver(Scope& scope, Diagnostics& diagnostics, std::size_t file)
      : scope_(scope), diagnostics_(diagnostics), file_(file) {}

  // RETURNS null after a mistake; each of these reports it.
  Type const* type(ast::Name const& name, Use use);
  std::vector<Parameter> parameters(std::vector<ast::Parameter> const& parameters, Use use);
  bool usableName(ast::Name const& name);

  // An argument or literal where a `wanted` is needed; null stands for a type that is not known.
  // `parameters` are the names that may be used.
  Expr expression(ast::Expr const& expr, Type const* wanted, std::vector<Parameter> const& parameters);
  // The same for a whole list; a wrong number is reported at `at`.
  std::vector<Expr> arguments(std::vector<ast::Expr> const& arguments, std::vector<Parameter> const& wanted,
                              std::vector<Parameter> const& parameters, Span at, std::string const& whose);

  Diagnostics& diagnostics() { return diagnostics_; }

private:
  Expr named(ast::Expr const& expr, Type const* wanted, std::vector<Parameter> const& parameters);

  Scope& scope_;
  Diagnostics& diagnostics_;
  std::size_t file_;
};

} // namespace vyxc
