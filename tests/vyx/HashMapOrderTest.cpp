// Walks are part of the behaviour: peers and checkpoints see them. A failure here means that a hash, or the
// order that follows from it, has changed.

#include "Kest/UniqueId.h"
#include "Lomu/IpGenAddr.h"
#include "Vyx/BitReverse.h"
#include "support/Random.h"
#include "support/Records.h"
#include "support/Walks.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Kest::UniqueId;
using Lomu::IpGenAddr;
using Vyx::Name;

template <class K> std::string walk(std::vector<K> const& keys) {
  HashOf<K> map;
  for (K const& key : keys) enter(map, key);
  return keysOf(map);
}

// The same, by sorting: no table, no chain, and bits reversed one by one.
template <class K> std::string sorted(std::vector<K> keys) {
  std::sort(keys.begin(), keys.end(), TableOrder());
  std::ostringstream text;
  for (std::size_t i = 0; i < keys.size(); ++i) text << (i ? " " : "") << keys[i];
  return text.str();
}

template <class K> void expectWalk(std::string const& golden, std::vector<K> keys) {
  EXPECT_EQ(golden, sorted(keys));
  EXPECT_EQ(golden, walk(keys));
  std::reverse(keys.begin(), keys.end());
  EXPECT_EQ(golden, walk(keys));
}

TEST(HashMapOrder, UniqueIdHashes) {
  EXPECT_EQ(0U, UniqueId().hash());
  EXPECT_EQ(0x00010000U, UniqueId(1, 1, 1).hash());
  EXPECT_EQ(0x12345678U ^ 0x9abc0000U ^ 0xdef0U, UniqueId(0x12345678, 0x9abc, 0xdef0).hash());
}

TEST(HashMapOrder, UniqueIds) {
  expectWalk<UniqueId>("00000000-0000-0000 ffffffff-ffff-ffff 80000000-0000-0000 00000000-0001-0000 "
                       "00000001-0001-0001 00010000-0000-0000 00000010-0000-0000 12345678-9abc-def0 "
                       "00000002-0000-0000 00000000-0000-0001 00000001-0000-0000 00000004-0000-0001 "
                       "00000005-0000-0000 00000003-0000-0000",
                       {{1, 0, 0},
                        {2, 0, 0},
                        {3, 0, 0},
                        {0x10, 0, 0},
                        {0, 0, 1},
                        {0, 1, 0},
                        {0, 0, 0},
                        {0x10000, 0, 0},
                        {1, 1, 1},
                        {},
                        {0x12345678, 0x9abc, 0xdef0},
                        {0x80000000U, 0, 0},
                        {5, 0, 0},
                        {4, 0, 1}});
}

TEST(HashMapOrder, NameHashes) {
  EXPECT_EQ(0U, Name().hash());
  EXPECT_EQ(0x579640c7U, Name("a").hash());
  EXPECT_EQ(0xd33fd8a5U, Name("pbr").hash());
  EXPECT_EQ(0x19b86472U, Name("default").hash());
}

TEST(HashMapOrder, Names) {
  expectWalk<Name>("mgmt core transit voice default video edge guest green blue backup red",
                   {"default", "guest", "voice", "video", "mgmt", "backup", "red", "blue", "green", "transit",
                    "edge", "core"});
}

TEST(HashMapOrder, AddressHashes) {
  EXPECT_EQ(0U, IpGenAddr().hash());
  EXPECT_EQ(0xb6d95f3eU, IpGenAddr("10.0.0.1").hash());
  EXPECT_EQ(0xb6d95f3eU, IpGenAddr("a00:1::").hash());
  EXPECT_EQ(0xc263db20U, IpGenAddr("2001:db8::1").hash());
  EXPECT_EQ(0xbe41839eU, IpGenAddr("::1").hash());
}

TEST(HashMapOrder, Addresses) {
  expectWalk<IpGenAddr>(":: 10.0.1.1 2001:db8::1 172.16.5.9 192.168.0.1 255.255.255.255 ::1 10.0.0.1 a00:1:: "
                        "10.0.0.2 10.0.0.3 2001:db8::2 fe80::1",
                        {"10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.1.1", "192.168.0.1", "172.16.5.9",
                         "255.255.255.255", "2001:db8::1", "2001:db8::2", "fe80::1", "a00:1::", "::1", "::"});
}

TEST(HashMapOrder, SignedNumbersTieByValueAndHashByBits) {
  EXPECT_EQ(0xffffffffU, Vyx::keyHash(-1));
  expectWalk<int>("0 2 -2 1 -1", {-2, -1, 0, 1, 2});
}

TEST(HashMapOrder, HowATableGrewDoesNotShow) {
  HashOf<unsigned> grown, small;
  for (unsigned key = 0; key < 5000; ++key) enter(grown, key);
  for (unsigned key = 0; key < 5000; ++key)
    if (key % 1000 != 7) grown._memberDel(key);
  for (unsigned key : {4007U, 7U, 3007U, 2007U, 1007U}) enter(small, key);
  EXPECT_LT(1000U, grown.buckets());
  EXPECT_EQ(8U, small.buckets());
  EXPECT_EQ(keysOf(small), keysOf(grown));
}

TEST(HashMapOrder, HashesCompareAsTheirReversesDo) {
  Random random;
  for (int i = 0; i < 1000; ++i) {
    std::uint32_t const a = random.bits(), b = random.oneIn(4) ? a ^ 1U << random.below(32) : random.bits();
    EXPECT_EQ(reversedBits(a) < reversedBits(b), Vyx::reverseLess(a, b)) << a << " " << b;
    EXPECT_FALSE(Vyx::reverseLess(a, a));
    EXPECT_EQ(reversedBits(a) >> 29, Vyx::bitReverse3(a));
  }
}

TEST(HashMapOrder, ReversalIsBitByBit) {
  for (std::uint32_t word : {0U, 1U, 2U, 0x80000000U, 0x12345678U, 0xdeadbeefU, 0xffffffffU})
    EXPECT_EQ(reversedBits(word), Vyx::bitReverse(word));
  EXPECT_EQ(0x80000000U, Vyx::bitReverse(1));
  EXPECT_EQ(0xf77db57bU, Vyx::bitReverse(0xdeadbeefU));
}

} // namespace
