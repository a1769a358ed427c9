// The bytes of one input file, checked to be text, and the way from an offset back to a line and column.

#pragma once

#include "pbrctl/Diagnostics.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pbrctl {

class SourceText {
public:
  static constexpr std::size_t kMostBytes = 64u << 20;

  // RETURNS nothing, with the reason in `diagnostics`, when the file can't be read, is no plain file, holds
  // nothing but white space, or is too large.
  static std::optional<SourceText> read(std::string const& path, Diagnostics& diagnostics);

  SourceText(std::string name, std::string bytes);

  std::string const& name() const { return name_; }
  // Without the byte order mark that some editors put in front.
  std::string_view bytes() const { return std::string_view(bytes_).substr(start_); }
  // Whether this is the JSON form: by the name's ending, else by the first character.
  bool isJson() const;

  std::size_t lines() const { return lineStarts_.size(); }
  // REQUIRES: index < lines(). The line without its end.
  std::string_view line(std::size_t index) const;
  // REQUIRES: offset <= bytes().size().
  Place placeOf(std::size_t offset) const;

private:
  std::string name_;
  std::string bytes_;
  std::size_t start_ = 0;
  std::vector<std::size_t> lineStarts_;
};

struct BadByte {
  std::size_t offset;
  std::string text;
};

// RETURNS the first byte that no text has: NUL, another control character but tab, or broken UTF-8.
std::optional<BadByte> findBadByte(std::string_view line);

// RETURNS what is wrong with a name, or nothing. A name has 1 to 100 bytes, all printable, none blank, and
// doesn't begin like a comment.
std::optional<std::string> nameProblem(std::string_view name);

} // namespace Pbrctl
