// Writes C++ as the project's formatter would: indented by two, no line wider than 110 columns where a
// bracket offers a place to break it.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vyxc {

class CodeWriter {
public:
  static constexpr std::size_t kWidth = 110;

  std::string const& text() const { return text_; }

  void line(std::string_view text);
  void blank() { text_ += '\n'; }
  // Each of the lines of `doc` as a comment.
  void doc(std::string_view doc);
  // A line that ends with an opening brace, and what belongs to it one step further in.
  void open(std::string_view text);
  void close(std::string_view text = "}");
  void access(std::string_view word);
  // The same around the members of a braced list.
  void openList(std::string_view text);
  void closeList(std::string_view text);
  // `head` with a string literal in pieces, below one another.
  void strings(std::string_view head, std::vector<std::string> const& parts);

  // On one line if it fits.
  void function(std::string_view signature, std::string_view statement);
  void function(std::string_view signature, std::vector<std::string> const& statements);
  void constructor(std::string_view signature, std::vector<std::string> const& initializers,
                   std::vector<std::string> const& statements);
  // Opens `class X : base {`, with the base on its own line if it must be.
  void openClass(std::string_view head, std::string_view base);

private:
  bool fits(std::size_t length) const { return indent_ + length <= kWidth; }
  void put(std::size_t indent, std::string_view text);
  void wrapped(std::string_view text, std::size_t indent);
  void initializerList(std::vector<std::string> const& initializers, std::string_view end);

  std::string text_;
  std::size_t indent_ = 0;
};

// RETURNS the parts with `, ` between them.
std::string joined(std::vector<std::string> const& parts);

} // namespace vyxc
