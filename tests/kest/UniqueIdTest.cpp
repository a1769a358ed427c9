#include "Kest/UniqueId.h"

#include "Vyx/VyxType.h"
#include "support/Random.h"
#include "support/TextForms.h"

namespace {

using Kest::UniqueId;

TEST(UniqueId, DefaultHasAllBitsSet) {
  EXPECT_EQ(UniqueId(0xffffffffU, 0xffff, 0xffff), UniqueId());
  UniqueId id(1, 2, 3);
  id.doInit();
  EXPECT_EQ(UniqueId(), id);
}

TEST(UniqueId, HashMixesItsThreeFields) {
  EXPECT_EQ(0x12345678U ^ 0xef01U ^ 0x9abc0000U, UniqueId(0x12345678, 0x9abc, 0xef01).hash());
  EXPECT_EQ(0U, UniqueId(0, 0, 0).hash());
  EXPECT_EQ(0xffffffffU ^ 0xffffU ^ 0xffff0000U, UniqueId().hash());
}

TEST(UniqueId, AscendsByItsFieldsInOrder) {
  expectAscends<UniqueId>(
      {{0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {1, 0, 0xffff}, {0x80000000U, 0, 0}, {}});
}

TEST(UniqueId, TextIsHexadecimalOfFixedWidth) {
  EXPECT_EQ("00000001-0002-abcd", valueToStrep(UniqueId(1, 2, 0xabcd)));
  EXPECT_EQ("ffffffff-ffff-ffff", printed(UniqueId()));
  EXPECT_EQ(UniqueId(0xab, 0xc, 0xd), Vyx::strepToValue<UniqueId>("000000AB-000c-000D"));
}

TEST(UniqueId, RefusesEveryOtherWidthAndSign) {
  for (char const* text : {"", "1-2-3", "00000001-0002-000", "00000001 0002-0003", "0000000g-0002-0003",
                           "-0000001-0002-0003", "0x000001-0002-0003", "00000001-+002-0003"})
    EXPECT_EQ("UniqueId: \"" + std::string(text) + "\": not of the form 01234567-89ab-cdef",
              refusal<UniqueId>(text));
  EXPECT_EQ("junk at column 18 deserializing 00000001-0002-00034", refusal<UniqueId>("00000001-0002-00034"));
}

TEST(UniqueId, RandomIdsReadBack) {
  Random random;
  for (int i = 0; i < 2000; ++i)
    expectReadsBack(UniqueId(random.bits(), static_cast<std::uint16_t>(random.bits()),
                             static_cast<std::uint16_t>(random.bits())));
}

TEST(UniqueId, RecordTellsNameAndSize) {
  EXPECT_EQ("Kest::UniqueId", UniqueId::_fwkType()->fullTypeName());
  EXPECT_EQ(8U, UniqueId::_fwkType()->size());
  EXPECT_TRUE(UniqueId::_fwkType()->isValue());
}

} // namespace
