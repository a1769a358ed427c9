// The values of the model that read themselves off the log.

#include "OneLog.h"

#include "Pbr/NexthopIndex.h"
#include "Pbr/NexthopSet.h"
#include "Vyx/NboAttrLog/ValueCodec.h"

namespace replication_test {
namespace {

constexpr char const* kAddress = "00000004 0a000001 00000000 00000000 00000000";
constexpr char const* kEndMark = "00000000 00000000 00000000 00000000 00000000";
Lomu::IpGenAddr const address("10.0.0.1");

class PolicyValueReading : public testing::Test {
protected:
  void payload(std::string const& hex) { log.message("0000000000000001 00000002 01" + hex); }
  Pbr::NexthopSet set() { return Pbr::NexthopSet(log.in.ptr(), Vyx::StreamBogon()); }

  LogEnd log;
};

TEST_F(PolicyValueReading, LaterEntryOfAnAddressOverwrites) {
  payload(std::string(kAddress) + "01" + kAddress + "00" + kEndMark + "00000002 00000003 726564");
  Pbr::NexthopSet const read = set();
  EXPECT_EQ(1U, read.nexthops());
  EXPECT_FALSE(read.nexthop(address));
  EXPECT_EQ(2U, read.recursive());
  EXPECT_EQ("red", read.vrfName().stringValue());
  EXPECT_EQ(0U, log.in->remaining());
}

TEST_F(PolicyValueReading, EntriesAreWrittenByAscendingAddressWhateverTheOrderOfTheirEntry) {
  Pbr::NexthopSet written(0, "");
  written.nexthopIs(Lomu::IpGenAddr("10.0.0.2"), false);
  written.nexthopIs(address, true);
  log.out->nextHeaderIs({Vyx::kOrphanEntityId, 2, true});
  log.out << Out::kTransactBegin << written << Out::kTransactEnd;
  Bytes const expected =
      frameOf(std::string("0000000000000001 00000002 01") + kAddress + "01" +
              "00000004 0a000002 00000000 00000000 00000000 00" + kEndMark + "00000000 00000000");
  EXPECT_EQ(hexOf(expected), hexOf(log.out->pending()));
}

// Such a set can't be sent; nothing keeps a writer from it.
TEST_F(PolicyValueReading, EntryOfTheDefaultAddressIsTakenForTheEndMark) {
  Pbr::NexthopSet written(0, "");
  written.nexthopIs(Lomu::IpGenAddr(), true);
  log.out->nextHeaderIs({Vyx::kOrphanEntityId, 2, true});
  log.out << Out::kTransactBegin << written << Out::kTransactEnd;
  log.receive(log.sent());
  ASSERT_TRUE(log.in->nextMessage());
  Pbr::NexthopSet const read = set();
  EXPECT_EQ(0U, read.nexthops());
  EXPECT_EQ(0x01000000U, read.recursive());
  EXPECT_NE(0U, log.in->remaining());
}

TEST_F(PolicyValueReading, NameOfMoreThanHundredBytesIsRefused) {
  std::string hundred;
  for (int i = 0; i < 100; ++i) hundred += "61";
  payload(std::string(kEndMark) + "00000000 00000064" + hundred);
  EXPECT_EQ(100U, set().vrfName().stringValue().length());
  payload(std::string(kEndMark) + "00000000 00000065 61" + hundred);
  EXPECT_EQ("VrfName::bytes > 100 not allowed", refusal<Vyx::RangeException>([&] { set(); }));
}

TEST_F(PolicyValueReading, SetThatIsCutShortIsRefused) {
  payload(std::string(kAddress) + "01");
  EXPECT_THROW(set(), Vyx::ProtocolException);
}

TEST_F(PolicyValueReading, CodePointIsReadUnchecked) {
  payload("c8");
  EXPECT_EQ(200, Pbr::Dscp(log.in.ptr(), Vyx::StreamBogon()).value());
}

TEST_F(PolicyValueReading, IndexIsAllItsEightBytes) {
  payload("0102030405060708");
  EXPECT_EQ(0x0102030405060708ULL, Pbr::NexthopIndex(log.in.ptr(), Vyx::StreamBogon()).value());
}

} // namespace
} // namespace replication_test
