// A JSON text as a tree of values that know their place.

#pragma once

#include "pbrctl/SourceText.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Pbrctl {

struct JsonValue {
  enum class Kind { null, boolean, number, fraction, text, array, object };
  struct Member;

  Kind kind = Kind::null;
  std::size_t offset = 0; // In the source's bytes.
  bool boolean = false;
  std::uint64_t number = 0; // A whole number that isn't negative; any other is a fraction.
  std::string text;         // Of a fraction: as the file has it.
  std::vector<JsonValue> items;
  std::vector<Member> members; // In the order of the file; no name twice.
};

struct JsonValue::Member {
  std::string name;
  std::size_t offset = 0;
  JsonValue value;
};

char const* kindName(JsonValue::Kind kind);

// RETURNS null, with the reasons in `diagnostics`, for a text that is no JSON, names a member twice in one
// object, or nests deeper than 16.
std::unique_ptr<JsonValue> readJson(SourceText const& source, Diagnostics& diagnostics);

} // namespace Pbrctl
