#include "Lomu/IpGenAddr.h"

#include "Addresses.h"
#include "Vyx/VyxType.h"
#include "support/TextForms.h"

#include <arpa/inet.h>

namespace {

using Lomu::Ip6Addr;
using Lomu::IpGenAddr;

TEST(IpGenAddr, DefaultIsNoAddressAndZeroBytes) {
  IpGenAddr const none;
  EXPECT_EQ(0U, none.family());
  EXPECT_EQ(Ip6Addr(), none.address());
  EXPECT_EQ("", none.stringValue());
  expectReadsBack(none);
}

TEST(IpGenAddr, Ip4StandsInTheFirstFourBytes) {
  IpGenAddr const address("10.1.2.3");
  unsigned char const expected[16] = {10, 1, 2, 3};
  EXPECT_EQ(4U, address.family());
  EXPECT_EQ(Ip6Addr(expected), address.address());
  EXPECT_EQ("10.1.2.3", address.stringValue());
}

TEST(IpGenAddr, MemoryIsTheFamilyWordThenTheBytes) {
  IpGenAddr const address("2001:db8::1");
  std::uint32_t family;
  std::memcpy(&family, &address, sizeof family);
  EXPECT_EQ(6U, family);
  EXPECT_EQ(reinterpret_cast<unsigned char const*>(&address) + 4, address.bytes());
}

TEST(IpGenAddr, EqualBytesOfTwoFamiliesShareAHashOnly) {
  IpGenAddr const four("32.1.13.184");
  IpGenAddr const six("2001:db8::");
  EXPECT_EQ(four.address(), six.address());
  EXPECT_EQ(four.hash(), six.hash());
  EXPECT_NE(four, six);
  EXPECT_LT(four, six);
}

TEST(IpGenAddr, AscendsByFamilyThenBytes) {
  expectAscends<IpGenAddr>(
      {{}, "0.0.0.0", "10.0.0.1", "10.0.0.2", "10.1.0.0", "255.0.0.0", "::", "::1", "a::"});
}

TEST(IpGenAddr, SaysWhyATextIsRefused) {
  EXPECT_EQ("IpGenAddr: \"10.0.0.300\": octet 300 is above 255", refusal<IpGenAddr>("10.0.0.300"));
  EXPECT_EQ("IpGenAddr: \"10.0.0.01\": octet 01 has a leading zero", refusal<IpGenAddr>("10.0.0.01"));
  EXPECT_EQ("IpGenAddr: \"10.0.0\": four octets with dots between are needed", refusal<IpGenAddr>("10.0.0"));
  EXPECT_EQ("IpGenAddr: \"10.0.0.1.2\": more stands behind the fourth octet",
            refusal<IpGenAddr>("10.0.0.1.2"));
  EXPECT_EQ("IpGenAddr: \"None\": four octets with dots between are needed", refusal<IpGenAddr>("None"));
  EXPECT_EQ("IpGenAddr: \"::1 \": a byte that no address has", rangeMessage([] { IpGenAddr("::1 "); }));
}

TEST(IpGenAddr, ConstructorTakesOneWholeAddress) {
  EXPECT_THROW(IpGenAddr(""), Vyx::RangeException);
  EXPECT_THROW(IpGenAddr(" 10.0.0.1"), Vyx::RangeException);
  EXPECT_THROW(IpGenAddr("10.0.0.1 "), Vyx::RangeException);
  EXPECT_THROW(IpGenAddr(Vyx::String8(std::string_view("10.0.0.1\0", 9))), Vyx::RangeException);
}

TEST(IpGenAddr, WordOfAListMayHaveOneBlankInFront) {
  EXPECT_EQ(IpGenAddr("10.0.0.1"), IpGenAddr::handleInitialized("10.0.0.1"));
  EXPECT_EQ(IpGenAddr("10.0.0.1"), IpGenAddr::handleInitialized(" 10.0.0.1"));
  for (char const* word : {"", " ", "  10.0.0.1", "10.0.0.1 ", "None"})
    EXPECT_THROW(IpGenAddr::handleInitialized(word), Vyx::RangeException) << word;
}

TEST(IpGenAddr, ReaderStopsBehindTheAddress) {
  Vyx::String8 const text("10.0.0.1, ::1");
  Vyx::StrepIterator8 at = text.begin();
  EXPECT_EQ(IpGenAddr("10.0.0.1"), Vyx::sequenceToValue<IpGenAddr>(at, text.end()));
  EXPECT_EQ(8U, at.position());
}

TEST(IpGenAddr, FamilyAndBytesMustAgree) {
  unsigned char bytes[16] = {10};
  EXPECT_EQ(IpGenAddr("10.0.0.0"), IpGenAddr(4, Ip6Addr(bytes)));
  EXPECT_EQ("IpGenAddr::family other than 0, 4 and 6 not allowed",
            rangeMessage([&] { IpGenAddr(5, Ip6Addr(bytes)); }));
  EXPECT_EQ("IpGenAddr::bytes beyond the family's not allowed",
            rangeMessage([&] { IpGenAddr(0, Ip6Addr(bytes)); }));
  bytes[15] = 1;
  EXPECT_EQ("IpGenAddr::bytes beyond the family's not allowed",
            rangeMessage([&] { IpGenAddr(4, Ip6Addr(bytes)); }));
}

TEST(IpGenAddr, RandomAddressesReadBack) {
  Random random;
  for (int i = 0; i < 5000; ++i) {
    IpGenAddr const address = randomAddress(random);
    expectReadsBack(address);
    EXPECT_EQ(address, IpGenAddr(address.stringValue()));
  }
}

TEST(IpGenAddr, Ip4AgreesWithTheSystemsReader) {
  Random random;
  int accepted = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text(IpGenAddr(4, randomIp4(random)).stringValue().view());
    if (random.oneIn(2))
      text[random.below(static_cast<std::uint32_t>(text.size()))] = "0129."[random.below(5)];
    unsigned char bytes[16] = {};
    bool const good = inet_pton(AF_INET, text.c_str(), bytes) == 1;
    accepted += good;
    std::string const said = refusal<IpGenAddr>(text);
    ASSERT_EQ(good, said.starts_with("read as ")) << text << ": " << said;
    if (good) {
      ASSERT_EQ(IpGenAddr(4, Ip6Addr(bytes)), IpGenAddr(text.c_str()));
    }
  }
  EXPECT_GT(accepted, 1000);
}

TEST(IpGenAddr, RecordTellsNameAndSize) {
  EXPECT_EQ("Lomu::IpGenAddr", IpGenAddr::_fwkType()->fullTypeName());
  EXPECT_EQ(20U, IpGenAddr::_fwkType()->size());
}

} // namespace
