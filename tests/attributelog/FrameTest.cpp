// Whole messages, byte by byte. The checksums were computed by another program.

#include "Wire.h"

#include "Kest/UniqueId.h"
#include "Lomu/IpGenAddr.h"

namespace {

using namespace Vyx::NboAttrLog;

template <class... Values> std::string frame(MsgHeader const& header, Values const&... values) {
  Wire wire;
  wire.write(header, values...);
  return hexOf(wire.out->pending());
}

TEST(Frame, OfABool) {
  EXPECT_EQ("00 00 0e "
            "80 00 00 00 00 00 00 05 "
            "00 00 01 84 "
            "02 "
            "01 "
            "f6 8a ac 5a",
            frame(scalarHeader<bool>(EntityId(5, 0x80000000), 388), true));
}

TEST(Frame, OfANumber) {
  EXPECT_EQ("00 00 11 "
            "00 00 00 00 00 00 00 03 "
            "00 00 01 04 "
            "04 "
            "00 00 00 07 "
            "f3 53 4d 5f",
            frame(scalarHeader<unsigned>(EntityId(3, 0), 260), 7U));
}

TEST(Frame, OfAWideNumber) {
  EXPECT_EQ("00 00 15 "
            "00 00 00 00 00 00 00 03 "
            "00 00 01 06 "
            "06 "
            "01 02 03 04 05 06 07 08 "
            "5c fc c1 60",
            frame(scalarHeader<unsigned long long>(EntityId(3, 0), 262), 0x0102030405060708ULL));
}

TEST(Frame, OfAKeyedValueAndItsRemoval) {
  Lomu::IpGenAddr const address("10.0.0.1");
  EXPECT_EQ("00 00 22 "
            "00 00 00 00 00 00 00 05 "
            "00 00 01 83 "
            "01 "
            "00 00 00 04 0a 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 "
            "01 "
            "a9 72 db 7d",
            frame(variable(EntityId(5, 0), 387), address, true));
  EXPECT_EQ("00 00 21 "
            "00 00 00 00 00 00 00 05 "
            "ff ff fe 7d "
            "01 "
            "00 00 00 04 0a 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 "
            "73 c2 dc c1",
            frame(variable(EntityId(5, 0), -387), address));
}

TEST(Frame, OfAChildAnnouncementAndTheRemovalOfASingleChild) {
  EXPECT_EQ("00 00 28 "
            "00 00 00 00 00 00 00 07 "
            "00 00 01 02 "
            "11 "
            "00 00 00 03 77 65 62 "
            "00 00 00 2a 00 00 00 01 "
            "00 00 00 02 "
            "00 00 00 00 00 00 00 09 "
            "b9 ee 1b 50",
            frame({EntityId(7, 0), 258, true, 0, kChildAnnouncement}, Vyx::String8("web"),
                  Kest::UniqueId(42, 0, 1), 2, EntityId(9, 0)));
  EXPECT_EQ("00 00 0d "
            "00 00 00 00 00 00 00 03 "
            "ff ff fe fe "
            "00 "
            "d0 b6 e3 8e",
            frame({EntityId(3, 0), -258}));
}

TEST(Frame, OfTheRuntimesOwnClasses) {
  EXPECT_EQ("00 00 0e "
            "00 00 00 00 00 00 00 05 "
            "00 00 01 83 "
            "21 "
            "02 "
            "40 d9 57 16",
            frame({EntityId(5, 0), 387, true, 0, kTransactionMarker}, static_cast<unsigned char>(2)));
  EXPECT_EQ("00 00 0f "
            "00 00 00 00 00 00 00 00 "
            "00 00 00 01 "
            "31 "
            "68 69 "
            "78 22 3e 53",
            frame({EntityId(), 1, true, 0, kControl}, static_cast<unsigned short>(0x6869)));
}

TEST(Frame, OfAnOrphanHasThreeSections) {
  Wire wire;
  wire.out->nextHeaderIs(variable(Vyx::kOrphanEntityId, Vyx::kNoParentAttributeId));
  wire.out << Out::kTransactBegin;
  wire.out->currentPayloadSectionIs(Out::kTypeNames);
  wire.out << Vyx::TypeId("Pbr::Config");
  wire.out->currentPayloadSectionIs(Out::kConstructorValues);
  wire.out << Vyx::Name("pbr");
  wire.out->currentPayloadSectionIs(Out::kEntityIdSection);
  wire.out << EntityId(3, 0x80000000) << Out::kTransactEnd;
  EXPECT_EQ("00 00 37 "
            "00 00 00 00 00 00 00 01 "
            "00 00 00 88 "
            "01 "
            "01 00 00 0f 00 00 00 0b 50 62 72 3a 3a 43 6f 6e 66 69 67 "
            "03 00 00 07 00 00 00 03 70 62 72 "
            "04 00 00 08 80 00 00 00 00 00 00 03 "
            "51 7d 76 15",
            hexOf(wire.out->pending()));
}

TEST(Frame, OfFixedSizeValuesIsTheSameInOneGo) {
  Wire wire;
  MsgHeader const header = variable(EntityId(5, 0), 387);
  Lomu::IpGenAddr const address("2001:db8::1");
  wire.write(header, address, true);
  Bytes const calls = wire.sent();
  wire.out->messageIs(header, address, true);
  EXPECT_EQ(hexOf(calls), hexOf(wire.out->pending()));
  wire.sent();
  EXPECT_EQ("payload of 1 bytes in a message of fixed length 4", refusal<Vyx::InternalException>([&] {
              wire.out->messageIs({EntityId(5, 0), 3, false, 4}, true);
            }));
  EXPECT_EQ(0U, wire.out->pendingBytes());
}

TEST(Frame, EveryFormStandsForOneHeader) {
  int forms = 0;
  for (unsigned form = 0; form < 256; ++form) {
    auto const byte = static_cast<std::uint8_t>(form);
    if (!isForm(byte)) continue;
    ++forms;
    MsgHeader const header{{}, 0, variableLengthOf(byte), fixedLengthOf(byte), messageClassOf(byte), 0};
    EXPECT_EQ(static_cast<int>(form), formOf(header));
  }
  EXPECT_EQ(20, forms);
}

TEST(Frame, HeadersWithoutAFormAreRefused) {
  Wire wire;
  for (MsgHeader const& header : {MsgHeader{{}, 1, false, 2}, MsgHeader{{}, 1, true, 4},
                                  MsgHeader{{}, 1, true, 0, 150}, MsgHeader{{}, 1, true, 0, 0, 1}})
    EXPECT_EQ("header has no form", refusal<Vyx::InternalException>([&] { wire.out->nextHeaderIs(header); }));
  wire.write(scalarHeader<bool>(EntityId(1, 0), 2), false);
  EXPECT_TRUE(wire.pass());
}

TEST(Frame, ReaderGetsTheHeaderBack) {
  for (MsgHeader const& header : {scalarHeader<bool>(EntityId(5, 0x80000001), -388),
                                  MsgHeader{EntityId(7, 0), 258, true, 0, kChildAnnouncement},
                                  MsgHeader{EntityId(7, 0), 258, true, 0, kTransactionMarker},
                                  MsgHeader{EntityId(), -1, true, 0, kControl}}) {
    Wire wire;
    wire.write(header, true);
    ASSERT_TRUE(wire.pass());
    EXPECT_EQ(header, wire.in->header());
    EXPECT_EQ(1U, wire.in->payloadBytes());
  }
}

} // namespace
