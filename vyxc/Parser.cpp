#include "Parser.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vyxc {

using ast::MemberKind;

namespace {

struct MemberWord {
  std::string_view word;
  MemberKind kind;
  bool inEntity;
  bool inValue;
};

constexpr std::array<MemberWord, 18> kMemberWords = {{
    {"constructor", MemberKind::kConstructor, true, true},
    {"base", MemberKind::kBase, true, false},
    {"destructor", MemberKind::kDestructor, true, false},
    {"nofactory", MemberKind::kNoFactory, true, false},
    {"key", MemberKind::kKey, true, false},
    {"function", MemberKind::kFunction, true, false},
    {"const", MemberKind::kConst, true, true},
    {"mutable", MemberKind::kMutable, true, false},
    {"collection", MemberKind::kCollection, true, true},
    {"reference", MemberKind::kReference, true, false},
    {"references", MemberKind::kReferences, true, false},
    {"child", MemberKind::kChild, true, false},
    {"children", MemberKind::kChildren, true, false},
    {"queue", MemberKind::kQueue, true, false},
    {"member", MemberKind::kMember, false, true},
    {"computed", MemberKind::kComputed, false, true},
    {"constant", MemberKind::kConstant, false, true},
    {"operators", MemberKind::kOperators, false, true},
}};

// RETURNS null if no member of such a type starts with `token`.
MemberWord const* memberWord(Token const& token, ast::TypeKind kind) {
  if (token.kind != TokenKind::kName) return nullptr;
  for (auto const& entry : kMemberWords) {
    if (entry.word == token.text && (kind == ast::TypeKind::kEntity ? entry.inEntity : entry.inValue))
      return &entry;
  }
  return nullptr;
}

// RETURNS the text of comment lines without their slashes and the one blank behind these.
std::string docText(Span span) {
  std::string result;
  if (!span.file) return result;
  auto text = span.file->text().substr(span.begin, span.end - span.begin);
  while (!text.empty()) {
    auto line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    line.remove_prefix(line.find("//") + 2);
    if (line.starts_with(' ')) line.remove_prefix(1);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    result.append(line).append("\n");
  }
  return result;
}

std::string shown(Token const& token) {
  switch (token.kind) {
  case TokenKind::kEnd:
    return "the end of the file";
  case TokenKind::kString:
    return "a string";
  default:
    break;
  }
  constexpr std::size_t kLongest = 40;
  return token.text.size() > kLongest ? "a very long word" : "`" + std::string(token.text) + "`";
}

Span joined(Span first, Span last) { return {first.file, first.begin, last.end}; }

} // namespace

Parser::Parser(SourceFile const& file, Diagnostics& diagnostics)
    : lexer_(file, diagnostics), diagnostics_(diagnostics) {
  current_ = lexer_.next();
  following_ = lexer_.next();
}

ast::File Parser::parse() {
  ast::File file;
  try {
    expect("namespace");
    file.space = qualifiedName("a namespace");
  } catch (Failure const&) {
    skipToItem();
  }
  while (current_.kind != TokenKind::kEnd && !diagnostics_.full()) {
    try {
      item(file);
    } catch (Failure const&) {
      skipToItem();
    }
  }
  return file;
}

void Parser::item(ast::File& file) {
  auto doc = docText(current_.doc);
  if (accept("import")) return import(file);
  if (accept("extern")) return externType(file);
  if (accept("unit")) return unit(file);
  if (accept("enum")) return enumType(file, std::move(doc));
  if (accept("value")) return valueType(file, std::move(doc));
  if (accept("entity")) return entityType(file, std::move(doc));
  if (at("namespace")) {
    diagnostics_.error(current_.span, "a second `namespace`; a file has one");
    advance();
    qualifiedName("a namespace");
    return;
  }
  fail("`import`, `extern`, `unit`, `enum`, `value` or `entity`");
}

void Parser::import(ast::File& file) { file.imports.push_back({string("the imported file's path")}); }

void Parser::externType(ast::File& file) {
  ast::ExternDecl decl{};
  if (accept("value")) {
    decl.kind = ast::TypeKind::kValue;
  } else if (accept("enum")) {
    decl.kind = ast::TypeKind::kEnum;
  } else if (accept("entity")) {
    decl.kind = ast::TypeKind::kEntity;
  } else {
    fail("`value`, `enum` or `entity`");
  }
  decl.name = qualifiedName("the type's qualified name");
  if (accept(":")) decl.base = qualifiedName("the base");
  expect("in");
  decl.header = string("the type's header");
  if (accept("by")) {
    if (accept("reference")) {
      decl.byReference = true;
    } else if (!accept("value")) {
      fail("`value` or `reference`");
    }
  }
  file.externs.push_back(std::move(decl));
}

void Parser::unit(ast::File& file) {
  ast::Unit unit;
  unit.name = name("the unit's name");
  expect("header");
  unit.header = string("the unit's header");
  expect("{");
  while (!at("}")) unit.types.push_back(name("a type's name or `}`"));
  advance();
  file.units.push_back(std::move(unit));
}

