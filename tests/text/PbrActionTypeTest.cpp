#include "Pbr/PbrActionType.h"

#include "support/TextForms.h"

namespace {

using Pbr::PbrActionType;
using Vyx::String8;

constexpr auto kNone = static_cast<PbrActionType>(7);

// The refusals of a name and of a number.
std::string refusedName(char const* name) {
  return rangeMessage([&] { Pbr::PbrActionTypeInstance(String8(name)); });
}
std::string refusedNumber(unsigned number) {
  return rangeMessage([&] { Pbr::PbrActionTypeInstance(number); });
}

TEST(PbrActionType, NumbersAreThoseOfTheModel) {
  EXPECT_EQ(4U, sizeof(PbrActionType));
  EXPECT_EQ(Pbr::noAction, Pbr::PbrActionTypeInstance(0U));
  EXPECT_EQ(Pbr::dropAction, Pbr::PbrActionTypeInstance(1U));
  EXPECT_EQ(Pbr::nexthopAction, Pbr::PbrActionTypeInstance(2U));
  EXPECT_EQ(Pbr::nexthopGroupAction, Pbr::PbrActionTypeInstance(3U));
}

TEST(PbrActionType, NumberOutsideIsRefused) {
  EXPECT_EQ("PbrActionType", refusedNumber(4));
  EXPECT_EQ("PbrActionType", refusedNumber(0xffffffffU));
}

TEST(PbrActionType, NamesAreThoseOfTheModel) {
  EXPECT_EQ(Pbr::noAction, Pbr::PbrActionTypeInstance(String8("noAction")));
  EXPECT_EQ(Pbr::dropAction, Pbr::PbrActionTypeInstance(String8("dropAction")));
  EXPECT_EQ(Pbr::nexthopAction, Pbr::PbrActionTypeInstance(String8("nexthopAction")));
  EXPECT_EQ(Pbr::nexthopGroupAction, Pbr::PbrActionTypeInstance(String8("nexthopGroupAction")));
}

TEST(PbrActionType, NameMustMatchToTheLetter) {
  for (char const* name :
       {"NOACTION", "NoAction", "noAction ", " noAction", "nexthop", "'noAction'", "2", ""})
    EXPECT_EQ("PbrActionType", refusedName(name)) << name;
}

TEST(PbrActionType, NameOfARawCastIsMadeOfItsNumber) {
  EXPECT_EQ("nexthopAction", Pbr::stringValue(Pbr::nexthopAction));
  EXPECT_EQ("PbrActionType(7)", Pbr::stringValue(kNone));
  EXPECT_EQ("PbrActionType(4)", Pbr::stringValue(static_cast<PbrActionType>(4)));
  EXPECT_EQ("PbrActionType(-1)", Pbr::stringValue(static_cast<PbrActionType>(0xffffffffU)));
}

TEST(PbrActionType, TextIsQuotedAndStreamIsBare) {
  EXPECT_EQ("'nexthopAction'", valueToStrep(Pbr::nexthopAction));
  EXPECT_EQ("'PbrActionType(7)'", valueToStrep(kNone));
  EXPECT_EQ("nexthopAction", printed(Pbr::nexthopAction));
  EXPECT_EQ("PbrActionType(7)", printed(kNone));
}

TEST(PbrActionType, ReadsItsTextWithAndWithoutQuotes) {
  for (unsigned number = 0; number < 4; ++number) expectReadsBack(Pbr::PbrActionTypeInstance(number));
  EXPECT_EQ(Pbr::dropAction, Vyx::strepToValue<PbrActionType>("dropAction"));
  EXPECT_EQ("PbrActionType", refusal<PbrActionType>("'dropAction"));
  EXPECT_EQ("PbrActionType", refusal<PbrActionType>("''dropAction''"));
  EXPECT_EQ("PbrActionType", refusal<PbrActionType>("'PbrActionType(7)'"));
}

TEST(PbrActionType, ReaderTakesTheWholeStretchAndNoMore) {
  String8 const text("x'dropAction'y");
  Vyx::StrepIterator8 at(text, 1);
  Vyx::StrepIterator8 const end(text, 13);
  EXPECT_EQ(Pbr::dropAction, Vyx::sequenceToValue<PbrActionType>(at, end));
  EXPECT_EQ(13U, at.position());
  EXPECT_EQ("PbrActionType", refusal<PbrActionType>("dropAction nexthopAction"));
}

} // namespace
