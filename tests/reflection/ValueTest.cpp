// Reflection on values: the interface holds a copy.

#include "Pbr/Pbr.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using Pbr::Dscp;

constexpr char const* kOutOfRange = "RangeException: Dscp::value < Dscp::min or > Dscp::invalid not allowed";
constexpr Op::OpId kComparisons[] = {Op::equal, Op::notEqual,     Op::greater,
                                     Op::less,  Op::greaterEqual, Op::lessEqual};

Object byte(unsigned char value) { return valueOf(value); }

TEST(DscpReflection, ByteIsReadAndWritten) {
  Object const dscp = valueOf(Dscp(10));
  EXPECT_EQ(10, readAs<unsigned char>(dscp, 2));
  write<unsigned char>(dscp, 2, 46);
  EXPECT_EQ(46, readAs<unsigned char>(dscp, 2));
  EXPECT_EQ(Dscp(46), Vyx::unwrap<Dscp>(*dscp));
}

TEST(DscpReflection, ByteChecksInOrder) {
  expectScalarChecks(valueOf(Dscp(10)), constValueOf(Dscp(10)), 2, "value", valueOf<unsigned>(1), "U32");
}

TEST(DscpReflection, ByteAboveTheMarkerIsRefusedAndStays) {
  Object const dscp = valueOf(Dscp(10));
  EXPECT_EQ(kOutOfRange, failureOf(dscp, Op::write, 2, nullptr, byte(65)));
  EXPECT_EQ(65, readAs<unsigned char>(dscp, 2));
}

TEST(DscpReflection, ByteThatIsThereIsTakenWhateverItIs) {
  Object const dscp = valueOf(Dscp(10));
  failureOf(dscp, Op::write, 2, nullptr, byte(200));
  EXPECT_EQ("nothing was thrown", failureOf(dscp, Op::write, 2, nullptr, byte(200)));
  EXPECT_EQ("nothing was thrown", failureOf(dscp, Op::write, 2, nullptr, byte(64)));
}

TEST(DscpReflection, ConstantsAreRead) {
  Object const dscp = constValueOf(Dscp(10));
  EXPECT_EQ(0, readAs<unsigned char>(dscp, 3));
  EXPECT_EQ(63, readAs<unsigned char>(dscp, 4));
  EXPECT_EQ(64, readAs<unsigned char>(dscp, 5));
  expectReadOnlyChecks(valueOf(Dscp(10)), dscp, 3, "min");
  expectReadOnlyChecks(valueOf(Dscp(10)), dscp, 4, "max");
  expectReadOnlyChecks(valueOf(Dscp(10)), dscp, 5, "invalid");
}

TEST(DscpReflection, OnlyTheMarkerForNoneIsFalse) {
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(valueOf(Dscp()), Op::negation, 0)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(constValueOf(Dscp(64)), Op::negation, 0)));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(valueOf(Dscp(63)), Op::negation, 0)));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(valueOf(Dscp(0)), Op::negation, 0)));
}

TEST(DscpReflection, HasNoComparisons) {
  for (Op::OpId code : kComparisons)
    EXPECT_EQ(unsupported(code, "Dscp"), failureOf(valueOf(Dscp(1)), code, 0, nullptr, valueOf(Dscp(1))));
}

TEST(DscpReflection, UnknownAttributeIsRefusedBehindTheConstCheck) {
  EXPECT_EQ(unknownAttribute("6"), failureOf(valueOf(Dscp(1)), Op::read, 6));
  EXPECT_EQ(unknownAttribute("0"), failureOf(valueOf(Dscp(1)), Op::read, 0));
  EXPECT_EQ(kConst, failureOf(constValueOf(Dscp(1)), Op::write, 6));
}

TEST(DscpReflection, TextIsThatOfTheValue) {
  EXPECT_EQ("46", valueOf(Dscp(46))->strRep());
  EXPECT_EQ("64", valueOf(Dscp())->strRep());
  EXPECT_EQ(valueOf(Dscp(46))->hash(), constValueOf(Dscp(46))->hash());
}

TEST(DscpReflection, NamesAndIdsAnswerToEachOther) {
  Object const dscp = valueOf(Dscp(1));
  EXPECT_EQ(2, dscp->attributeId("value"));
  EXPECT_EQ(5, dscp->attributeId("invalid"));
  EXPECT_EQ("max", dscp->attributeString(4));
  EXPECT_EQ("unknown", dscp->attributeString(9999));
  EXPECT_EQ(unknownAttribute("name"), failure([&] { dscp->attributeId("name"); }));
}

