#include "LinkFixture.h"

#include <cstring>

namespace attributelog {
namespace {

std::string hex(std::span<unsigned char const> bytes) {
  std::string text;
  char digits[4];
  for (unsigned char const byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x ", byte);
    text += digits;
  }
  return text;
}

TEST(HelloTest, HasTheseBytes) {
  EXPECT_EQ("56 79 78 4c 6f 67 0d 0a " // magic
            "00 01 00 00 "             // version
            "80 00 00 05 ",            // features
            hex(helloBytes(kVersion, 0x80000005)));
}

TEST(HelloTest, ReadsBack) {
  Hello const read = Hello::fromBytes(helloBytes({3, 0x1234}, 0xcafe1234));
  EXPECT_EQ("3.4660", read.version.text());
  EXPECT_EQ(0xcafe1234U, read.features);
}

TEST(HelloTest, EachWrongByteOfTheMagicIsSeenAtOnce) {
  for (std::size_t i = 0; i < 8; ++i) {
    Bytes bytes = helloBytes();
    bytes.resize(i + 1);
    EXPECT_EQ("", Hello::refusal(bytes));
    bytes[i] ^= 0x20;
    EXPECT_NE("", Hello::refusal(bytes)) << i;
  }
}

TEST(ByeTest, HasTheseBytes) {
  EXPECT_EQ("00 00 1d "                                        // length
            "00 00 00 00 00 00 00 00 "                         // entity id
            "00 00 00 01 "                                     // code
            "31 "                                              // variable length, control
            "00 00 00 0c 6e 6f 20 73 75 63 68 20 70 61 74 68 " // "no such path"
            "5b 1e 18 71 ",                                    // checksum
            hex(byeBytes("no such path")));
}

} // namespace
} // namespace attributelog
