// One line of the text form, cut into words.

#pragma once

#include "pbrctl/Place.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pbrctl {

struct Word {
  std::string_view text;
  std::uint32_t column = 1;
};

// Why a statement is refused. Thrown while a statement is read; the reader of lines turns it into an error of
// the file and goes on with the next line.
struct StatementError {
  std::uint32_t column;
  std::string text;
};

// statement := ["no"] [sequence] keyword word*
// A word that begins with "!" or "#" ends the statement: the rest of the line is a comment.
class Statement {
public:
  // Cuts the next line; the words before are gone.
  // THROWS: StatementError for a number that is no sequence.
  void lineIs(std::string_view line, std::uint32_t number);

  bool empty() const { return words_.empty(); }
  bool undo() const { return undo_; }
  std::optional<std::uint32_t> sequence() const { return sequence_; }
  // Empty when the line has nothing behind its "no" or its sequence.
  std::string_view keyword() const { return keyword_.text; }
  Place place() const { return {line_, keyword_.column}; }
  Place placeOf(Word const& word) const { return {line_, word.column}; }

  // The words behind the keyword, one by one.
  std::size_t left() const { return words_.size() - next_; }
  bool atEnd() const { return left() == 0; }
  Word const& peek() const { return words_[next_]; } // REQUIRES: !atEnd().
  bool nextIs(std::string_view text) const { return !atEnd() && peek().text == text; }
  bool takeIf(std::string_view text);
  // THROWS: StatementError, all of them, for what is not there.
  Word take(char const* what);
  std::string takeName(char const* what);
  std::uint32_t takeNumber(char const* what, std::uint32_t least, std::uint32_t most);
  void expectEnd() const;

  [[noreturn]] void fail(std::string text) const { throw StatementError{keyword_.column, std::move(text)}; }
  [[noreturn]] static void failAt(Word const& word, std::string text) {
    throw StatementError{word.column, std::move(text)};
  }

private:
  void cut(std::string_view line);

  std::vector<Word> words_;
  std::size_t next_ = 0;
  std::uint32_t line_ = 0;
  std::uint32_t end_ = 1; // The column behind the last word.
  bool undo_ = false;
  std::optional<std::uint32_t> sequence_;
  Word keyword_;
};

// RETURNS nothing when the word is no plain decimal number up to 2^32 - 1.
std::optional<std::uint32_t> numberOf(std::string_view word);

} // namespace Pbrctl
