#include "pbrctl/Statement.h"

#include "pbrctl/SourceText.h"

#include <charconv>

namespace Pbrctl {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

} // namespace

std::optional<std::uint32_t> numberOf(std::string_view word) {
  std::uint32_t number = 0;
  auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (word.empty() || error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return number;
}

void Statement::cut(std::string_view line) {
  words_.clear();
  for (std::size_t i = 0; i < line.size();) {
    if (isBlank(line[i])) {
      ++i;
      continue;
    }
    if (line[i] == '!' || line[i] == '#') break;
    std::size_t end = i;
    while (end < line.size() && !isBlank(line[end])) ++end;
    words_.push_back({line.substr(i, end - i), static_cast<std::uint32_t>(i + 1)});
    i = end;
  }
}

void Statement::lineIs(std::string_view line, std::uint32_t number) {
  cut(line);
  line_ = number;
  next_ = 0;
  undo_ = false;
  sequence_.reset();
  keyword_ = {};
  if (words_.empty()) return;
  end_ = words_.back().column + static_cast<std::uint32_t>(words_.back().text.size());
  undo_ = takeIf("no");
  if (!atEnd() && isDigit(peek().text[0])) {
    keyword_ = peek();
    sequence_ = takeNumber("sequence number", 0, UINT32_MAX);
  }
  keyword_ = atEnd() ? Word{{}, end_} : words_[next_++];
}

bool Statement::takeIf(std::string_view text) {
  if (!nextIs(text)) return false;
  ++next_;
  return true;
}

Word Statement::take(char const* what) {
  if (atEnd()) throw StatementError{end_, std::string("the ") + what + " is missing"};
  return words_[next_++];
}

std::string Statement::takeName(char const* what) {
  Word const word = take(what);
  if (auto const problem = nameProblem(word.text)) failAt(word, *problem);
  return std::string(word.text);
}

std::uint32_t Statement::takeNumber(char const* what, std::uint32_t least, std::uint32_t most) {
  Word const word = take(what);
  auto const number = numberOf(word.text);
  if (!number || *number < least || *number > most)
    failAt(word, inQuotes(word.text) + " is no " + what + ", a number from " + std::to_string(least) +
                     " to " + std::to_string(most));
  return *number;
}

void Statement::expectEnd() const {
  if (!atEnd()) failAt(peek(), inQuotes(peek().text) + " does not belong here");
}

} // namespace Pbrctl
