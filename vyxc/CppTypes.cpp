#include "CppTypes.h"

#include "CodeWriter.h"

namespace vyxc {

namespace {

std::string builtinName(Type const& type) {
  if (type.name == "U8") return "unsigned char";
  if (type.name == "U16") return "unsigned short";
  if (type.name == "U32") return "unsigned int";
  if (type.name == "U64") return "unsigned long long";
  if (type.name == "String") return "Vyx::String8";
  return type.qualifiedName();
}

bool isText(Type const& type) { return type.kind == TypeKind::kBuiltin && type.space == "Vyx"; }
bool isWide(Type const& type) {
  return type.kind == TypeKind::kBuiltin && (type.name == "U64" || type.name == "double");
}

// A value class around one small number.
bool isSmallValue(ValueType const& type) {
  if (type.parameters.size() != 1) return false;
  auto const& only = *type.parameters[0].type;
  return only.name == "U8" || only.name == "U16" || only.name == "U32";
}

bool passedByValue(Type const& type) {
  switch (type.kind) {
  case TypeKind::kBuiltin:
    return !isWide(type);
  case TypeKind::kEnum:
    return true;
  case TypeKind::kEntity:
    return false;
  case TypeKind::kValue:
    break;
  }
  return type.isExtern ? !type.byReference : isSmallValue(*asValue(&type));
}

} // namespace

std::string CppTypes::withoutOwnSpace(std::string const& qualified) const {
  auto const at = qualified.rfind("::");
  return at != std::string::npos && qualified.substr(0, at) == space_ ? qualified.substr(at + 2) : qualified;
}

std::string CppTypes::name(Type const& type) const {
  return type.kind == TypeKind::kBuiltin ? builtinName(type) : withoutOwnSpace(type.qualifiedName());
}

std::string CppTypes::pointer(Type const& type, bool isConst) const {
  return "Vyx::Ptr<" + name(type) + (isConst ? " const>" : ">");
}

std::string CppTypes::held(Type const& type, bool isConst) const {
  return type.kind == TypeKind::kEntity ? pointer(type, isConst) : name(type);
}

std::string CppTypes::argument(Type const& type) const {
  return passedByValue(type) ? name(type) : held(type) + " const&";
}

std::string CppTypes::result(Type const& type) const {
  bool const byValue = isWide(type) || (passedByValue(type) && !isText(type));
  return byValue ? name(type) : held(type) + " const&";
}

std::string CppTypes::declared(std::vector<Parameter> const& parameters) const {
  std::vector<std::string> parts;
  for (auto const& parameter : parameters) {
    auto const isEntity = parameter.type->kind == TypeKind::kEntity;
    parts.push_back(
        (isEntity ? pointer(*parameter.type, parameter.isConst) + " const&" : argument(*parameter.type)) +
        " " + parameter.name);
  }
  return joined(parts);
}

std::string CppTypes::tuple(std::vector<Parameter> const& parameters) const {
  std::vector<std::string> parts;
  for (auto const& parameter : parameters) parts.push_back(held(*parameter.type, parameter.isConst));
  return "std::tuple<" + joined(parts) + ">";
}

std::string CppTypes::expression(Expr const& expr) const {
  switch (expr.kind) {
  case ast::ExprKind::kString:
    return quoted(expr.text);
  case ast::ExprKind::kName:
    return withoutOwnSpace(expr.text);
  case ast::ExprKind::kNumber:
    return expr.number > UINT32_MAX ? expr.text + "ull" : expr.text;
  case ast::ExprKind::kBool:
    break;
  }
  return expr.text;
}

std::string CppTypes::expressions(std::vector<Expr> const& exprs) const {
  std::vector<std::string> parts;
  for (auto const& expr : exprs) parts.push_back(expression(expr));
  return joined(parts);
}

bool CppTypes::needsInitializer(Type const& type) {
  return (type.kind == TypeKind::kBuiltin && !isText(type)) || type.kind == TypeKind::kEnum;
}

std::string schemaName(Type const& type) { return type.qualifiedName(); }

std::vector<std::string> names(std::vector<Parameter> const& parameters) {
  std::vector<std::string> result;
  for (auto const& parameter : parameters) result.push_back(parameter.name);
  return result;
}

std::string quoted(std::string const& text) { return "\"" + text + "\""; }

} // namespace vyxc
