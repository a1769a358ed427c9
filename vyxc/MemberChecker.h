// Turns the members of one type into attributes. Used in three rounds over all types, since a member may
// speak of any other type: shape() for every type, then attributes() with every base before what derives
// from it, then relations().

#pragma once

#include "Ast.h"
#include "Model.h"
#include "Resolver.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace vyxc {

class AttributeNumbers {
public:
  // Ids count from `first`; they may be anything up to `last`.
  AttributeNumbers(std::uint32_t first, std::uint32_t last, Diagnostics& diagnostics)
      : first_(first), last_(last), next_(first), diagnostics_(diagnostics) {}

  // The id that the schema sets, or the next by rule.
  std::uint32_t assign(ast::Member const& member);

private:
  std::uint32_t first_;
  std::uint32_t last_;
  std::uint64_t next_;
  std::map<std::uint64_t, Span> used_;
  Diagnostics& diagnostics_;
};

class ValueChecker {
public:
  ValueChecker(ast::TypeDecl const& decl, ValueType& type, Resolver resolver)
      : decl_(decl), type_(type), resolver_(resolver) {}

  void shape();
  void attributes();

private:
  void addAttribute(ast::Member const& member, AttributeNumbers& numbers);

  ast::TypeDecl const& decl_;
  ValueType& type_;
  Resolver resolver_;
};

class EntityChecker {
public:
  EntityChecker(ast::TypeDecl const& decl, EntityType& type, Resolver resolver)
      : decl_(decl), type_(type), resolver_(resolver) {}

  void shape();
  void attributes();
  void relations();

private:
  void addKey(ast::Member const& member);
  void addAttribute(ast::Member const& member, AttributeNumbers& numbers);
  void resolveTypes(ast::Member const& member, Attribute& attribute);
  bool nameIsFree(ast::Member const& member, std::map<std::string, Span> const& own);
  // RETURNS whether the function is one of a base; it takes over its id then.
  bool redefines(ast::Member const& member, Attribute& attribute);
  void checkConst(ast::Member const& member, Attribute const& attribute);

  void checkKey();
  void checkBaseArguments();
  void checkParametersKept();
  void checkGeneratedNames();
  void checkRelation(ast::Member const& member, Attribute& attribute);
  void checkKeyOfReferences(ast::Member const& member, Attribute& attribute);
  void checkKeyOfChildren(ast::Member const& member, Attribute& attribute);
  void checkNamedBy(ast::Member const& member, Attribute& attribute);
  void checkWithin(ast::Member const& member, Attribute& attribute);
  void checkChildArguments(ast::Member const& member, Attribute& attribute);

  ast::Member const* first(ast::MemberKind kind) const;
  Diagnostics& diagnostics() { return resolver_.diagnostics(); }

  ast::TypeDecl const& decl_;
  EntityType& type_;
  Resolver resolver_;
  std::map<ast::Member const*, Attribute*> attributeOf_;
};

} // namespace vyxc
