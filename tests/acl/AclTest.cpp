#include "Acl/Acl.h"

#include "Vyx/TypeOf.h"
#include "support/Random.h"
#include "support/TextForms.h"

namespace {

using Acl::AclType;
using Acl::RuleCheckpointStatus;

TEST(AclType, NumbersAndNamesStandForEachOther) {
  char const* const names[] = {"ip", "ipv6", "mac"};
  for (unsigned number = 0; number < 3; ++number) {
    EXPECT_EQ(number, static_cast<unsigned>(Acl::AclTypeInstance(number)));
    EXPECT_EQ(Acl::AclTypeInstance(number), Acl::AclTypeInstance(Vyx::String8(names[number])));
    EXPECT_EQ(names[number], Acl::stringValue(Acl::AclTypeInstance(number)));
    expectReadsBack(Acl::AclTypeInstance(number));
  }
}

TEST(AclType, WhatIsNoEnumeratorIsRefused) {
  EXPECT_EQ("AclType", rangeMessage([] { Acl::AclTypeInstance(3U); }));
  EXPECT_EQ("AclType", rangeMessage([] { Acl::AclTypeInstance(0xffffffffU); }));
  for (char const* name : {"", "IP", "ipv", "ipv6 "}) EXPECT_EQ("AclType", refusal<AclType>(name)) << name;
}

TEST(AclType, NumberOfACastHasATextToo) {
  EXPECT_EQ("AclType(7)", Acl::stringValue(static_cast<AclType>(7)));
  EXPECT_EQ("'AclType(7)'", valueToStrep(static_cast<AclType>(7)));
}

TEST(AclType, TextIsQuotedAndStreamIsBare) {
  EXPECT_EQ("'ipv6'", valueToStrep(Acl::ipv6));
  EXPECT_EQ("ipv6", printed(Acl::ipv6));
  EXPECT_EQ(Acl::mac, Vyx::strepToValue<AclType>("mac"));
  EXPECT_EQ(Acl::mac, Vyx::strepToValue<AclType>("'mac'"));
}

TEST(AclType, RecordIsThatOfAnEnumeration) {
  EXPECT_EQ("Acl::AclType", Vyx::typeOf<AclType>()->fullTypeName());
  EXPECT_TRUE(Vyx::typeOf<AclType>()->isEnumType());
}

TEST(AclUniqueId, BehavesAsAnIdentifier) {
  EXPECT_EQ("ffffffff-ffff-ffff", valueToStrep(Acl::UniqueId()));
  EXPECT_EQ(0x10000U ^ 1U ^ 3U, Acl::UniqueId(1, 1, 3).hash());
  expectAscends<Acl::UniqueId>({{0, 0, 2}, {0, 1, 0}, {1, 0, 0}, {}});
  expectReadsBack(Acl::UniqueId(1, 2, 3));
  EXPECT_EQ("UniqueId: \"x\": not of the form 01234567-89ab-cdef", refusal<Acl::UniqueId>("x"));
  EXPECT_EQ("Acl::UniqueId", Acl::UniqueId::_fwkType()->fullTypeName());
}

TEST(RuleCheckpointStatus, DefaultIsZero) {
  EXPECT_EQ(RuleCheckpointStatus(0, 0), RuleCheckpointStatus());
  EXPECT_EQ("0", valueToStrep(RuleCheckpointStatus()));
}

TEST(RuleCheckpointStatus, TwoWordsMakeOneCount) {
  EXPECT_EQ("4294967303", valueToStrep(RuleCheckpointStatus(1, 7)));
  EXPECT_EQ(RuleCheckpointStatus(0xffffffffU, 0xffffffffU),
            Vyx::strepToValue<RuleCheckpointStatus>("18446744073709551615"));
  expectAscends<RuleCheckpointStatus>({{0, 0}, {0, 0xffffffffU}, {1, 0}, {1, 1}});
  EXPECT_EQ("U64: \"-1\": no number", refusal<RuleCheckpointStatus>("-1"));
}

TEST(RuleCheckpointStatus, RandomCountsReadBack) {
  Random random;
  for (int i = 0; i < 1000; ++i)
    expectReadsBack(RuleCheckpointStatus(random.bits() >> random.below(32), random.bits()));
}

} // namespace
