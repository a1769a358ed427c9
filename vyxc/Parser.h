// Reads one schema file. After a mistake it goes on at the next member or item.
//
//   schema := 'namespace' QName (import | extern | unit | enum | value | entity)*
//
// The full grammar is in docs/schema-language.md; each function here reads the form that it is named after.

#pragma once

#include "Ast.h"
#include "Diagnostics.h"
#include "Lexer.h"

#include <optional>
#include <string_view>

namespace vyxc {

class Parser {
public:
  Parser(SourceFile const& file, Diagnostics& diagnostics);

  ast::File parse();

private:
  // Thrown on a mistake, once it is reported; caught where reading can go on.
  struct Failure {};

  void item(ast::File& file);
  void import(ast::File& file);
  void externType(ast::File& file);
  void unit(ast::File& file);
  void enumType(ast::File& file, std::string doc);
  void valueType(ast::File& file, std::string doc);
  void entityType(ast::File& file, std::string doc);
  void enumerators(ast::TypeDecl& type);
  void members(ast::TypeDecl& type);

  void member(ast::TypeDecl& type);
  void memberForm(ast::Member& member, bool inEntity);
  void destructorForm();
  void keyForm(ast::Member& member);
  void functionForm(ast::Member& member);
  void scalarForm(ast::Member& member);
  void referenceForm(ast::Member& member);
  void childForm(ast::Member& member);
  void collectionForm(ast::Member& member);
  void keyedEntitiesForm(ast::Member& member);
  void constantForm(ast::Member& member);
  void operatorsForm(ast::Member& member);
  void suffixes(ast::Member& member);

  std::vector<ast::Parameter> parameters(bool constAllowed);
  std::vector<ast::Expr> arguments();
  ast::Expr expression();
  ast::TypeRef typeRef(bool constAllowed);
  ast::Name name(std::string_view what);
  ast::Name qualifiedName(std::string_view what);
  ast::Name string(std::string_view what);
  ast::Number number(std::string_view what);

  bool at(std::string_view text) const { return current_.is(text); }
  bool accept(std::string_view text);
  void expect(std::string_view text);
  void advance();
  [[noreturn]] void fail(std::string_view expected);
  bool atItem() const;
  bool atMember(ast::TypeKind kind) const;
  bool atEndOfBody() const;
  void skipToItem();

  Lexer lexer_;
  Diagnostics& diagnostics_;
  Token current_;
  Token following_;
};

} // namespace vyxc
