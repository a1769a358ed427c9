// Strict reading of JSON objects: each member is asked for by name and type, and what nobody asked for is an
// error.

#pragma once

#include "pbrctl/Fields.h"
#include "pbrctl/JsonDocument.h"

#include <optional>
#include <vector>

namespace Pbrctl {

// One value, with its path from the root.
class JsonCursor {
public:
  JsonCursor(JsonValue const& value, std::string path, SourceText const& source, Diagnostics& diagnostics)
      : value_(&value), path_(std::move(path)), source_(&source), diagnostics_(&diagnostics) {}

  JsonValue const& value() const { return *value_; }
  std::string const& path() const { return path_; }
  Place place() const { return source_->placeOf(value_->offset); }
  void error(std::string const& text) const { errorAt(value_->offset, path_, text); }

  // Whether the value is of that kind; if not, the error is told.
  bool is(JsonValue::Kind kind) const;
  std::optional<bool> boolean() const;
  std::optional<std::uint32_t> number(std::uint64_t most = UINT32_MAX) const;
  std::optional<std::string> text() const;
  std::optional<std::string> name() const;
  // A text, or also a number if `numberToo`, read as a field.
  template <class Read>
  auto field(Read read, bool numberToo = false) const -> std::optional<decltype(read(std::string_view()))> {
    std::optional<std::string> const word = numberToo ? numberOrText() : text();
    if (!word) return std::nullopt;
    try {
      return read(*word);
    } catch (FieldError const& e) {
      error(e.text);
      return std::nullopt;
    }
  }
  std::vector<JsonCursor> items() const;
  // One of the members of this value. The path has a name that is no word in brackets.
  JsonCursor below(JsonValue::Member const& member) const;

private:
  friend class JsonObject;
  std::optional<std::string> numberOrText() const;
  void errorAt(std::size_t offset, std::string const& path, std::string const& text) const;

  JsonValue const* value_;
  std::string path_;
  SourceText const* source_;
  Diagnostics* diagnostics_;
};

class JsonObject {
public:
  // REQUIRES: the cursor outlives the object.
  explicit JsonObject(JsonCursor const& at);

  // Nothing when there is no such member; asking for a required one tells the error.
  std::optional<JsonCursor> member(char const* name);
  std::optional<JsonCursor> required(char const* name);
  // Stores the member's value where it is there and right.
  void boolean(char const* name, bool& value);
  std::vector<JsonCursor> array(char const* name);

  // Tells of the members that were never asked for. Call it last.
  void refuseOthers() const;

private:
  JsonCursor const& at_;
  std::vector<bool> asked_;
};

} // namespace Pbrctl
