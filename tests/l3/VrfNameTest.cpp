#include "L3/VrfName.h"

#include "Vyx/VyxType.h"
#include "support/TextForms.h"

namespace {

using L3::VrfName;

TEST(VrfName, HoldsAHundredBytesAndNoMore) {
  EXPECT_EQ(100U, VrfName(std::string(100, 'x').c_str()).stringValue().bytes());
  EXPECT_EQ("VrfName::bytes > 100 not allowed", rangeMessage([] { VrfName(std::string(101, 'x').c_str()); }));
  EXPECT_EQ("VrfName::bytes > 100 not allowed", refusal<VrfName>(std::string(101, 'x')));
}

TEST(VrfName, DefaultIsTheEmptyText) {
  EXPECT_EQ("", VrfName().stringValue());
  EXPECT_EQ(VrfName(), VrfName(""));
}

TEST(VrfName, TextIsTakenAsItStands) {
  for (char const* text : {"", "default", "'quoted'", "two words", " "}) {
    expectReadsBack(VrfName(text));
    EXPECT_EQ(text, Vyx::strepToValue<VrfName>(text).stringValue());
    EXPECT_EQ(text, printed(VrfName(text)));
  }
}

TEST(VrfName, HashIsThatOfItsText) { EXPECT_EQ(Vyx::String8("blue").hash(), VrfName("blue").hash()); }

TEST(VrfName, AscendsAsTexts) { expectAscends<VrfName>({"", "a", "ab", "b", "\xc3\xa4"}); }

TEST(VrfName, RecordTellsItsName) { EXPECT_EQ("L3::VrfName", VrfName::_fwkType()->fullTypeName()); }

} // namespace
