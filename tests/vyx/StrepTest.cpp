#include "Vyx/Strep.h"

#include "support/Random.h"
#include "support/TextForms.h"

#include <bit>
#include <cmath>
#include <limits>

namespace {

using Vyx::String8;

template <class Number> void expectNumberRange(char const* type) {
  constexpr Number kMax = std::numeric_limits<Number>::max();
  expectReadsBack<Number>(0);
  expectReadsBack<Number>(kMax);
  std::string const tooLarge = std::to_string(kMax) + "0";
  EXPECT_EQ(type + (": \"" + tooLarge) + "\": " + tooLarge + " is above " + std::to_string(kMax),
            refusal<Number>(tooLarge));
}

TEST(Strep, NumbersOfEveryWidthReadBackAndEnd) {
  expectNumberRange<unsigned char>("U8");
  expectNumberRange<unsigned short>("U16");
  expectNumberRange<unsigned>("U32");
  expectNumberRange<unsigned long>(sizeof(long) == 8 ? "U64" : "U32");
  expectNumberRange<unsigned long long>("U64");
}

TEST(Strep, NumberJustAboveItsMaximumIsRefused) {
  EXPECT_EQ("U8: \"256\": 256 is above 255", refusal<unsigned char>("256"));
  EXPECT_EQ("U64: \"18446744073709551616\": 18446744073709551616 is above 18446744073709551615",
            refusal<unsigned long long>("18446744073709551616"));
}

TEST(Strep, OnlyPlainDecimalIsANumber) {
  EXPECT_EQ("U32: \"\": no number", refusal<unsigned>(""));
  EXPECT_EQ("U32: \"+1\": no number", refusal<unsigned>("+1"));
  EXPECT_EQ("U32: \"-1\": no number", refusal<unsigned>("-1"));
  EXPECT_EQ("U32: \"\": no number", refusal<unsigned>(" 1"));
  EXPECT_EQ("U32: \"010\": 010 has a leading zero", refusal<unsigned>("010"));
  EXPECT_EQ("junk at column 1 deserializing 0x10", refusal<unsigned>("0x10"));
}

TEST(Strep, WhatIsLeftOverIsJunkOfTheRangeId) {
  try {
    Vyx::strepToValue<unsigned>("12 and more");
    ADD_FAILURE() << "nothing was thrown";
  } catch (Vyx::RangeException const& error) {
    EXPECT_STREQ("junk at column 2 deserializing 12 and more", error.what());
    Vyx::Exception::IdBitArray expected;
    expected.set(12);
    EXPECT_EQ(expected, error.ids());
    EXPECT_TRUE(error.fromText());
  }
}

TEST(Strep, JunkTextEndsAtItsFirstNul) {
  EXPECT_EQ("junk at column 1 deserializing 1x", refusal<unsigned>(std::string_view("1x\0y", 4)));
}

TEST(Strep, ReaderMovesThePositionOverTheValueAlone) {
  String8 const text("7,8");
  Vyx::StrepIterator8 at = text.begin();
  auto const value = Vyx::sequenceToValue<unsigned, String8::IteratorConst>(at, text.end());
  EXPECT_EQ(7U, value);
  EXPECT_EQ(1U, at.position());
}

TEST(Strep, ReaderStopsAtTheEndOfTheStretch) {
  String8 const text("1234");
  Vyx::StrepIterator8 at(text, 1);
  Vyx::StrepIterator8 const end(text, 3);
  EXPECT_EQ(23U, Vyx::sequenceToValue<unsigned>(at, end));
}

template <class T>
concept HasTextForm = requires(T value) {
  Vyx::valueToStrep(value);
};
static_assert(HasTextForm<bool> && !HasTextForm<char const*> && !HasTextForm<void*>);

TEST(Strep, BoolIsAWord) {
  expectReadsBack(true);
  expectReadsBack(false);
  EXPECT_EQ("bool: \"True\": neither true nor false", refusal<bool>("True"));
  EXPECT_EQ("bool: \"1\": neither true nor false", refusal<bool>("1"));
  EXPECT_EQ("junk at column 4 deserializing trues", refusal<bool>("trues"));
}

TEST(Strep, DoubleIsTheShortestTextThatReadsBack) {
  EXPECT_EQ("0.1", Vyx::valueToStrep(0.1));
  EXPECT_EQ("-0", Vyx::valueToStrep(-0.0));
  EXPECT_EQ("1e+300", Vyx::valueToStrep(1e300));
  EXPECT_EQ("nan", Vyx::valueToStrep(-std::numeric_limits<double>::quiet_NaN()));
  EXPECT_TRUE(std::signbit(Vyx::strepToValue<double>("-0")));
  EXPECT_TRUE(std::isnan(Vyx::strepToValue<double>("nan")));
  EXPECT_EQ(-std::numeric_limits<double>::infinity(), Vyx::strepToValue<double>("-inf"));
}

TEST(Strep, RandomDoublesReadBack) {
  Random random;
  for (int i = 0; i < 20000; ++i) {
    auto const value = std::bit_cast<double>(std::uint64_t{random.bits()} << 32 | random.bits());
    if (!std::isnan(value)) expectReadsBack(value);
  }
}

TEST(Strep, DoubleHasNoOtherSpellings) {
  for (char const* text : {"", "+1", ".5", "-", "INF", "-nan", "e5", " 1"})
    EXPECT_NE(std::string::npos, refusal<double>(text).find(": no number")) << text;
  EXPECT_EQ("junk at column 3 deserializing infinity", refusal<double>("infinity"));
  EXPECT_EQ("junk at column 1 deserializing 0x1p3", refusal<double>("0x1p3"));
  EXPECT_EQ("double: \"1e999\": too large or too near to zero", refusal<double>("1e999"));
}

TEST(Strep, TextIsTheWholeStretchWithoutOnePairOfQuotes) {
  EXPECT_EQ("", Vyx::strepToValue<String8>(""));
  EXPECT_EQ("a b", Vyx::strepToValue<String8>("a b"));
  EXPECT_EQ("dropAction", Vyx::strepToValue<String8>("'dropAction'"));
  EXPECT_EQ("'x'", Vyx::strepToValue<Vyx::Name>("''x''"));
  EXPECT_EQ("'", Vyx::strepToValue<String8>("'"));
  EXPECT_EQ("'x", Vyx::strepToValue<String8>("'x"));
}

TEST(Strep, RefusedTextIsShownInPrintingCharacters) {
  EXPECT_EQ("T: \"a\\x00\\\"\\\\\\xff\": why",
            rangeMessage([] { Vyx::throwBadText("T", std::string_view("a\0\"\\\xff", 5), "why"); }));
}

TEST(Strep, LongRefusedTextIsCut) {
  std::string const text(200, 'a');
  EXPECT_EQ("T: \"" + text.substr(0, 80) + "...\": why",
            rangeMessage([&] { Vyx::throwBadText("T", text, "why"); }));
}

} // namespace
