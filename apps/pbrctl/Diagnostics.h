// The errors of one file, gathered until all of it was read.

#pragma once

#include "pbrctl/Place.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace Pbrctl {

class Diagnostics {
public:
  // A file with more errors than this is told so and not all of them.
  static constexpr std::size_t kMost = 10000;

  struct Error {
    Place place;
    std::string text;
  };

  explicit Diagnostics(std::string file) : file_(std::move(file)) {}

  void error(Place place, std::string text);

  bool ok() const { return errors_.empty(); }
  std::string const& file() const { return file_; }
  // ORDER: by place; errors of one place as they were found.
  std::vector<Error> sorted() const;
  // One line an error: `file:line:column: error: text`.
  void print(std::ostream& out) const;

private:
  std::string file_;
  std::vector<Error> errors_;
  std::size_t leftOut_ = 0;
};

// With the bytes escaped that don't print.
std::string escaped(std::string_view text);
// The word in single quotes, fit to be shown: long ones are cut, bytes that don't print are escaped.
std::string inQuotes(std::string_view word);

} // namespace Pbrctl