TEST(DscpReflection, RawPointerIsGivenForTheTypeAlone) {
  Object const dscp = valueOf(Dscp(7));
  EXPECT_EQ(Dscp(7), *static_cast<Dscp*>(dscp->rawPtr(Dscp::_fwkType())));
  EXPECT_EQ(badType("Dscp"), failure([&] { dscp->rawPtr(Vyx::typeOf<unsigned char>()); }));
}

TEST(DscpReflection, HasNothingToWalk) {
  EXPECT_EQ(unsupported(Op::read, "value") + " with an index",
            failure([] { valueOf(Dscp(1))->attributeIteratorConst(2); }));
}

TEST(ActionTypeReflection, EnumeratorsAreAttributes) {
  Object const type = valueOf(Pbr::dropAction);
  EXPECT_EQ(Pbr::noAction, readAs<Pbr::PbrActionType>(type, 0));
  EXPECT_EQ(Pbr::nexthopGroupAction, readAs<Pbr::PbrActionType>(type, 3));
  EXPECT_EQ(2, type->attributeId("nexthopAction"));
  expectReadOnlyChecks(type, constValueOf(Pbr::dropAction), 1, "dropAction");
  EXPECT_EQ(unknownAttribute("4"), failureOf(type, Op::read, 4));
}

TEST(ActionTypeReflection, TextIsTheQuotedName) {
  EXPECT_EQ("'nexthopAction'", valueOf(Pbr::nexthopAction)->strRep());
}

TEST(ActionTypeReflection, RawPointerForAnotherEnumerationIsRefused) {
  Object const type = valueOf(Pbr::dropAction);
  EXPECT_EQ(badType("PbrActionType"), failure([&] { type->rawPtr(Vyx::typeOf<PolicyMap::ActionType>()); }));
}

// What each comparison says of a pair, in the order of the codes.
std::string comparisons(Object const& left, Object const& right) {
  std::string said;
  for (Op::OpId code : kComparisons)
    said += Vyx::unwrap<bool>(*apply(left, code, 0, nullptr, right)) ? '1' : '0';
  return said;
}

TEST(OpaqueValueReflection, HasAllComparisons) {
  Object const one = valueOf(UniqueId(1, 0, 0));
  Object const two = valueOf(UniqueId(2, 0, 0));
  EXPECT_EQ("010101", comparisons(one, two));
  EXPECT_EQ("100011", comparisons(one, one));
  EXPECT_EQ("011010", comparisons(two, one));
}

TEST(OpaqueValueReflection, NegationTakesNoOperand) {
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(valueOf(UniqueId()), Op::negation, 0)));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(valueOf(UniqueId(1, 0, 0)), Op::negation, 0)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(valueOf(false), Op::negation, 0)));
}

TEST(OpaqueValueReflection, OperandIsTakenFromTheValueElseFromTheIndex) {
  Object const one = valueOf(UniqueId(1, 0, 0));
  Object const two = valueOf(UniqueId(2, 0, 0));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(one, Op::equal, 0, two, one)));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(one, Op::equal, 0, two)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(one, Op::less, 0, listOf({{"vyxOpArg", two}}))));
}

TEST(OpaqueValueReflection, MissingOrForeignOperandIsRefused) {
  Object const one = valueOf(UniqueId(1, 0, 0));
  EXPECT_EQ(badType("vyxOpArg"), failureOf(one, Op::equal, 0));
  EXPECT_EQ(badType("vyxOpArg"), failureOf(one, Op::equal, 0, listOf({{"other", one}})));
  EXPECT_EQ(badType("bool"), failureOf(one, Op::equal, 0, nullptr, valueOf(true)));
}

TEST(OpaqueValueReflection, HasNoAttributes) {
  Object const id = valueOf(UniqueId(1, 0, 0));
  EXPECT_EQ(unknownAttribute("2"), failureOf(id, Op::read, 2));
  EXPECT_EQ(unknownAttribute("0"), failureOf(id, Op::read, 0));
  EXPECT_EQ(kConst, failureOf(constValueOf(UniqueId()), Op::write, 2));
  EXPECT_EQ("00000001-0000-0000", id->strRep());
  EXPECT_EQ(UniqueId(1, 0, 0).hash(), id->hash());
}

TEST(OpaqueValueReflection, ValueIsMadeFromItsText) {
  Object const id = UniqueId::_fwkType()->valueFromStrep("0000002a-0001-0002");
  EXPECT_EQ(UniqueId(0x2a, 1, 2), Vyx::unwrap<UniqueId>(*id));
  EXPECT_EQ(Dscp(9), Vyx::unwrap<Dscp>(*Dscp::_fwkType()->valueFromStrep("9")));
  EXPECT_EQ(kOutOfRange, failure([] { Dscp::_fwkType()->valueFromStrep("65"); }));
}

} // namespace
