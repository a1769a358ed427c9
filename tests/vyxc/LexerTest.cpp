#include "vyxc/Lexer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace vyxc {
namespace {

class LexerTest : public testing::Test {
protected:
  // The tokens in one line, each by its text, strings in quotes.
  std::string tokens(std::string text) {
    source_.emplace("test.vyx", std::move(text));
    Lexer lexer(*source_, diagnostics_);
    std::string result;
    for (auto token = lexer.next(); token.kind != TokenKind::kEnd; token = lexer.next()) {
      if (!result.empty()) result += ' ';
      result +=
          token.kind == TokenKind::kString ? '"' + std::string(token.text) + '"' : std::string(token.text);
    }
    return result;
  }

  // The documentation of the token called `name`.
  std::string docOf(std::string_view name, std::string text) {
    source_.emplace("test.vyx", std::move(text));
    Lexer lexer(*source_, diagnostics_);
    auto token = lexer.next();
    while (token.kind != TokenKind::kEnd && token.text != name) token = lexer.next();
    return std::string(source_->text().substr(token.doc.begin, token.doc.end - token.doc.begin));
  }

  std::string errors() const {
    std::ostringstream out;
    diagnostics_.print(out);
    return out.str();
  }

  std::optional<SourceFile> source_;
  Diagnostics diagnostics_;
};

TEST_F(LexerTest, BlanksAndCommentsOnlySeparate) {
  EXPECT_EQ("entity A : B { }", tokens("entity A:B\n{// comment }\n\t}\r\n"));
}

TEST_F(LexerTest, DoubleColonAndArrowAreOneTokenEach) {
  EXPECT_EQ("A :: B : C -> bool", tokens("A::B:C->bool"));
}

TEST_F(LexerTest, NumbersAreDecimalOrHexadecimal) {
  SourceFile const source("test.vyx", "64 0xFf 18446744073709551615");
  Lexer lexer(source, diagnostics_);
  EXPECT_EQ(64u, lexer.next().number);
  EXPECT_EQ(255u, lexer.next().number);
  EXPECT_EQ(UINT64_MAX, lexer.next().number);
  EXPECT_TRUE(diagnostics_.ok());
}

TEST_F(LexerTest, NumberOverflowIsToldOnce) {
  tokens("18446744073709551616 99999999999999999999999");
  EXPECT_EQ(2u, diagnostics_.errors());
}

TEST_F(LexerTest, NumberWithLettersIsRefused) {
  tokens("12ab");
  EXPECT_EQ("test.vyx:1:1: error: not a number, neither decimal nor 0x…\n12ab\n^~~~\n", errors());
}

TEST_F(LexerTest, StringEndsOnItsLine) {
  EXPECT_EQ("\"open\" x", tokens("\"open\nx"));
  EXPECT_EQ(1u, diagnostics_.errors());
}

TEST_F(LexerTest, RunOfStrangeCharactersIsOneError) {
  EXPECT_EQ("a b", tokens("a $%&!? b"));
  EXPECT_EQ("test.vyx:1:3: error: unexpected character\na $%&!? b\n  ^~~~~\n", errors());
}

TEST_F(LexerTest, CommentLinesDirectlyAboveAreDocumentation) {
  EXPECT_EQ("// One.\n  // Two.", docOf("x", "a\n  // One.\n  // Two.\n  x"));
}

TEST_F(LexerTest, BlankLineEndsDocumentation) { EXPECT_EQ("", docOf("x", "// One.\n\nx")); }

TEST_F(LexerTest, CommentBehindATokenDocumentsNothing) { EXPECT_EQ("", docOf("x", "a // One.\nx")); }

TEST_F(LexerTest, OnlyTheRunNextToTheNameCounts) {
  EXPECT_EQ("// Two.", docOf("x", "// One.\n\n// Two.\nx"));
}

TEST_F(LexerTest, ColumnsCountCharactersNotBytes) {
  tokens("\"äö\" $");
  EXPECT_EQ("test.vyx:1:6: error: unexpected character\n\"äö\" $\n     ^\n", errors());
}

TEST_F(LexerTest, LongLineIsShownInPart) {
  tokens(std::string(10000, ' ') + "$" + std::string(10000, ' '));
  EXPECT_LT(errors().size(), 400u);
  EXPECT_EQ("test.vyx:1:10001: error: ", errors().substr(0, 25));
}

TEST_F(LexerTest, ControlCharactersAreNotSentToTheTerminal) {
  tokens("\x1b[2J$");
  EXPECT_EQ(std::string::npos, errors().find('\x1b'));
}

TEST(SourceFileTest, LinesAreFoundByOffset) {
  SourceFile const source("test.vyx", "ab\n\ncd");
  EXPECT_EQ(1u, source.position(2).line);
  EXPECT_EQ(2u, source.position(3).line);
  EXPECT_EQ(3u, source.position(4).line);
  EXPECT_EQ(3u, source.position(6).column);
  EXPECT_EQ(3u, source.position(99).column);
}

TEST(SourceFileTest, CarriageReturnIsNoPartOfTheLine) {
  EXPECT_EQ("ab", SourceFile("test.vyx", "ab\r\ncd").lineText(1));
}

TEST(Utf8Test, WellFormedTextHasNoFault) {
  EXPECT_EQ(std::string_view::npos, firstInvalidUtf8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"));
}

TEST(Utf8Test, FirstFaultIsFound) {
  EXPECT_EQ(1u, firstInvalidUtf8("a\xC3"));            // cut short
  EXPECT_EQ(0u, firstInvalidUtf8("\x80"));             // no first byte
  EXPECT_EQ(0u, firstInvalidUtf8("\xC0\x80"));         // overlong
  EXPECT_EQ(0u, firstInvalidUtf8("\xE0\x80\x80"));     // overlong
  EXPECT_EQ(0u, firstInvalidUtf8("\xED\xA0\x80"));     // surrogate
  EXPECT_EQ(0u, firstInvalidUtf8("\xF4\x90\x80\x80")); // past the last character
}

TEST(DiagnosticsTest, ErrorsPastTheLimitAreCountedOnly) {
  SourceFile const source("test.vyx", "x");
  Diagnostics diagnostics;
  for (std::size_t i = 0; i <= Diagnostics::kMaxErrors; ++i) diagnostics.error({&source, 0, 1}, "wrong");
  EXPECT_TRUE(diagnostics.full());
  std::ostringstream out;
  diagnostics.print(out);
  EXPECT_NE(std::string::npos, out.str().find("more than 50 errors"));
}

} // namespace
} // namespace vyxc
