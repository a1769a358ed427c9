// A schema's text and where its lines begin. Every span of the compiler points into one of these.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vyxc {

// Counted from 1. A column is a character, not a byte.
struct Position {
  std::size_t line;
  std::size_t column;
};

class SourceFile {
public:
  SourceFile(std::string path, std::string text);

  std::string const& path() const { return path_; }
  std::string_view text() const { return text_; }

  // An offset at or past the end of the text is that of the end.
  Position position(std::size_t offset) const;
  // RETURNS the line without its end; `line` counts from 1.
  std::string_view lineText(std::size_t line) const;
  std::size_t lineStart(std::size_t line) const { return lineStarts_[line - 1]; }

private:
  std::string path_;
  std::string text_;
  std::vector<std::size_t> lineStarts_;
};

// A piece of a file. Without a file it stands for the command line.
struct Span {
  SourceFile const* file = nullptr;
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// RETURNS the offset of the first byte that is no part of well-formed UTF-8 text, npos if there is none.
std::size_t firstInvalidUtf8(std::string_view text);

} // namespace vyxc
