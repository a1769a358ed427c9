// Reflection on the values and entities of the status and of the checkpoint tree.

#include "Pbr/Pbr.h"
#include "Reflecting.h"

#include <cmath>

namespace {

using Lomu::IpGenAddr;
using Pbr::NexthopIndex;
using Pbr::NexthopSet;
using Vyx::Name;

constexpr Op::OpId kComparisons[] = {Op::equal, Op::notEqual,     Op::greater,
                                     Op::less,  Op::greaterEqual, Op::lessEqual};

// What each comparison says of a pair, in the order of the codes.
std::string comparisons(Object const& left, Object const& right) {
  std::string said;
  for (Op::OpId code : kComparisons)
    said += Vyx::unwrap<bool>(*apply(left, code, 0, nullptr, right)) ? '1' : '0';
  return said;
}

bool negated(Object const& object) { return Vyx::unwrap<bool>(*apply(object, Op::negation, 0)); }

TEST(NexthopIndexReflection, NumberIsReadOnly) {
  Object const index = valueOf(NexthopIndex(7));
  EXPECT_EQ(7U, readAs<unsigned long long>(index, 2));
  EXPECT_EQ(NexthopIndex::nexthopIndexNone, readAs<unsigned long long>(index, 3));
  expectReadOnlyChecks(index, constValueOf(NexthopIndex(7)), 2, "value");
  expectReadOnlyChecks(index, constValueOf(NexthopIndex(7)), 3, "nexthopIndexNone");
}

TEST(NexthopIndexReflection, HasAllComparisons) {
  Object const zero = valueOf(NexthopIndex(0));
  Object const none = valueOf(NexthopIndex());
  EXPECT_EQ("010101", comparisons(zero, none));
  EXPECT_EQ("100011", comparisons(zero, zero));
  EXPECT_EQ("011010", comparisons(none, zero));
}

TEST(NexthopIndexReflection, OperandIsNeededAndOfTheType) {
  for (Op::OpId code : kComparisons) {
    EXPECT_EQ(badType("vyxOpArg"), failureOf(valueOf(NexthopIndex(1)), code, 0));
    EXPECT_EQ(badType("U64"), failureOf(valueOf(NexthopIndex(1)), code, 0, nullptr, valueOf(1ULL)));
  }
}

TEST(NexthopIndexReflection, OnlyNoneIsFalse) {
  EXPECT_TRUE(negated(valueOf(NexthopIndex())));
  EXPECT_FALSE(negated(valueOf(NexthopIndex(0))));
}

NexthopSet setOf(char const* address, bool value = true) {
  NexthopSet set;
  set.nexthopIs(address, value);
  return set;
}
Object address(char const* text) { return valueOf(IpGenAddr(text)); }

TEST(NexthopSetReflection, ComparesByTheTypesOwnOperators) {
  Object const one = valueOf(setOf("10.0.0.1"));
  Object const other = valueOf(setOf("10.0.0.2"));
  EXPECT_EQ("010011", comparisons(one, other));
  EXPECT_EQ("010011", comparisons(other, one));
  EXPECT_EQ("100011", comparisons(one, one));
  EXPECT_EQ("010101", comparisons(valueOf(NexthopSet()), one));
  EXPECT_TRUE(negated(valueOf(NexthopSet())));
  EXPECT_FALSE(negated(one));
}

TEST(NexthopSetReflection, EntriesAreReadWrittenAndRemoved) {
  Object const set = valueOf(setOf("10.0.0.1"));
  EXPECT_TRUE(readAs<bool>(set, 2, address("10.0.0.1")));
  EXPECT_FALSE(readAs<bool>(set, 2, address("10.0.0.2")));
  apply(set, Op::write, 2, address("10.0.0.2"), valueOf(false));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(set, Op::contains, 2, address("10.0.0.2"))));
  EXPECT_EQ(2U, Vyx::unwrap<unsigned>(*apply(set, Op::memberCount, 2)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(set, Op::del, 2, address("10.0.0.1"))));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(set, Op::del, 2, address("10.0.0.1"))));
  EXPECT_EQ(setOf("10.0.0.2", false), Vyx::unwrap<NexthopSet>(*set));
}

TEST(NexthopSetReflection, VersionOfTheEntriesRisesWithEachChange) {
  Object const set = valueOf(NexthopSet());
  auto const version = [&] { return Vyx::unwrap<unsigned>(*apply(set, Op::version, 2)); };
  EXPECT_EQ(1U, version());
  apply(set, Op::write, 2, address("10.0.0.2"), valueOf(true));
  EXPECT_EQ(2U, version());
}