// A type is entered before its body is read: a mistake in there must not make its users err.
void Parser::enumType(ast::File& file, std::string doc) {
  file.types.push_back({ast::TypeKind::kEnum, name("the enum's name"), std::move(doc), {}, {}, {}, {}});
  expect("{");
  enumerators(file.types.back());
}

void Parser::valueType(ast::File& file, std::string doc) {
  file.types.push_back({ast::TypeKind::kValue, name("the value's name"), std::move(doc), {}, {}, {}, {}});
  expect("in");
  file.types.back().header = string("the header of the class");
  expect("{");
  members(file.types.back());
}

void Parser::entityType(ast::File& file, std::string doc) {
  file.types.push_back({ast::TypeKind::kEntity, name("the entity's name"), std::move(doc), {}, {}, {}, {}});
  expect(":");
  file.types.back().base = qualifiedName("the base");
  expect("{");
  members(file.types.back());
}

void Parser::enumerators(ast::TypeDecl& type) {
  while (!accept("}")) {
    try {
      ast::Enumerator enumerator;
      enumerator.doc = docText(current_.doc);
      enumerator.name = name("an enumerator or `}`");
      expect("=");
      enumerator.value = number("the enumerator's value");
      type.enumerators.push_back(std::move(enumerator));
    } catch (Failure const&) {
      while (!atEndOfBody() && !(current_.kind == TokenKind::kName && following_.is("="))) advance();
      if (!at("}") && atEndOfBody()) return;
    }
  }
}

void Parser::members(ast::TypeDecl& type) {
  while (!accept("}")) {
    try {
      member(type);
    } catch (Failure const&) {
      while (!atEndOfBody() && !atMember(type.kind)) advance();
      // An item where a member should be: the brace is missing, and that has just been said.
      if (!at("}") && atEndOfBody()) return;
    }
  }
}

void Parser::member(ast::TypeDecl& type) {
  auto const* word = memberWord(current_, type.kind);
  if (!word)
    fail(type.kind == ast::TypeKind::kEntity ? "a member of the entity or `}`"
                                             : "a member of the value or `}`");
  ast::Member member{};
  member.kind = word->kind;
  member.keyword = current_.span;
  member.doc = docText(current_.doc);
  advance();
  memberForm(member, type.kind == ast::TypeKind::kEntity);
  type.members.push_back(std::move(member));
}

void Parser::memberForm(ast::Member& member, bool inEntity) {
  switch (member.kind) {
  case MemberKind::kConstructor:
    member.parameters = parameters(false);
    return;
  case MemberKind::kBase:
    member.arguments = arguments();
    return;
  case MemberKind::kDestructor:
    return destructorForm();
  case MemberKind::kNoFactory:
    return;
  case MemberKind::kKey:
    return keyForm(member);
  case MemberKind::kOperators:
    return operatorsForm(member);
  case MemberKind::kFunction:
    functionForm(member);
    break;
  case MemberKind::kConstant:
    constantForm(member);
    break;
  case MemberKind::kCollection:
    collectionForm(member);
    break;
  case MemberKind::kReferences:
  case MemberKind::kChildren:
    keyedEntitiesForm(member);
    break;
  case MemberKind::kReference:
    referenceForm(member);
    break;
  case MemberKind::kChild:
    childForm(member);
    break;
  case MemberKind::kConst:
  case MemberKind::kMutable:
  case MemberKind::kQueue:
  case MemberKind::kMember:
  case MemberKind::kComputed:
    scalarForm(member);
    break;
  }
  if (inEntity) suffixes(member);
}

void Parser::destructorForm() { expect("announces"); }

void Parser::keyForm(ast::Member& member) {
  scalarForm(member);
  for (;;) {
    if (accept("unlisted")) {
      member.isUnlisted = true;
    } else if (accept("first")) {
      member.isFirst = true;
    } else {
      return;
    }
  }
}

void Parser::functionForm(ast::Member& member) {
  member.name = name("the function's name");
  member.parameters = parameters(true);
  member.isConst = accept("const");
  expect("->");
  member.type = typeRef(false);
}

void Parser::scalarForm(ast::Member& member) {
  member.name = name("the attribute's name");
  expect(":");
  member.type = typeRef(false);
  if (member.kind == MemberKind::kMutable && accept("=")) member.initial = expression();
}

void Parser::referenceForm(ast::Member& member) {
  member.name = name("the attribute's name");
  expect(":");
  member.type = typeRef(true);
  if (accept("in")) member.within = name("a children collection");
}

void Parser::childForm(ast::Member& member) {
  scalarForm(member);
  if (!accept("=")) return;
  member.hasArguments = true;
  member.arguments = arguments();
}

void Parser::collectionForm(ast::Member& member) {
  member.name = name("the attribute's name");
  expect("[");
  member.keyType = typeRef(false);
  expect("]");
  expect(":");
  member.type = typeRef(false);
  member.isTree = accept("tree");
}

