#include "Vyx/EntityId.h"

#include "Vyx/KeyHash.h"

#include <gtest/gtest.h>

namespace {

using Vyx::EntityId;

TEST(EntityId, HasTheLowWordFirst) {
  EXPECT_EQ(1U, EntityId(1, 0).value());
  EXPECT_EQ(0x1234567800000005U, EntityId(5, 0x12345678).value());
  EXPECT_EQ(EntityId(5, 0x12345678), EntityId::fromValue(0x1234567800000005U));
}

TEST(EntityId, IsAssignedWhenItIsOdd) {
  EXPECT_TRUE(EntityId(1, 0).isAssigned());
  EXPECT_FALSE(EntityId(2, 1).isAssigned());
  EXPECT_FALSE(EntityId().isAssigned());
}

TEST(EntityId, IsNullInBothWordsOnly) {
  EXPECT_TRUE(EntityId().isNull());
  EXPECT_FALSE(EntityId(0, 1).isNull());
  EXPECT_FALSE(EntityId(1, 0).isNull());
}

TEST(EntityId, TablesOrderItByTheBitsAboveTheLowest) {
  EntityId const id(7, 0x80000001);
  EXPECT_EQ(Vyx::bitReverse(0x80000003U), Vyx::reversedHash(id));
  EXPECT_EQ(Vyx::bitReverse(static_cast<std::uint32_t>(id.value() >> 1)), Vyx::reversedHash(id));
}

TEST(EntityId, IsOrderedByItsValue) { EXPECT_LT(EntityId(9, 0), EntityId(1, 1)); }

} // namespace
