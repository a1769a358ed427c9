#include "pbrctl/SourceText.h"

#include <gtest/gtest.h>

namespace Pbrctl {
namespace {

TEST(SourceText, LinesAreFoundWhateverTheirEnd) {
  SourceText const text("x", "a\r\nb\n\nc");
  ASSERT_EQ(4u, text.lines());
  EXPECT_EQ("a", text.line(0));
  EXPECT_EQ("b", text.line(1));
  EXPECT_EQ("", text.line(2));
  EXPECT_EQ("c", text.line(3));
}

TEST(SourceText, AnOffsetLeadsBackToItsPlace) {
  SourceText const text("x", "ab\ncd\n");
  EXPECT_EQ(1u, text.placeOf(0).line);
  EXPECT_EQ(2u, text.placeOf(4).line);
  EXPECT_EQ(2u, text.placeOf(4).column);
}

TEST(SourceText, AByteOrderMarkIsNoText) {
  SourceText const text("x", "\xef\xbb\xbf{}");
  EXPECT_EQ("{}", text.bytes());
  EXPECT_TRUE(text.isJson());
}

TEST(SourceText, TheFormIsKnownByNameOrByTheFirstCharacter) {
  EXPECT_TRUE(SourceText("a.json", "class-map").isJson());
  EXPECT_TRUE(SourceText("a.conf", " \n{").isJson());
  EXPECT_FALSE(SourceText("a.conf", "class-map {").isJson());
}

TEST(SourceText, BrokenUtf8IsFoundAtItsFirstByte) {
  char const* const broken[] = {"ab\x80",    "ab\xc3", "ab\xc0\x80", "ab\xed\xa0\x80", "ab\xf4\x90\x80\x80",
                                "ab\xe2\x82"};
  for (char const* text : broken) {
    auto const bad = findBadByte(text);
    ASSERT_TRUE(bad) << text;
    EXPECT_EQ(2u, bad->offset);
  }
  EXPECT_FALSE(findBadByte("a\tb\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80"));
}

TEST(SourceText, LongWordsAreCutWhereACharacterBegins) {
  EXPECT_EQ("'" + std::string(59, 'x') + "...'", inQuotes(std::string(59, 'x') + "\xc3\xbc and more"));
  EXPECT_EQ("'a\\x01'", inQuotes("a\x01"));
}

} // namespace
} // namespace Pbrctl