void Parser::keyedEntitiesForm(ast::Member& member) {
  member.name = name("the attribute's name");
  expect("[");
  member.keyName = name("the key attribute");
  expect("]");
  expect(":");
  member.type = typeRef(false);
  if (member.kind != MemberKind::kChildren) return;
  member.isTree = accept("tree");
  if (!accept("named")) return;
  expect("by");
  member.namedBy = name("a constructor parameter");
}

void Parser::constantForm(ast::Member& member) {
  scalarForm(member);
  expect("=");
  auto const value = number("the constant's value");
  member.initial = ast::Expr{ast::ExprKind::kNumber, value.span, std::to_string(value.value), value.value};
}

void Parser::operatorsForm(ast::Member& member) {
  member.allOperators = accept("all");
  if (!member.allOperators && !accept("not")) fail("`not` or `all`");
}

void Parser::suffixes(ast::Member& member) {
  for (;;) {
    if (accept("@")) {
      if (member.id) diagnostics_.error(current_.span, "a second id for `" + member.name.text + "`");
      member.id = number("an id");
    } else if (accept("virtual")) {
      member.isVirtual = true;
    } else {
      return;
    }
  }
}

std::vector<ast::Parameter> Parser::parameters(bool constAllowed) {
  std::vector<ast::Parameter> result;
  expect("(");
  if (accept(")")) return result;
  do {
    ast::Parameter parameter;
    parameter.name = name("a parameter's name");
    expect(":");
    parameter.type = typeRef(constAllowed);
    result.push_back(std::move(parameter));
  } while (accept(","));
  expect(")");
  return result;
}

std::vector<ast::Expr> Parser::arguments() {
  std::vector<ast::Expr> result;
  expect("(");
  if (accept(")")) return result;
  do result.push_back(expression());
  while (accept(","));
  expect(")");
  return result;
}

ast::Expr Parser::expression() {
  auto const token = current_;
  switch (token.kind) {
  case TokenKind::kNumber:
    advance();
    return {ast::ExprKind::kNumber, token.span, std::string(token.text), token.number};
  case TokenKind::kString:
    advance();
    return {ast::ExprKind::kString, token.span, std::string(token.text)};
  case TokenKind::kName: {
    if (token.is("true") || token.is("false")) {
      advance();
      return {ast::ExprKind::kBool, token.span, std::string(token.text)};
    }
    auto const named = qualifiedName("a name");
    return {ast::ExprKind::kName, named.span, named.text};
  }
  default:
    fail("a name, a number, a string, `true` or `false`");
  }
}

ast::TypeRef Parser::typeRef(bool constAllowed) {
  ast::TypeRef result;
  if (constAllowed) result.isConst = accept("const");
  result.name = qualifiedName("a type");
  return result;
}

ast::Name Parser::name(std::string_view what) {
  if (current_.kind != TokenKind::kName) fail(what);
  ast::Name result{std::string(current_.text), current_.span};
  advance();
  return result;
}

ast::Name Parser::qualifiedName(std::string_view what) {
  auto result = name(what);
  while (accept("::")) {
    auto const part = name("a name behind `::`");
    result.text.append("::").append(part.text);
    result.span = joined(result.span, part.span);
  }
  return result;
}

ast::Name Parser::string(std::string_view what) {
  if (current_.kind != TokenKind::kString) fail(std::string(what) + " in quotes");
  ast::Name result{std::string(current_.text), current_.span};
  advance();
  return result;
}

ast::Number Parser::number(std::string_view what) {
  if (current_.kind != TokenKind::kNumber) fail(std::string(what) + ", a number");
  ast::Number const result{current_.number, current_.span};
  advance();
  return result;
}

bool Parser::accept(std::string_view text) {
  if (!at(text)) return false;
  advance();
  return true;
}

void Parser::expect(std::string_view text) {
  if (!accept(text)) fail("`" + std::string(text) + "`");
}

void Parser::advance() {
  current_ = following_;
  if (current_.kind != TokenKind::kEnd) following_ = lexer_.next();
}

void Parser::fail(std::string_view expected) {
  diagnostics_.error(current_.span, "expected " + std::string(expected) + ", not " + shown(current_));
  throw Failure{};
}

// A keyword alone is not enough: an attribute may be called `value` or `import`.
bool Parser::atItem() const {
  if (at("import")) return following_.kind == TokenKind::kString;
  static constexpr std::array<std::string_view, 5> kItems = {"extern", "unit", "enum", "value", "entity"};
  for (auto const item : kItems) {
    if (at(item)) return following_.kind == TokenKind::kName;
  }
  return false;
}

bool Parser::atMember(ast::TypeKind kind) const {
  auto const* word = memberWord(current_, kind);
  if (word && word->kind == MemberKind::kNoFactory) return true;
  return word && (following_.kind == TokenKind::kName || following_.is("("));
}

void Parser::skipToItem() {
  while (current_.kind != TokenKind::kEnd && !atItem()) advance();
}

bool Parser::atEndOfBody() const { return at("}") || atItem() || current_.kind == TokenKind::kEnd; }

} // namespace vyxc
