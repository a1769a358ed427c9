// The bytes of every kind of value, written and read back.

#include "Wire.h"

#include "Acl/Acl.h"
#include "Kest/UniqueId.h"
#include "L3/VrfName.h"
#include "Lomu/IntfId.h"
#include "Lomu/IpGenPrefix.h"
#include "Pbr/Dscp.h"
#include "Pbr/PbrActionType.h"
#include "PolicyMap/MatchRule.h"

#include <cmath>

namespace {

using Vyx::RangeException;

template <class T> void expectEncoding(std::string const& hex, T const& value) {
  EXPECT_EQ(hex, encodingOf(value));
  EXPECT_EQ(value, valueOf<T>(hex));
}

TEST(ValueEncoding, Bool) {
  expectEncoding("00", false);
  expectEncoding("01", true);
  EXPECT_EQ("bool of value 2", refusal<Vyx::ProtocolException>([] { valueOf<bool>("02"); }));
}

TEST(ValueEncoding, Numbers) {
  expectEncoding<unsigned char>("fe", 0xfe);
  expectEncoding<unsigned short>("12 34", 0x1234);
  expectEncoding("12 34 56 78", 0x12345678U);
  expectEncoding("12 34 56 78 9a bc de f0", 0x123456789abcdef0ULL);
  expectEncoding<int>("ff ff fe 7d", -387);
}

TEST(ValueEncoding, DoublesAreTheirBits) {
  expectEncoding("3f f8 00 00 00 00 00 00", 1.5);
  expectEncoding("80 00 00 00 00 00 00 00", -0.0);
  EXPECT_EQ("7f f8 00 00 00 00 00 00", encodingOf(std::nan("")));
}

TEST(ValueEncoding, TextsHaveALengthAndMayHoldAnyByte) {
  expectEncoding("00 00 00 03 70 62 72", Vyx::String8("pbr"));
  expectEncoding("00 00 00 00", Vyx::Name());
  expectEncoding("00 00 00 03 61 00 ff", Vyx::Name(std::string_view("a\0\xff", 3)));
  EXPECT_EQ("text of 4 bytes in 3 bytes of message",
            refusal<Vyx::ProtocolException>([] { valueOf<Vyx::String8>("00 00 00 04 61 62 63"); }));
}

TEST(ValueEncoding, EntityAndTypeIds) {
  expectEncoding("80 00 00 00 00 00 00 05", EntityId(5, 0x80000000));
  expectEncoding("00 00 00 04 41 3a 3a 42", Vyx::TypeId("A::B"));
}

TEST(ValueEncoding, EnumerationsAreInts) {
  expectEncoding("00 00 00 03", Pbr::nexthopGroupAction);
  expectEncoding("00 00 00 02", Acl::mac);
  // Whoever knows the enumerators looks at the number.
  expectEncoding("00 00 00 63", static_cast<Pbr::PbrActionType>(99));
}

TEST(ValueEncoding, Identifiers) {
  expectEncoding("12 34 56 78 9a bc de f0", Kest::UniqueId(0x12345678, 0x9abc, 0xdef0));
  expectEncoding("ff ff ff ff ff ff ff ff", Kest::UniqueId());
  expectEncoding("00 00 00 01 00 02 00 03", Acl::UniqueId(1, 2, 3));
}

TEST(ValueEncoding, Addresses) {
  expectEncoding("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", Lomu::IpGenAddr());
  expectEncoding("00 00 00 04 0a 01 02 03 00 00 00 00 00 00 00 00 00 00 00 00", Lomu::IpGenAddr("10.1.2.3"));
  expectEncoding("00 00 00 06 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
                 Lomu::IpGenAddr("2001:db8::1"));
  expectEncoding("20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01", Lomu::IpGenAddr("2001:db8::1").address());
}

TEST(ValueEncoding, AddressesOfNoFamilyAreRefused) {
  EXPECT_EQ("IpGenAddr::family other than 0, 4 and 6 not allowed", refusal<RangeException>([] {
              valueOf<Lomu::IpGenAddr>("00 00 00 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
            }));
  EXPECT_EQ("IpGenAddr::bytes beyond the family's not allowed", refusal<RangeException>([] {
              valueOf<Lomu::IpGenAddr>("00 00 00 04 0a 01 02 03 00 00 00 00 00 00 00 00 00 00 00 01");
            }));
}

TEST(ValueEncoding, Prefixes) {
  expectEncoding("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", Lomu::IpGenPrefix());
  expectEncoding("00 00 00 04 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 08",
                 Lomu::IpGenPrefix("10.0.0.0/8"));
  EXPECT_THROW(valueOf<Lomu::IpGenPrefix>("00 00 00 04 0a 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 08"),
               RangeException);
  EXPECT_THROW(valueOf<Lomu::IpGenPrefix>("00 00 00 04 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 21"),
               RangeException);
}

TEST(ValueEncoding, BoundedTexts) {
  expectEncoding("00 00 00 04 76 72 66 31", L3::VrfName("vrf1"));
  expectEncoding("00 00 00 03 65 74 31", Lomu::IntfId("et1"));
  std::string const tooLong = encodingOf(Vyx::String8(std::string(101, 'x')));
  EXPECT_EQ("VrfName::bytes > 100 not allowed",
            refusal<RangeException>([&] { valueOf<L3::VrfName>(tooLong); }));
  EXPECT_EQ("IntfId::bytes > 100 not allowed",
            refusal<RangeException>([&] { valueOf<Lomu::IntfId>(tooLong); }));
}

TEST(ValueEncoding, CheckpointStatus) {
  expectEncoding("00 00 00 01 00 00 00 02", Acl::RuleCheckpointStatus(1, 2));
}

TEST(ValueEncoding, CodePointsAreReadUnchecked) {
  expectEncoding("2e", Pbr::Dscp(46));
  EXPECT_EQ(200, valueOf<Pbr::Dscp>("c8").value());
}

TEST(ValueEncoding, PortRanges) {
  expectEncoding("00 50 01 bb", PolicyMap::PortRange(80, 443));
  EXPECT_THROW(valueOf<PolicyMap::PortRange>("01 bb 00 50"), RangeException);
}

std::string const kAnyPrefix = " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";
std::string const kAnyPort = " 00 00 ff ff";

TEST(ValueEncoding, MatchRules) {
  PolicyMap::MatchRule rule;
  expectEncoding("00 00 00 00" + kAnyPrefix + kAnyPrefix + kAnyPort + kAnyPort + " 01 00 40", rule);
  rule.destinationIs("10.0.0.0/8");
  rule.destinationPortIs(PolicyMap::PortRange(80, 443));
  rule.protocolIs(6);
  rule.dscpIs(46);
  rule.aclIs("A"); // What doesn't go together is not the wire's business.
  expectEncoding("00 00 00 01 41" + kAnyPrefix +
                     " 00 00 00 04 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 08" + kAnyPort +
                     " 00 50 01 bb 00 06 2e",
                 rule);
}

TEST(ValueEncoding, MatchRulesAreReadAsTheirSettersTakeThem) {
  std::string const head = "00 00 00 00" + kAnyPrefix + kAnyPrefix + kAnyPort + kAnyPort;
  EXPECT_EQ("MatchRule::protocol > 256 not allowed",
            refusal<RangeException>([&] { valueOf<PolicyMap::MatchRule>(head + " 01 01 40"); }));
  EXPECT_EQ("MatchRule::dscp > 64 not allowed",
            refusal<RangeException>([&] { valueOf<PolicyMap::MatchRule>(head + " 01 00 41"); }));
}

// Every value, cut short at every byte.
template <class T> void expectNeedsEveryByte(T const& value) {
  Bytes const bytes = bytesOf(encodingOf(value));
  for (std::size_t size = 0; size < bytes.size(); ++size)
    EXPECT_THROW(valueOf<T>(hexOf(std::span(bytes).first(size))), Vyx::ProtocolException) << size;
}

TEST(ValueEncoding, NoValueIsReadFromLessThanItsBytes) {
  expectNeedsEveryByte(true);
  expectNeedsEveryByte(7U);
  expectNeedsEveryByte(7ULL);
  expectNeedsEveryByte(1.5);
  expectNeedsEveryByte(Vyx::String8("pbr"));
  expectNeedsEveryByte(EntityId(5, 0));
  expectNeedsEveryByte(Kest::UniqueId());
  expectNeedsEveryByte(Lomu::IpGenAddr("10.1.2.3"));
  expectNeedsEveryByte(Lomu::IpGenPrefix("10.0.0.0/8"));
  expectNeedsEveryByte(Acl::RuleCheckpointStatus(1, 2));
  expectNeedsEveryByte(Pbr::Dscp(46));
  expectNeedsEveryByte(PolicyMap::MatchRule());
}

TEST(ValueEncoding, FixedLengthsAreThoseOfTheHeader) {
  using Vyx::NboAttrLog::kFixedLength;
  EXPECT_EQ(1U, kFixedLength<bool>);
  EXPECT_EQ(4U, kFixedLength<unsigned>);
  EXPECT_EQ(8U, kFixedLength<unsigned long long>);
  EXPECT_EQ(0U, kFixedLength<int>);
  EXPECT_EQ(0U, kFixedLength<double>);
  EXPECT_EQ(0U, kFixedLength<Pbr::PbrActionType>);
  EXPECT_EQ(0U, kFixedLength<unsigned char>);
  EXPECT_EQ(0U, kFixedLength<Vyx::Name>);
  EXPECT_EQ(0U, kFixedLength<Kest::UniqueId>);
}

TEST(ValueEncoding, OperatorsChain) {
  Wire wire;
  wire.out->nextHeaderIs(variable(EntityId(1, 0), 2));
  wire.out << Out::kTransactBegin << Kest::UniqueId(1, 2, 3) << true << Vyx::Name("a") << Pbr::Dscp(1)
           << Out::kTransactEnd;
  EXPECT_EQ(20U + 8 + 1 + 5 + 1, wire.out->pendingBytes());
}

} // namespace
