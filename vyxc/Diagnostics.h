// Collects the mistakes of one run, so that a run tells all it can find instead of the first.

#pragma once

#include "SourceFile.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace vyxc {

class Diagnostics {
public:
  // What is told; a file of garbage need not be told whole.
  static constexpr std::size_t kMaxErrors = 50;

  void error(Span at, std::string message);
  // Adds to the error before it, for instance where a name was declared first.
  void note(Span at, std::string message);
  // For what has no place in a text: a file that cannot be read.
  void fileError(std::string path, std::string message);

  bool ok() const { return errors_ == 0; }
  std::size_t errors() const { return errors_; }
  // Past the limit nothing more is kept, and reading on is pointless.
  bool full() const { return errors_ > kMaxErrors; }

  // ORDER: as found. Each as `file:line:column: error: message`, the line, and a line with a caret.
  void print(std::ostream& out) const;

private:
  struct Entry {
    Span at;
    std::string path; // Of an entry that has no span.
    char const* severity;
    std::string message;
  };

  static void print(std::ostream& out, Entry const& entry);

  std::vector<Entry> entries_;
  std::size_t errors_ = 0;
};

} // namespace vyxc
