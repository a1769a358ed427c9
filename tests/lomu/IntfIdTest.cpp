#include "Lomu/IntfId.h"

#include "Vyx/VyxType.h"
#include "support/TextForms.h"

namespace {

using Lomu::IntfId;

TEST(IntfId, HoldsAHundredBytesAndNoMore) {
  EXPECT_EQ(100U, IntfId(std::string(100, 'x').c_str()).stringValue().bytes());
  EXPECT_EQ("IntfId::bytes > 100 not allowed", rangeMessage([] { IntfId(std::string(101, 'x').c_str()); }));
  EXPECT_EQ("IntfId::bytes > 100 not allowed", refusal<IntfId>(std::string(101, 'x')));
}

TEST(IntfId, DefaultIsTheEmptyText) {
  EXPECT_EQ("", IntfId().stringValue());
  EXPECT_EQ(IntfId(), IntfId(""));
}

TEST(IntfId, TextIsTakenAsItStands) {
  for (char const* text : {"", "default", "'quoted'", "two words", " "}) {
    expectReadsBack(IntfId(text));
    EXPECT_EQ(text, Vyx::strepToValue<IntfId>(text).stringValue());
    EXPECT_EQ(text, printed(IntfId(text)));
  }
}

TEST(IntfId, HashIsThatOfItsText) { EXPECT_EQ(Vyx::String8("blue").hash(), IntfId("blue").hash()); }

TEST(IntfId, AscendsAsTexts) { expectAscends<IntfId>({"", "a", "ab", "b", "\xc3\xa4"}); }

TEST(IntfId, RecordTellsItsName) { EXPECT_EQ("Lomu::IntfId", IntfId::_fwkType()->fullTypeName()); }

} // namespace
