#include "PolicyMap/PortRange.h"

#include "support/Random.h"
#include "support/TextForms.h"

namespace {

using PolicyMap::PortRange;

TEST(PortRange, DefaultIsEveryPort) {
  EXPECT_EQ(PortRange(0, 65535), PortRange());
  EXPECT_EQ("any", valueToStrep(PortRange()));
  EXPECT_EQ(PortRange(), Vyx::strepToValue<PortRange>("0-65535"));
}

TEST(PortRange, OnePortIsWrittenOnce) {
  EXPECT_EQ("80", valueToStrep(PortRange(80, 80)));
  EXPECT_EQ("80-443", printed(PortRange(80, 443)));
  EXPECT_EQ(PortRange(80, 80), Vyx::strepToValue<PortRange>("80-80"));
}

TEST(PortRange, SaysWhyATextIsRefused) {
  auto const said = [](char const* text) { return refusal<PortRange>(text); };
  EXPECT_EQ("PortRange: \"443-80\": the low end is above the high end", said("443-80"));
  EXPECT_EQ("PortRange: \"65536\": port 65536 is above 65535", said("65536"));
  EXPECT_EQ("PortRange: \"1-070\": port 070 has a leading zero", said("1-070"));
  EXPECT_EQ("PortRange: \"80-\": a port is missing", said("80-"));
  EXPECT_EQ("PortRange: \"-80\": a port is missing", said("-80"));
  EXPECT_EQ("PortRange: \"\": a port is missing", said(""));
  EXPECT_EQ("junk at column 4 deserializing 1-80-90", said("1-80-90"));
}

TEST(PortRange, AscendsByLowThenHigh) {
  expectAscends<PortRange>({{0, 0}, {0, 65535}, {1, 1}, {80, 80}, {80, 443}, {65535, 65535}});
}

TEST(PortRange, RandomRangesReadBack) {
  Random random;
  for (int i = 0; i < 2000; ++i) {
    auto const low = static_cast<std::uint16_t>(random.bits());
    auto const high = static_cast<std::uint16_t>(low + random.below(65536U - low));
    expectReadsBack(PortRange(low, high));
  }
}

} // namespace
