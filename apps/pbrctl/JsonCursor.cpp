#include "pbrctl/JsonCursor.h"

#include <algorithm>
#include <cctype>

namespace Pbrctl {

void JsonCursor::errorAt(std::size_t offset, std::string const& path, std::string const& text) const {
  diagnostics_->error(source_->placeOf(offset), path.empty() ? text : path + ": " + text);
}

bool JsonCursor::is(JsonValue::Kind kind) const {
  if (value_->kind == kind) return true;
  error(std::string(kindName(kind)) + " belongs here, not " + kindName(value_->kind));
  return false;
}

std::optional<bool> JsonCursor::boolean() const {
  return is(JsonValue::Kind::boolean) ? std::optional(value_->boolean) : std::nullopt;
}

std::optional<std::uint32_t> JsonCursor::number(std::uint64_t most) const {
  if (!is(JsonValue::Kind::number)) return std::nullopt;
  if (value_->number <= most) return static_cast<std::uint32_t>(value_->number);
  error(std::to_string(value_->number) + " is above " + std::to_string(most));
  return std::nullopt;
}

std::optional<std::string> JsonCursor::text() const {
  return is(JsonValue::Kind::text) ? std::optional(value_->text) : std::nullopt;
}

std::optional<std::string> JsonCursor::name() const {
  std::optional<std::string> name = text();
  if (!name) return name;
  if (auto const problem = nameProblem(*name)) {
    error(*problem);
    return std::nullopt;
  }
  return name;
}

std::optional<std::string> JsonCursor::numberOrText() const {
  if (value_->kind == JsonValue::Kind::number) return std::to_string(value_->number);
  if (value_->kind == JsonValue::Kind::text) return value_->text;
  error(std::string("a number or a name belongs here, not ") + kindName(value_->kind));
  return std::nullopt;
}

std::vector<JsonCursor> JsonCursor::items() const {
  std::vector<JsonCursor> items;
  if (!is(JsonValue::Kind::array)) return items;
  items.reserve(value_->items.size());
  for (std::size_t i = 0; i < value_->items.size(); ++i)
    items.emplace_back(value_->items[i], path_ + "[" + std::to_string(i) + "]", *source_, *diagnostics_);
  return items;
}

JsonCursor JsonCursor::below(JsonValue::Member const& member) const {
  bool const isWord = std::all_of(member.name.begin(), member.name.end(),
                                  [](unsigned char c) { return c == '_' || (c < 0x80 && std::isalnum(c)); });
  std::string const step = isWord ? member.name : "[" + inQuotes(member.name) + "]";
  std::string const path = path_.empty() || !isWord ? path_ + step : path_ + "." + step;
  return JsonCursor(member.value, path, *source_, *diagnostics_);
}

JsonObject::JsonObject(JsonCursor const& at) : at_(at) {
  at.is(JsonValue::Kind::object);
  asked_.resize(at.value().members.size());
}

std::optional<JsonCursor> JsonObject::member(char const* name) {
  auto const& members = at_.value().members;
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (members[i].name != name) continue;
    asked_[i] = true;
    std::string path = at_.path().empty() ? name : at_.path() + "." + name;
    return JsonCursor(members[i].value, std::move(path), *at_.source_, *at_.diagnostics_);
  }
  return std::nullopt;
}

std::optional<JsonCursor> JsonObject::required(char const* name) {
  std::optional<JsonCursor> found = member(name);
  if (!found && at_.value().kind == JsonValue::Kind::object)
    at_.error("the member " + inQuotes(name) + " is missing");
  return found;
}

void JsonObject::boolean(char const* name, bool& value) {
  auto const found = member(name);
  if (!found) return;
  if (auto const read = found->boolean()) value = *read;
}

std::vector<JsonCursor> JsonObject::array(char const* name) {
  auto const found = member(name);
  return found ? found->items() : std::vector<JsonCursor>();
}

void JsonObject::refuseOthers() const {
  auto const& members = at_.value().members;
  for (std::size_t i = 0; i < members.size(); ++i)
    if (!asked_[i]) at_.errorAt(members[i].offset, at_.path(), "unknown member " + inQuotes(members[i].name));
}

} // namespace Pbrctl
