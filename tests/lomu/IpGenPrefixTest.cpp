#include "Lomu/IpGenPrefix.h"

#include "Addresses.h"
#include "Vyx/VyxType.h"
#include "support/TextForms.h"

namespace {

using Lomu::Ip6Addr;
using Lomu::IpGenAddr;
using Lomu::IpGenPrefix;

TEST(IpGenPrefix, DefaultIsAny) {
  EXPECT_TRUE(IpGenPrefix().isAny());
  EXPECT_EQ("any", IpGenPrefix().stringValue());
  EXPECT_EQ(IpGenAddr(), IpGenPrefix().address());
  expectReadsBack(IpGenPrefix());
}

TEST(IpGenPrefix, WholeFamilyIsNotAny) {
  EXPECT_FALSE(IpGenPrefix("0.0.0.0/0").isAny());
  EXPECT_EQ("0.0.0.0/0", IpGenPrefix("0.0.0.0/0").stringValue());
  EXPECT_NE(IpGenPrefix("0.0.0.0/0"), IpGenPrefix("::/0"));
}

TEST(IpGenPrefix, AddressAloneIsItsHost) {
  EXPECT_EQ(IpGenPrefix("10.0.0.1/32"), IpGenPrefix("10.0.0.1"));
  EXPECT_EQ(IpGenPrefix("::1/128"), IpGenPrefix("::1"));
  EXPECT_EQ(IpGenAddr("::1"), IpGenPrefix("::1").address());
}

TEST(IpGenPrefix, SaysWhyATextIsRefused) {
  auto const said = [](char const* text) { return refusal<IpGenPrefix>(text); };
  EXPECT_EQ("IpGenPrefix: \"10.0.0.1/8\": bits are set beyond the first 8", said("10.0.0.1/8"));
  EXPECT_EQ("IpGenPrefix: \"10.0.0.0/33\": length 33 is above 32", said("10.0.0.0/33"));
  EXPECT_EQ("IpGenPrefix: \"::/129\": length 129 is above 128", said("::/129"));
  EXPECT_EQ("IpGenPrefix: \"10.0.0.0/08\": length 08 has a leading zero", said("10.0.0.0/08"));
  EXPECT_EQ("IpGenPrefix: \"10.0.0.0/\": the length behind '/' is no number", said("10.0.0.0/"));
  EXPECT_EQ("IpGenPrefix: \"10.0.0/8\": four octets with dots between are needed", said("10.0.0/8"));
  EXPECT_EQ("IpGenPrefix: \"\": four octets with dots between are needed", said(""));
  EXPECT_EQ("junk at column 10 deserializing 10.0.0.0/8/8", said("10.0.0.0/8/8"));
  EXPECT_EQ("junk at column 3 deserializing anyone", said("anyone"));
}

TEST(IpGenPrefix, ReasonsAreThoseOfThePrefix) {
  EXPECT_EQ("IpGenPrefix: \"10.0.0.0/+8\": the length behind '/' is no number",
            rangeMessage([] { IpGenPrefix("10.0.0.0/+8"); }));
  EXPECT_EQ("IpGenPrefix: \"10.128.0.0/8\": bits are set beyond the first 8",
            rangeMessage([] { IpGenPrefix(IpGenAddr("10.128.0.0"), 8); }));
  EXPECT_EQ("IpGenPrefix: \"10.0.0.0/264\": length 264 is above 32",
            rangeMessage([] { IpGenPrefix(IpGenAddr("10.0.0.0"), 264); }));
  EXPECT_EQ("IpGenPrefix: \"/1\": length 1 is above 0", rangeMessage([] { IpGenPrefix(IpGenAddr(), 1); }));
}

TEST(IpGenPrefix, EachLengthBoundsItsBits) {
  for (unsigned bit = 0; bit < 128; ++bit) {
    unsigned char bytes[16] = {};
    bytes[bit / 8] = static_cast<unsigned char>(0x80 >> bit % 8);
    IpGenAddr const address(6, Ip6Addr(bytes));
    EXPECT_THROW(IpGenPrefix(address, bit), Vyx::RangeException);
    EXPECT_EQ(bit + 1, IpGenPrefix(address, bit + 1).length());
  }
}

TEST(IpGenPrefix, AscendsByFamilyBytesLength) {
  expectAscends<IpGenPrefix>({{},
                              "0.0.0.0/0",
                              "0.0.0.0/8",
                              "10.0.0.0/8",
                              "10.0.0.0/16",
                              "10.1.0.0/16",
                              "128.0.0.0/1",
                              "::/0",
                              "::/128"});
}

TEST(IpGenPrefix, RandomPrefixesReadBack) {
  Random random;
  for (int i = 0; i < 5000; ++i) {
    IpGenAddr const address = randomAddress(random);
    unsigned const width = address.family() == 4 ? 32 : 128;
    unsigned const length = random.below(width + 1);
    unsigned char bytes[16] = {};
    for (unsigned bit = 0; bit < length; ++bit)
      bytes[bit / 8] |= address.bytes()[bit / 8] & (0x80 >> bit % 8);
    IpGenPrefix const prefix(IpGenAddr(address.family(), Ip6Addr(bytes)), length);
    expectReadsBack(prefix);
    EXPECT_EQ(length, prefix.length());
  }
}

TEST(IpGenPrefix, RecordTellsNameAndSize) {
  EXPECT_EQ("Lomu::IpGenPrefix", IpGenPrefix::_fwkType()->fullTypeName());
  EXPECT_EQ(18U, IpGenPrefix::_fwkType()->size());
}

} // namespace