TEST(NexthopSetReflection, EntriesCheckInOrder) {
  Object const set = valueOf(setOf("10.0.0.1"));
  EXPECT_EQ(kConst, failureOf(constValueOf(setOf("10.0.0.1")), Op::write, 2, nullptr, valueOf(true)));
  EXPECT_EQ(unsupported(Op::read, "nexthop"), failureOf(set, Op::read, 2));
  EXPECT_EQ(badType("U32"), failureOf(set, Op::read, 2, valueOf<unsigned>(1)));
  EXPECT_EQ(badType("nexthop"), failureOf(set, Op::write, 2, address("10.0.0.1")));
  EXPECT_EQ(badType("U32"), failureOf(set, Op::write, 2, address("10.0.0.1"), valueOf<unsigned>(1)));
  EXPECT_EQ(unsupported(kUnknownCode, "nexthop"), failureOf(set, kUnknownCode, 2, address("10.0.0.1")));
}

TEST(NexthopSetReflection, EntriesAreWalkedInOrder) {
  NexthopSet set = setOf("10.0.0.2");
  set.nexthopIs("10.0.0.1", false);
  Object const object = valueOf(set);
  auto at = object->attributeIteratorConst(2);
  EXPECT_EQ("10.0.0.1", object->attributeIterator_iterKey(at)->strRep());
  EXPECT_EQ("false", object->attributeIterator_iterObj(at)->strRep());
  object->attributeIterator_iterInc(at);
  EXPECT_EQ("10.0.0.2", object->attributeIterator_iterKey(at)->strRep());
  object->attributeIterator_iterInc(at);
  EXPECT_FALSE(object->attributeIterator_nonNull(at));
}

TEST(NexthopSetReflection, OtherMembersAreWrittenAndTheHashIsRead) {
  Object const set = valueOf(NexthopSet());
  write<unsigned>(set, 3, 7);
  write(set, 4, L3::VrfName("blue"));
  EXPECT_EQ(NexthopSet(7, "blue"), Vyx::unwrap<NexthopSet>(*set));
  EXPECT_EQ(NexthopSet(7, "blue").hash(), readAs<unsigned>(set, 5));
  EXPECT_EQ(NexthopSet(7, "blue").hash(), set->hash());
  expectReadOnlyChecks(set, constValueOf(NexthopSet()), 5, "hash");
}

TEST(NexthopSetReflection, NewOneIgnoresTheHash) {
  Object const made = NexthopSet::_fwkType()->newInstance(
      Vyx::Ptr<GenericIf const>(listOf({{"recursive", valueOf<unsigned>(1)},
                                        {"vrfName", valueOf(L3::VrfName("blue"))},
                                        {"hash", valueOf<unsigned>(9)}})));
  EXPECT_EQ(NexthopSet(1, "blue"), Vyx::unwrap<NexthopSet>(*made));
}

TEST(NexthopSetReflection, NameOfAHundredAndOneBytesIsRefused) {
  EXPECT_EQ("RangeException: VrfName::bytes > 100 not allowed",
            failure([] { L3::VrfName::_fwkType()->valueFromStrep(std::string(101, 'v').c_str()); }));
}

class ClassMapStatusReflection : public testing::Test {
protected:
  Vyx::Ptr<Pbr::PbrClassMapStatus> const status = Pbr::pbrClassMapStatusFactory("web", {1, 0, 0});
  Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey> const key = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf("10.0.0.1"));
  Object const object = on(status);
};

TEST_F(ClassMapStatusReflection, ReferenceIsWrittenAndRead) {
  EXPECT_FALSE(read(object, 388));
  EXPECT_FALSE(apply(object, Op::write, 388, nullptr, on(key)));
  EXPECT_EQ(key, status->nexthopIndexAndL2AdjKey());
  EXPECT_EQ(key.ptr(), entityOn(read(object, 388)));
  EXPECT_TRUE(read(object, 388)->isConst());
}

TEST_F(ClassMapStatusReflection, EntityOfAnotherTypeIsRefusedAndNothingChanges) {
  apply(object, Op::write, 388, nullptr, on(key));
  auto const stranger = Pbr::statusFactory("status");
  EXPECT_EQ(badType("Status"), failureOf(object, Op::write, 388, nullptr, on(stranger)));
  EXPECT_EQ(badType("NexthopSet"), failureOf(object, Op::write, 388, nullptr, valueOf(setOf("10.0.0.1"))));
  EXPECT_EQ(badType("nexthopIndexAndL2AdjKey"), failureOf(object, Op::write, 388));
  EXPECT_EQ(key, status->nexthopIndexAndL2AdjKey());
}

