#include "Lomu/Ip6Addr.h"

#include "Addresses.h"
#include "support/TextForms.h"

#include <arpa/inet.h>

#include <functional>
#include <set>

namespace {

using Lomu::Ip6Addr;

Ip6Addr ip6(char const* text) { return Vyx::strepToValue<Ip6Addr>(text); }

// An address of four words in host order.
Ip6Addr ofWords(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  unsigned char bytes[16];
  std::uint32_t const words[] = {a, b, c, d};
  for (unsigned i = 0; i < 16; ++i) bytes[i] = static_cast<unsigned char>(words[i / 4] >> (24 - i % 4 * 8));
  return Ip6Addr(bytes);
}

TEST(Ip6Addr, TextIsTheRecommendedOne) {
  for (char const* text : {"::", "::1", "1::", "2001:db8::1", "2001:db8:0:1:1:1:1:1", "2001:0:0:1::1",
                           "2001:db8::1:0:0:1", "1:2:3:4:5:6:7:8", "0:2:3:4:5:6:7:0", "::ffff:10.0.0.1",
                           "::1:2", "fe80::a:b:c:d", "1:2:3:4:5:6::", "ffff::ffff:0:1"})
    EXPECT_EQ(text, valueToStrep(ip6(text)));
  EXPECT_EQ("2001:db8::a", valueToStrep(ip6("2001:0DB8:0:0::000A")));
  EXPECT_EQ("1:0:0:2::", valueToStrep(ip6("1:0:0:2:0:0:0:0")));
  EXPECT_EQ("1::2:0:0:3:4", valueToStrep(ip6("1:0:0:2:0:0:3:4")));
  EXPECT_EQ("0:2:3:4:5:6:7:8", valueToStrep(ip6("::2:3:4:5:6:7:8")));
}

TEST(Ip6Addr, SaysWhyATextIsRefused) {
  auto const said = [](char const* text) { return refusal<Ip6Addr>(text); };
  EXPECT_EQ("Ip6Addr: \"1::2::3\": '::' stands twice", said("1::2::3"));
  EXPECT_EQ("Ip6Addr: \"1:2\": fewer than eight groups and no '::'", said("1:2"));
  EXPECT_EQ("Ip6Addr: \"1:2:3:4:5:6:7:8:9\": more than eight groups", said("1:2:3:4:5:6:7:8:9"));
  EXPECT_EQ("Ip6Addr: \"1:2:3:4::5:6:7:8\": '::' with eight groups", said("1:2:3:4::5:6:7:8"));
  EXPECT_EQ("Ip6Addr: \"::12345\": group 12345 has more than four digits", said("::12345"));
  EXPECT_EQ("Ip6Addr: \":1::\": a lone ':' at an end", said(":1::"));
  EXPECT_EQ("Ip6Addr: \"1::2:\": a lone ':' at an end", said("1::2:"));
  EXPECT_EQ("Ip6Addr: \":::\": a group of hexadecimal digits is missing", said(":::"));
  EXPECT_EQ("Ip6Addr: \"::1.2.3.256\": octet 256 is above 255", said("::1.2.3.256"));
  EXPECT_EQ("Ip6Addr: \"1:2:3:4:5:6:7:1.2.3.4\": more than eight groups", said("1:2:3:4:5:6:7:1.2.3.4"));
  EXPECT_EQ("junk at column 3 deserializing ::1%eth0", said("::1%eth0"));
}

TEST(Ip6Addr, TextAgreesWithTheSystemsWriter) {
  Random random;
  for (int i = 0; i < 20000; ++i) {
    Ip6Addr const address = randomIp6(random);
    // The system writes the low half of ::/96 as an IPv4 address, a form long withdrawn.
    if (address < ip6("::1:0:0")) continue;
    char text[INET6_ADDRSTRLEN];
    ASSERT_TRUE(inet_ntop(AF_INET6, address.bytes(), text, sizeof text));
    EXPECT_EQ(text, valueToStrep(address));
    expectReadsBack(address);
  }
}

TEST(Ip6Addr, ReaderAgreesWithTheSystemsReader) {
  Random random;
  int accepted = 0;
  for (int i = 0; i < 200000; ++i) {
    std::string text(Vyx::String8(valueToStrep(randomIp6(random))).view());
    for (std::uint32_t edits = random.below(4); edits > 0; --edits) {
      std::size_t const at = random.below(static_cast<std::uint32_t>(text.size() + 1));
      if (random.oneIn(2) && at < text.size())
        text.erase(at, 1);
      else
        text.insert(at, 1, ":::0012f."[random.below(9)]);
    }
    unsigned char bytes[16];
    bool const good = inet_pton(AF_INET6, text.c_str(), bytes) == 1;
    accepted += good;
    std::string const said = refusal<Ip6Addr>(text);
    ASSERT_EQ(good, said.starts_with("read as ")) << text << ": " << said;
    if (good) {
      ASSERT_EQ(Ip6Addr(bytes), ip6(text.c_str())) << text;
    }
  }
  EXPECT_GT(accepted, 1000);
}

TEST(Ip6Addr, HashIsTheSameOnEveryMachine) {
  EXPECT_EQ(0U, Ip6Addr().hash());
  EXPECT_EQ(0xbe41839eU, ip6("::1").hash());
  EXPECT_EQ(0x7eae879bU, ip6("2001:db8:1:2:3:4:5:6").hash());
}

// The number of different buckets among 4096 that as many addresses fall into; 2589 is to be expected of
// chance.
std::size_t bucketsUsed(std::function<Ip6Addr(std::uint32_t)> const& address) {
  std::set<std::uint32_t> used;
  for (std::uint32_t i = 0; i < 4096; ++i) used.insert(address(i).hash() % 4096);
  return used.size();
}

TEST(Ip6Addr, LowBitsOfTheHashSpreadEveryPlan) {
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x0a000000 + i, 0, 0, 0); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x0a000001 + (i << 8), 0, 0, 0); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x00000001 + (i << 20), 0, 0, 0); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x20010db8, 0, 0, i); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x20010db8, i, 0, 1); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x20010db8, i << 16, 0, 1); }), 2450U);
  EXPECT_GT(bucketsUsed([](std::uint32_t i) { return ofWords(0x20010db8, i / 64, i % 64, i % 64); }), 2450U);
  EXPECT_GT(
      bucketsUsed([](std::uint32_t i) { return ofWords(0xfe800000, 0, i << 8 | 0xff, 0xfe000000 + i); }),
      2450U);
}

TEST(Ip6Addr, AscendsByBytes) {
  expectAscends<Ip6Addr>({ip6("::"), ip6("::1"), ip6("::100"), ip6("::1:0:0:0"), ip6("0:0:0:8000::"),
                          ip6("1::"), ip6("1::ffff"), ip6("8000::")});
}

} // namespace
