#include "Diagnostics.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <utility>

namespace vyxc {

namespace {

// A longer line is shown from a little before the mistake on.
constexpr std::size_t kShownBytes = 160;
constexpr std::size_t kShownBefore = 60;

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// A byte that a terminal would take for a command, or for half a character, is shown as `?`.
std::string printable(std::string_view text) {
  std::string result(text);
  bool const wellFormed = firstInvalidUtf8(text) == std::string_view::npos;
  for (char& c : result) {
    auto const byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && c != '\t') || byte == 0x7F || (byte >= 0x80 && !wellFormed)) c = '?';
  }
  return result;
}

std::string caretLine(std::string_view before, std::string_view marked) {
  std::string result;
  for (char const c : before) {
    if (!isContinuation(c)) result += c == '\t' ? '\t' : ' ';
  }
  result += '^';
  auto const characters =
      std::count_if(marked.begin(), marked.end(), [](char c) { return !isContinuation(c); });
  if (characters > 1) result.append(static_cast<std::size_t>(characters) - 1, '~');
  return result;
}

void printExcerpt(std::ostream& out, Span at) {
  auto const line = at.file->position(at.begin).line;
  auto const text = at.file->lineText(line);
  auto const start = at.file->lineStart(line);
  auto const begin = std::min<std::size_t>(at.begin - start, text.size());
  auto const end = std::clamp<std::size_t>(at.end - start, begin, text.size());

  std::size_t from = 0;
  if (text.size() > kShownBytes && begin > kShownBefore) {
    from = begin - kShownBefore;
    while (from > 0 && isContinuation(text[from])) --from;
  }
  auto to = std::min(text.size(), from + kShownBytes);
  while (to < text.size() && to > from && isContinuation(text[to])) --to;
  auto const before = printable(text.substr(from, begin - from));
  auto const marked = printable(text.substr(begin, std::min(end, to) - begin));
  out << before << printable(text.substr(begin, to - begin)) << '\n' << caretLine(before, marked) << '\n';
}

} // namespace

void Diagnostics::error(Span at, std::string message) {
  if (++errors_ <= kMaxErrors) entries_.push_back({at, {}, "error", std::move(message)});
}

void Diagnostics::note(Span at, std::string message) {
  if (errors_ <= kMaxErrors) entries_.push_back({at, {}, "note", std::move(message)});
}

void Diagnostics::fileError(std::string path, std::string message) {
  if (++errors_ <= kMaxErrors) entries_.push_back({{}, std::move(path), "error", std::move(message)});
}

void Diagnostics::print(std::ostream& out) const {
  for (auto const& entry : entries_) print(out, entry);
  if (full()) out << "vyxc: more than " << kMaxErrors << " errors; the rest is not told\n";
}

void Diagnostics::print(std::ostream& out, Entry const& entry) {
  if (!entry.at.file) {
    out << entry.path << ": " << entry.severity << ": " << entry.message << '\n';
    return;
  }
  auto const position = entry.at.file->position(entry.at.begin);
  out << entry.at.file->path() << ':' << position.line << ':' << position.column << ": " << entry.severity
      << ": " << entry.message << '\n';
  printExcerpt(out, entry.at);
}

} // namespace vyxc
