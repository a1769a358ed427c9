#include "Emit.h"

#include "Namer.h"

namespace vyxc {

void emitHead(CodeWriter& out, std::string const& schema) {
  out.line("// Made by vyxc from " + schema + "; do not edit.");
  out.blank();
}

void emitIncludes(CodeWriter& out, std::string const& main, std::set<std::string> headers) {
  headers.erase(main);
  if (!main.empty()) out.line("#include \"" + main + "\"");
  for (auto const& header : headers) out.line("#include \"" + header + "\"");
  out.blank();
}

void emitUnitDeclaration(CodeWriter& out, Model const& model) {
  out.line("frame::RegistrationUnit& " + Namer::unit(model.unit.name) + "();");
  out.blank();
}

void emitNames(CodeWriter& out, std::string const& array, std::vector<std::string> const& names) {
  std::vector<std::string> strings;
  for (auto const& name : names) strings.push_back(quoted(name));
  out.line("static constexpr std::array<char const*, " + std::to_string(names.size()) + "> " + array + "{" +
           joined(strings) + "};");
}

std::vector<std::string> schemaTypes(std::vector<Parameter> const& parameters) {
  std::vector<std::string> result;
  for (auto const& parameter : parameters) result.push_back(schemaName(*parameter.type));
  return result;
}

std::vector<OutputFile> emit(Model const& model) {
  std::vector<OutputFile> result;
  auto const& unit = model.unit;
  result.push_back({unit.header, unitHeader(model)});
  result.push_back({Namer::unitSource(unit.space, unit.name), unitSource(model)});
  for (auto const* type : unit.types) {
    auto const source = Namer::source(type->space, type->name);
    if (auto const* enumeration = asEnum(type)) {
      result.push_back({type->header, enumHeader(model, *enumeration)});
      result.push_back({source, enumSource(model, *enumeration)});
    } else if (auto const* value = asValue(type)) {
      result.push_back({source, valueSource(model, *value)});
    } else if (auto const* entity = asEntity(type)) {
      result.push_back({type->header, entityHeader(model, *entity)});
      result.push_back({source, entitySource(model, *entity)});
      result.push_back({Namer::adapterHeader(type->space, type->name), adapterHeader(model, *entity)});
      result.push_back(
          {Namer::source(type->space, Namer::adapter(type->name)), adapterSource(model, *entity)});
    }
  }
  return result;
}

} // namespace vyxc
