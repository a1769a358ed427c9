#include "pbrctl/Diagnostics.h"

#include <algorithm>
#include <ostream>

namespace Pbrctl {

namespace {

constexpr std::size_t kShown = 60;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

} // namespace

void Diagnostics::error(Place place, std::string text) {
  if (errors_.size() >= kMost)
    ++leftOut_;
  else
    errors_.push_back({place, std::move(text)});
}

std::vector<Diagnostics::Error> Diagnostics::sorted() const {
  std::vector<Error> errors = errors_;
  std::stable_sort(errors.begin(), errors.end(), [](Error const& a, Error const& b) {
    return a.place.line != b.place.line ? a.place.line < b.place.line : a.place.column < b.place.column;
  });
  return errors;
}

void Diagnostics::print(std::ostream& out) const {
  for (Error const& e : sorted())
    out << file_ << ':' << e.place.line << ':' << e.place.column << ": error: " << e.text << '\n';
  if (leftOut_ != 0) out << file_ << ": " << leftOut_ << " more errors are not shown\n";
}

std::string escaped(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string out;
  for (char c : text) {
    auto const byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f)
      (out += "\\x") += {kHex[byte >> 4], kHex[byte & 15]};
    else
      out += c;
  }
  return out;
}

std::string inQuotes(std::string_view word) {
  bool const cut = word.size() > kShown;
  if (cut) {
    std::size_t end = kShown;
    while (end > 0 && isContinuation(word[end])) --end;
    word = word.substr(0, end);
  }
  return "'" + escaped(word) + (cut ? "...'" : "'");
}

} // namespace Pbrctl
