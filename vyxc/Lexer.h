// Cuts a schema into tokens, one at a time, so that a file of any size costs no more than its text.

#pragma once

#include "Diagnostics.h"
#include "SourceFile.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vyxc {

enum class TokenKind { kName, kNumber, kString, kPunctuation, kEnd };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  Span span;
  std::string_view text;    // As written; of a string, what stands between the quotes.
  std::uint64_t number = 0; // Of a number.
  Span doc; // The comment lines directly above, from the first `//` on; empty if there are none.

  bool is(std::string_view punctuationOrName) const {
    return (kind == TokenKind::kPunctuation || kind == TokenKind::kName) && text == punctuationOrName;
  }
};

class Lexer {
public:
  Lexer(SourceFile const& file, Diagnostics& diagnostics) : file_(file), diagnostics_(diagnostics) {}

  // At the end of the file RETURNS kEnd, as often as asked.
  Token next();

private:
  void skipBlank();
  void skipComment();
  Token readWord();
  Token readNumber();
  Token readString();
  bool readPunctuation(Token& token);
  void refuseCharacter();
  Token token(TokenKind kind, std::size_t begin, std::size_t end) const;
  Span span(std::size_t begin, std::size_t end) const;
  std::string_view rest() const { return file_.text().substr(at_); }

  SourceFile const& file_;
  Diagnostics& diagnostics_;
  std::size_t at_ = 0;
  bool tokenOnLine_ = false; // A comment behind a token on the same line documents nothing.
  Span doc_;                 // The comment lines that end on the line before `at_`.
};

} // namespace vyxc
