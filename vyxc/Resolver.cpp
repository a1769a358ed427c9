#include "Resolver.h"

#include "NameRules.h"

#include <array>
#include <optional>
#include <set>
#include <string_view>

namespace vyxc {

namespace {

struct IntegerLimit {
  std::string_view name;
  std::uint64_t max;
};

constexpr std::array<IntegerLimit, 4> kIntegers = {
    {{"U8", UINT8_MAX}, {"U16", UINT16_MAX}, {"U32", UINT32_MAX}, {"U64", UINT64_MAX}}};

std::optional<std::uint64_t> integerLimit(Type const& type) {
  for (auto const& integer : kIntegers) {
    if (type.kind == TypeKind::kBuiltin && type.name == integer.name) return integer.max;
  }
  return std::nullopt;
}

bool isText(Type const& type) { return type.kind == TypeKind::kBuiltin && type.space == "Vyx"; }

// RETURNS whether a literal of this kind can stand for a `wanted`; that of a hand-written value is trusted.
bool literalFits(ast::ExprKind kind, Type const& wanted) {
  if (wanted.isExtern && wanted.kind == TypeKind::kValue) return true;
  if (wanted.kind != TypeKind::kBuiltin) return false;
  switch (kind) {
  case ast::ExprKind::kBool:
    return wanted.name == "bool";
  case ast::ExprKind::kString:
    return isText(wanted);
  case ast::ExprKind::kNumber:
    return integerLimit(wanted) || wanted.name == "double";
  case ast::ExprKind::kName:
    break;
  }
  return false;
}

} // namespace

std::string counted(std::size_t arguments) {
  return std::to_string(arguments) + (arguments == 1 ? " argument" : " arguments");
}

Type const* Resolver::type(ast::Name const& name, Use use) {
  auto const* type = scope_.type(name, file_);
  if (!type) return nullptr;
  bool const isEntity = type->kind == TypeKind::kEntity;
  bool const isVoid = type->qualifiedName() == "void";
  if (use == Use::kValue && (isEntity || isVoid)) {
    diagnostics_.error(name.span, "`" + name.text + "` cannot be held by value here");
    return nullptr;
  }
  if (use == Use::kEntity && !isEntity) {
    diagnostics_.error(name.span, "`" + name.text + "` is no entity");
    return nullptr;
  }
  if (use == Use::kParameter && isVoid) {
    diagnostics_.error(name.span, "a parameter cannot be `void`");
    return nullptr;
  }
  return type;
}

std::vector<Parameter> Resolver::parameters(std::vector<ast::Parameter> const& parameters, Use use) {
  std::vector<Parameter> result;
  std::set<std::string> seen;
  for (auto const& parameter : parameters) {
    usableName(parameter.name);
    if (!seen.insert(parameter.name.text).second) {
      diagnostics_.error(parameter.name.span, "duplicate parameter `" + parameter.name.text + "`");
    }
    result.push_back({parameter.name.text, type(parameter.type.name, use), parameter.type.isConst});
  }
  return result;
}

bool Resolver::usableName(ast::Name const& name) {
  auto const why = refusedName(name.text);
  if (!why.empty()) diagnostics_.error(name.span, "reserved name: `" + name.text + "` " + why);
  return why.empty();
}

Expr Resolver::expression(ast::Expr const& expr, Type const* wanted,
                          std::vector<Parameter> const& parameters) {
  if (expr.kind == ast::ExprKind::kName) return named(expr, wanted, parameters);
  Expr result{expr.kind, expr.text, expr.number};
  if (!wanted) return result;
  if (!literalFits(expr.kind, *wanted)) {
    diagnostics_.error(expr.span, "this is no `" + wanted->qualifiedName() + "`");
  } else if (expr.kind == ast::ExprKind::kNumber &&
             expr.number > integerLimit(*wanted).value_or(UINT64_MAX)) {
    diagnostics_.error(expr.span, "number does not fit in a `" + wanted->qualifiedName() + "`");
  }
  return result;
}

Expr Resolver::named(ast::Expr const& expr, Type const* wanted, std::vector<Parameter> const& parameters) {
  Expr result{expr.kind, expr.text};
  Type const* type = nullptr;
  for (auto const& parameter : parameters) {
    if (parameter.name != expr.text) continue;
    if (!parameter.type) return result; // Reported where it is declared.
    type = parameter.type;
  }
  if (!type) type = scope_.enumerator(expr.text, file_, result.text);
  if (!type) {
    // The enumerators of a hand-written type are known to the C++ compiler alone.
    if (wanted && wanted->isExtern && wanted->kind != TypeKind::kEntity) return result;
    diagnostics_.error(expr.span, "`" + expr.text + "` is neither a parameter nor an enumerator");
  } else if (wanted && wanted != type) {
    diagnostics_.error(expr.span, "`" + expr.text + "` is a `" + type->qualifiedName() + "`, not a `" +
                                      wanted->qualifiedName() + "`");
  }
  return result;
}

std::vector<Expr> Resolver::arguments(std::vector<ast::Expr> const& arguments,
                                      std::vector<Parameter> const& wanted,
                                      std::vector<Parameter> const& parameters, Span at,
                                      std::string const& whose) {
  std::vector<Expr> result;
  if (arguments.size() != wanted.size()) {
    diagnostics_.error(at, "the constructor of `" + whose + "` takes " + counted(wanted.size()) + ", not " +
                               std::to_string(arguments.size()));
    return result;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    result.push_back(expression(arguments[i], wanted[i].type, parameters));
  }
  return result;
}

} // namespace vyxc