TEST_F(ClassMapStatusReflection, ScalarsCheckInOrder) {
  Object const number = valueOf<unsigned>(1);
  expectScalarChecks(object, onConst(status), 386, "actionType", number, "U32");
  expectScalarChecks(object, onConst(status), 387, "nexthopGroup", number, "U32");
  expectScalarChecks(object, onConst(status), 388, "nexthopIndexAndL2AdjKey", number, "U32");
}

TEST_F(ClassMapStatusReflection, NameIsNoTextOfTheGroup) {
  EXPECT_EQ(badType("Name"), failureOf(object, Op::write, 387, nullptr, valueOf(Name("gold"))));
  write(object, 387, Vyx::String8("gold"));
  EXPECT_EQ("gold", status->nexthopGroup());
}

TEST(AdjKeyReflection, SetIsReadOnlyAndTheRestIsWritten) {
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf("10.0.0.1"));
  Object const object = on(key);
  EXPECT_EQ(setOf("10.0.0.1"), readAs<NexthopSet>(object, 258));
  expectReadOnlyChecks(object, onConst(key), 258, "nexthopSet");
  write(object, 259, NexthopIndex(7));
  write<unsigned long long>(object, 262, 0x100000000ULL);
  apply(object, Op::write, 263, address("10.0.0.1"), valueOf(true));
  EXPECT_EQ(NexthopIndex(7), key->nexthopIndex());
  EXPECT_EQ(0x100000000ULL, key->l2AdjKey());
  EXPECT_TRUE(key->viasUsed("10.0.0.1"));
  EXPECT_EQ(badType("U32"), failureOf(object, Op::write, 262, nullptr, valueOf<unsigned>(1)));
}

TEST(AdjKeyReflection, ReadSetIsACopy) {
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf("10.0.0.1"));
  Object const set = read(on(key), 258);
  apply(set, Op::write, 2, address("10.0.0.9"), valueOf(true));
  EXPECT_EQ(setOf("10.0.0.1"), key->nexthopSet());
}

TEST(CheckpointReflection, MembersAreFoundByTheirKeys) {
  auto const cmap = Vyx::make<Pbr::ClassMapCheckpointStatus>("web");
  auto const kind = cmap->aclTypeCkptStatusIs(Acl::ipv6);
  auto const acl = kind->aclIs("web in");
  EXPECT_EQ(kind.ptr(), entityOn(read(on(cmap), 260, valueOf(Acl::ipv6))));
  EXPECT_FALSE(read(on(cmap), 260, valueOf(Acl::ip)));
  EXPECT_EQ(badType("Name"), failureOf(on(cmap), Op::read, 260, valueOf(Name("'ipv6'"))));
  EXPECT_EQ(acl.ptr(), entityOn(read(on(kind), 259, valueOf(Name("web in")))));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(on(kind), Op::del, 259, valueOf(Name("web in")))));
  EXPECT_EQ(0U, kind->acls());
}

TEST(CheckpointReflection, RulesTimesAndVersionsAreWritten) {
  auto const acl = Vyx::make<Pbr::PbrAclCheckpointStatus>("web in");
  Object const object = on(acl);
  apply(object, Op::write, 258, valueOf(Acl::UniqueId(1, 0, 0)), valueOf(Acl::RuleCheckpointStatus(3, 4)));
  write(object, 259, std::nan(""));
  write(object, 260, Acl::UniqueId(1, 2, 3));
  EXPECT_EQ(Acl::RuleCheckpointStatus(3, 4), acl->ruleStatus({1, 0, 0}));
  EXPECT_TRUE(std::isnan(acl->timestamp()));
  EXPECT_EQ(Acl::UniqueId(1, 2, 3), acl->version());
  EXPECT_EQ(badType("UniqueId"),
            failureOf(object, Op::write, 260, nullptr, valueOf(Kest::UniqueId(1, 2, 3))));
}

TEST(CheckpointReflection, NewKindNeedsNameAndType) {
  Object const made = Pbr::PbrAclTypeCheckpointStatus::_fwkType()->newInstance(
      Vyx::Ptr<GenericIf const>(listOf({{"name", valueOf(Name("any"))}, {"type", valueOf(Acl::mac)}})));
  auto const* const kind = entityOn<Pbr::PbrAclTypeCheckpointStatus>(made);
  ASSERT_NE(nullptr, kind);
  EXPECT_EQ(Acl::mac, kind->type());
  EXPECT_EQ("any", kind->name());
}

} // namespace
