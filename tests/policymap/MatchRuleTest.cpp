#include "PolicyMap/MatchRule.h"

#include "Vyx/VyxType.h"
#include "support/Random.h"
#include "support/TextForms.h"

namespace {

using PolicyMap::MatchRule;
using PolicyMap::PortRange;

MatchRule rule(char const* text) { return Vyx::strepToValue<MatchRule>(text); }
std::string said(char const* text) { return refusal<MatchRule>(text); }

TEST(MatchRule, DefaultMeetsEveryPacket) {
  EXPECT_EQ("ip any any", valueToStrep(MatchRule()));
  EXPECT_TRUE(MatchRule().valid());
  expectReadsBack(MatchRule());
}

TEST(MatchRule, ReadsEveryCriterion) {
  MatchRule const r =
      rule("ip 10.0.0.0/8 192.0.2.1/32 protocol tcp source-port 1024-65535 destination-port 80 dscp ef");
  EXPECT_EQ(Lomu::IpGenPrefix("10.0.0.0/8"), r.source());
  EXPECT_EQ(Lomu::IpGenPrefix("192.0.2.1"), r.destination());
  EXPECT_EQ(6U, r.protocol());
  EXPECT_EQ(PortRange(1024, 65535), r.sourcePort());
  EXPECT_EQ(PortRange(80, 80), r.destinationPort());
  EXPECT_EQ(46U, r.dscp());
  EXPECT_TRUE(r.acl().empty());
  expectReadsBack(r);
}

TEST(MatchRule, ReadsTheNameOfAnAcl) {
  EXPECT_EQ("web-in", rule("access-list web-in").acl());
  EXPECT_EQ("access-list web-in", printed(rule("access-list web-in")));
}

TEST(MatchRule, OptionsStandInAnyOrderAndAreWrittenInOne) {
  EXPECT_EQ("ip any any protocol udp destination-port 53 dscp 1",
            valueToStrep(rule("ip any  any dscp 1 destination-port 53 protocol 17")));
}

TEST(MatchRule, NamesOfProtocolsAndCodePoints) {
  for (char const* text :
       {"icmp", "igmp", "tcp", "udp", "gre", "esp", "ah", "icmpv6", "ospf", "pim", "sctp", "0", "255"})
    EXPECT_EQ("ip any any protocol " + std::string(text),
              valueToStrep(rule(("ip any any protocol " + std::string(text)).c_str())));
  for (unsigned x = 1; x <= 4; ++x)
    for (unsigned y = 1; y <= 3; ++y)
      EXPECT_EQ(8 * x + 2 * y, rule(Vyx::format("ip any any dscp af%u%u", x, y).charPtr()).dscp());
  for (unsigned x = 0; x <= 7; ++x)
    EXPECT_EQ(8 * x, rule(Vyx::format("ip any any dscp cs%u", x).charPtr()).dscp());
  EXPECT_EQ("ip any any dscp default", valueToStrep(rule("ip any any dscp cs0")));
}

TEST(MatchRule, EveryProtocolAndCodePointReadsBack) {
  MatchRule r;
  for (unsigned protocol = 0; protocol <= MatchRule::kAnyProtocol; ++protocol) {
    r.protocolIs(protocol);
    expectReadsBack(r);
  }
  for (unsigned dscp = 0; dscp <= MatchRule::kAnyDscp; ++dscp) {
    r.dscpIs(dscp);
    expectReadsBack(r);
  }
}

TEST(MatchRule, NumbersBeyondAnyAreRefused) {
  MatchRule r;
  EXPECT_EQ("MatchRule::protocol > 256 not allowed", rangeMessage([&] { r.protocolIs(257); }));
  EXPECT_EQ("MatchRule::dscp > 64 not allowed", rangeMessage([&] { r.dscpIs(65); }));
  EXPECT_EQ(MatchRule(), r);
}

TEST(MatchRule, SaysWhyAWordIsRefused) {
  EXPECT_EQ("protocol: \"256\": 256 is above 255", said("ip any any protocol 256"));
  EXPECT_EQ("protocol: \"TCP\": neither a number nor a name that is known", said("ip any any protocol TCP"));
  EXPECT_EQ("dscp: \"64\": 64 is above 63", said("ip any any dscp 64"));
  EXPECT_EQ("dscp: \"af14\": neither a number nor a name that is known", said("ip any any dscp af14"));
  EXPECT_EQ("source: IpGenPrefix: \"10.0.0.1/8\": bits are set beyond the first 8",
            said("ip 10.0.0.1/8 any"));
  EXPECT_EQ("destination-port: PortRange: \"2-1\": the low end is above the high end",
            said("ip any any protocol tcp destination-port 2-1"));
  EXPECT_EQ("source-port: junk at column 2 deserializing 80x",
            said("ip any any protocol tcp source-port 80x"));
}

TEST(MatchRule, SaysWhatIsMissingOrTwice) {
  EXPECT_EQ("MatchRule: \"\": neither 'ip' nor 'access-list'", said(""));
  EXPECT_EQ("MatchRule: \" ip\": neither 'ip' nor 'access-list'", said(" ip any any"));
  EXPECT_EQ("MatchRule: \"ip any\": what belongs behind the source is missing", said("ip any"));
  EXPECT_EQ("MatchRule: \"access-list \": what belongs behind access-list is missing", said("access-list "));
  EXPECT_EQ("MatchRule: \"ip any any dscp\": what belongs behind dscp is missing", said("ip any any dscp"));
  EXPECT_EQ("MatchRule: \"ip any any dscp 1 dscp\": dscp stands twice", said("ip any any dscp 1 dscp 2"));
}

TEST(MatchRule, StopsBeforeAWordItDoesNotKnow) {
  EXPECT_EQ("junk at column 10 deserializing ip any any log", said("ip any any log"));
  EXPECT_EQ("junk at column 10 deserializing ip any any ", said("ip any any "));
  EXPECT_EQ("junk at column 13 deserializing access-list a b", said("access-list a b"));
}

TEST(MatchRule, BothPrefixesAreOfOneFamily) {
  EXPECT_EQ("MatchRule: \"ip 10.0.0.0/8 ::/0\": source and destination are of two families",
            said("ip 10.0.0.0/8 ::/0"));
  EXPECT_TRUE(rule("ip any ::/0").valid());
  EXPECT_TRUE(rule("ip ::1 ::/0").valid());
}

TEST(MatchRule, PortsNeedAProtocolThatHasThem) {
  EXPECT_EQ("MatchRule: \"ip any any source-port 80\": ports need protocol tcp, udp or sctp",
            said("ip any any source-port 80"));
  EXPECT_EQ(
      "MatchRule: \"ip any any protocol icmp destination-port 80\": ports need protocol tcp, udp or sctp",
      said("ip any any protocol icmp destination-port 80"));
  EXPECT_EQ("ip any any", valueToStrep(rule("ip any any source-port any")));
}

TEST(MatchRule, NameOfAnAclExcludesCriteria) {
  MatchRule r;
  r.aclIs("web");
  EXPECT_TRUE(r.valid());
  r.dscpIs(46);
  EXPECT_EQ("a rule is either the name of an ACL or criteria", r.fault());
  EXPECT_EQ("access-list web ip any any dscp ef", valueToStrep(r));
}

TEST(MatchRule, NameOfAnAclIsOneWord) {
  MatchRule r;
  for (char const* name : {"two words", "tab\tbed", "line\nend", " "}) {
    r.aclIs(name);
    EXPECT_EQ("the name of an ACL is one word", r.fault()) << name;
  }
}

TEST(MatchRule, EqualOnlyWithEveryCriterion) {
  expectAscends<MatchRule>({rule("ip any any protocol tcp dscp 1"), rule("ip any any protocol tcp dscp 2"),
                            rule("ip any any protocol udp"), rule("ip any any"),
                            rule("ip any any protocol tcp destination-port 1"), rule("ip any 10.0.0.0/8"),
                            rule("ip 10.0.0.0/8 any"), rule("access-list a"), rule("access-list b")});
}

PortRange randomPorts(Random& random) {
  if (random.oneIn(3)) return {};
  auto const low = static_cast<std::uint16_t>(random.below(60000));
  return PortRange(low, static_cast<std::uint16_t>(low + random.below(3)));
}

TEST(MatchRule, RandomRulesReadBackExactlyWhenValid) {
  Random random;
  char const* const prefixes[] = {"any", "10.0.0.0/8", "192.0.2.7", "0.0.0.0/0", "2001:db8::/32", "::1"};
  int valid = 0;
  for (int i = 0; i < 5000; ++i) {
    MatchRule r;
    r.sourceIs(prefixes[random.below(6)]);
    r.destinationIs(prefixes[random.below(6)]);
    r.protocolIs(random.oneIn(2) ? 6 : random.below(257));
    r.sourcePortIs(randomPorts(random));
    r.destinationPortIs(randomPorts(random));
    r.dscpIs(random.below(65));
    valid += r.valid();
    if (r.valid())
      expectReadsBack(r);
    else
      EXPECT_THROW(Vyx::strepToValue<MatchRule>(valueToStrep(r)), Vyx::RangeException);
  }
  EXPECT_GT(valid, 1000);
  EXPECT_LT(valid, 5000);
}

TEST(MatchRule, RecordTellsItsName) {
  EXPECT_EQ("PolicyMap::MatchRule", MatchRule::_fwkType()->fullTypeName());
}

} // namespace
