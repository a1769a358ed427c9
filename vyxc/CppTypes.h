// How a type of the model is written in C++ code of a namespace.

#pragma once

#include "Model.h"

#include <string>
#include <vector>

namespace vyxc {

class CppTypes {
public:
  explicit CppTypes(std::string space) : space_(std::move(space)) {}

  // A type of the own namespace goes without it.
  std::string name(Type const& type) const;
  std::string pointer(Type const& type, bool isConst = false) const;
  // As a parameter: by value or `const&`.
  std::string argument(Type const& type) const;
  // What a getter returns.
  std::string result(Type const& type) const;
  // A value, or a counted pointer to an entity.
  std::string held(Type const& type, bool isConst = false) const;

  // `Vyx::Name className, Kest::UniqueId const& id`
  std::string declared(std::vector<Parameter> const& parameters) const;
  // `<Vyx::Name, Kest::UniqueId>`, as the arguments of a tuple.
  std::string tuple(std::vector<Parameter> const& parameters) const;
  std::string expression(Expr const& expr) const;
  std::string expressions(std::vector<Expr> const& exprs) const;

  // Builtin numbers, bool and enumerations have no zero value of their own.
  static bool needsInitializer(Type const& type);

private:
  std::string withoutOwnSpace(std::string const& qualified) const;

  std::string space_;
};

// As messages and records have it.
std::string schemaName(Type const& type);
std::vector<std::string> names(std::vector<Parameter> const& parameters);
std::string quoted(std::string const& text);

} // namespace vyxc
