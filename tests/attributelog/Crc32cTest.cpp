#include "Vyx/NboAttrLog/Crc32c.h"

#include "support/Random.h"

#include <numeric>
#include <vector>

namespace {

using Vyx::NboAttrLog::Crc32c;

std::uint32_t checksum(std::vector<unsigned char> const& bytes) {
  return Crc32c::of(bytes.data(), bytes.size());
}

TEST(Crc32c, HasTheKnownValues) {
  std::vector<unsigned char> ascending(32);
  std::iota(ascending.begin(), ascending.end(), static_cast<unsigned char>(0));
  EXPECT_EQ(0U, Crc32c::of("", 0));
  EXPECT_EQ(0xe3069283U, Crc32c::of("123456789", 9));
  EXPECT_EQ(0x8a9136aaU, checksum(std::vector<unsigned char>(32, 0)));
  EXPECT_EQ(0x62a8ab43U, checksum(std::vector<unsigned char>(32, 0xff)));
  EXPECT_EQ(0x46dd794eU, checksum(ascending));
}

TEST(Crc32c, TablesHaveTheKnownValuesToo) {
  auto const* text = reinterpret_cast<unsigned char const*>("123456789");
  EXPECT_EQ(0xe3069283U, ~Crc32c::byTables(~0U, text, 9));
}

TEST(Crc32c, AllRoadsAgreeAtEveryLengthAndPlace) {
  Random random;
  std::vector<unsigned char> bytes(400);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random.bits());
  for (std::size_t place = 0; place < 8; ++place)
    for (std::size_t size = 1; size + place + Crc32c::kSlack <= bytes.size(); ++size) {
      unsigned char const* const at = bytes.data() + place;
      std::uint32_t const tables = ~Crc32c::byTables(~0U, at, size);
      ASSERT_EQ(tables, Crc32c::of(at, size)) << place << ' ' << size;
      ASSERT_EQ(tables, Crc32c::ofSlack(at, size)) << place << ' ' << size;
    }
}

TEST(Crc32c, KnownLengthsAgreeWithTheOthers) {
  auto const* text = reinterpret_cast<unsigned char const*>("0123456789abcdefghijklmnopqrstuvwxyz+");
  EXPECT_EQ(Crc32c::of(text, 16), Crc32c::of<16>(text));
  EXPECT_EQ(Crc32c::of(text, 17), Crc32c::of<17>(text));
  EXPECT_EQ(Crc32c::of(text, 20), Crc32c::of<20>(text));
  EXPECT_EQ(Crc32c::of(text, 37), Crc32c::of<37>(text));
}

TEST(Crc32c, IsTakenUpWhereItWasLeft) {
  auto const* text = reinterpret_cast<unsigned char const*>("123456789");
  EXPECT_EQ(0xe3069283U, ~Crc32c::extend(Crc32c::extend(~0U, text, 5), text + 5, 4));
  EXPECT_EQ(0xe3069283U, ~Crc32c::byTables(Crc32c::byTables(~0U, text, 5), text + 5, 4));
}

} // namespace
