#include "Lexer.h"

#include <array>

namespace vyxc {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isNamePart(char c) { return isNameStart(c) || isDigit(c); }
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// RETURNS the value of a digit in base 10 or 16, or -1.
int digitValue(char c, unsigned base) {
  if (isDigit(c)) return c - '0';
  if (base == 16 && c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (base == 16 && c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

enum class NumberFault { kNone, kMalformed, kTooLarge };

NumberFault parseNumber(std::string_view text, std::uint64_t& value) {
  unsigned base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    text.remove_prefix(2);
  }
  value = 0;
  bool tooLarge = false;
  for (char const c : text) {
    int const digit = digitValue(c, base);
    if (digit < 0) return NumberFault::kMalformed;
    if (value > (UINT64_MAX - static_cast<unsigned>(digit)) / base) tooLarge = true;
    value = value * base + static_cast<unsigned>(digit);
  }
  return tooLarge ? NumberFault::kTooLarge : NumberFault::kNone;
}

} // namespace

Token Lexer::next() {
  for (;;) {
    skipBlank();
    auto const text = rest();
    if (text.empty()) return token(TokenKind::kEnd, at_, at_);
    if (text.starts_with("//")) {
      skipComment();
      continue;
    }
    Token result;
    if (isNameStart(text[0])) {
      result = readWord();
    } else if (isDigit(text[0])) {
      result = readNumber();
    } else if (text[0] == '"') {
      result = readString();
    } else if (!readPunctuation(result)) {
      refuseCharacter();
      continue;
    }
    result.doc = doc_;
    doc_ = {};
    tokenOnLine_ = true;
    return result;
  }
}

void Lexer::skipBlank() {
  auto const text = file_.text();
  std::size_t newlines = 0;
  while (at_ < text.size() && isBlank(text[at_])) {
    if (text[at_++] == '\n') ++newlines;
  }
  if (newlines > 0) tokenOnLine_ = false;
  if (newlines > 1) doc_ = {};
}

void Lexer::skipComment() {
  auto const text = file_.text();
  auto const begin = at_;
  while (at_ < text.size() && text[at_] != '\n') ++at_;
  if (tokenOnLine_) return;
  if (!doc_.file) doc_ = span(begin, begin);
  doc_.end = static_cast<std::uint32_t>(at_);
}

Token Lexer::readWord() {
  auto const begin = at_;
  while (!rest().empty() && isNamePart(rest()[0])) ++at_;
  return token(TokenKind::kName, begin, at_);
}

Token Lexer::readNumber() {
  auto const begin = at_;
  while (!rest().empty() && isNamePart(rest()[0])) ++at_;
  auto result = token(TokenKind::kNumber, begin, at_);
  switch (parseNumber(result.text, result.number)) {
  case NumberFault::kNone:
    break;
  case NumberFault::kMalformed:
    diagnostics_.error(result.span, "not a number, neither decimal nor 0x…");
    break;
  case NumberFault::kTooLarge:
    diagnostics_.error(result.span, "number does not fit in 64 bits");
    break;
  }
  return result;
}

Token Lexer::readString() {
  auto const begin = at_++;
  while (!rest().empty() && rest()[0] != '"' && rest()[0] != '\n') ++at_;
  auto result = token(TokenKind::kString, begin, at_);
  result.text.remove_prefix(1);
  if (rest().empty() || rest()[0] == '\n') {
    diagnostics_.error(result.span, "string has no closing quote on its line");
    return result;
  }
  result.span.end = static_cast<std::uint32_t>(++at_);
  if (result.text.find('\\') != std::string_view::npos) {
    diagnostics_.error(result.span, "string has a backslash; there are no escapes");
  }
  return result;
}

bool Lexer::readPunctuation(Token& result) {
  static constexpr std::array<std::string_view, 12> kAll = {"::", "->", "{", "}", "(", ")",
                                                            "[",  "]",  ":", ",", "=", "@"};
  for (auto const mark : kAll) {
    if (!rest().starts_with(mark)) continue;
    result = token(TokenKind::kPunctuation, at_, at_ + mark.size());
    at_ += mark.size();
    return true;
  }
  return false;
}

// A run of such characters is one mistake.
void Lexer::refuseCharacter() {
  auto const begin = at_;
  auto const belongs = [](std::string_view text) {
    return !text.empty() && !isBlank(text[0]) && !isNamePart(text[0]) && text[0] != '"' &&
           !text.starts_with("//") && std::string_view("{}()[]:,=@").find(text[0]) == std::string_view::npos;
  };
  do ++at_;
  while (belongs(rest()));
  diagnostics_.error(span(begin, at_), "unexpected character");
  tokenOnLine_ = true;
}

Token Lexer::token(TokenKind kind, std::size_t begin, std::size_t end) const {
  Token result;
  result.kind = kind;
  result.span = span(begin, end);
  result.text = file_.text().substr(begin, end - begin);
  return result;
}

Span Lexer::span(std::size_t begin, std::size_t end) const {
  return {&file_, static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

} // namespace vyxc
