// The worked example of docs/attribute-log.md is read, and written again.

#include "Wire.h"

#include "Lomu/IpGenAddr.h"

#include <fstream>
#include <sstream>

namespace {

using namespace Vyx::NboAttrLog;

// The bytes of the blocks that are marked as hex; what stands behind two blanks in a line is told to the
// reader.
std::string hexOfDocument() {
  std::ifstream file(PBR_SOURCE_DIR "/docs/attribute-log.md");
  std::string hex;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```"))
      inside = line == "```hex";
    else if (inside)
      hex += line.substr(0, line.find("  ")) + ' ';
  }
  return hex;
}

TEST(Document, ExampleReadsAsItSays) {
  Wire wire;
  wire.receive(bytesOf(hexOfDocument()));
  In& in = *wire.in;
  ASSERT_TRUE(in.nextMessage());
  EXPECT_EQ(variable(Vyx::kOrphanEntityId, Vyx::kNoParentAttributeId), in.header());
  in.sectionIs(Out::kTypeNames);
  EXPECT_EQ("Pbr::Config", in.nextString());
  in.sectionEnd();
  in.sectionIs(Out::kConstructorValues);
  EXPECT_EQ("pbr", in.nextString());
  in.sectionEnd();
  in.sectionIs(Out::kEntityIdSection);
  EXPECT_EQ(EntityId(3, 0x80000000), in.nextEntityId());
  in.sectionEnd();
  in.expectEnd();
  ASSERT_TRUE(in.nextMessage());
  EXPECT_EQ(scalarHeader<bool>(EntityId(3, 0x80000000), 259), in.header());
  EXPECT_TRUE(in.nextbool());
  ASSERT_TRUE(in.nextMessage());
  EXPECT_EQ(variable(EntityId(7, 0x80000000), -387), in.header());
  EXPECT_EQ(Lomu::IpGenAddr("10.0.0.1"), Lomu::IpGenAddr(&in, Vyx::StreamBogon()));
  in.expectEnd();
  EXPECT_FALSE(in.nextMessage());
  EXPECT_EQ(0U, in.waiting());
}

TEST(Document, ExampleIsWrittenAgain) {
  Wire wire;
  wire.out->nextHeaderIs(variable(Vyx::kOrphanEntityId, Vyx::kNoParentAttributeId));
  wire.out << Out::kTransactBegin;
  wire.out->currentPayloadSectionIs(Out::kTypeNames);
  wire.out << Vyx::TypeId("Pbr::Config");
  wire.out->currentPayloadSectionIs(Out::kConstructorValues);
  wire.out << Vyx::Name("pbr");
  wire.out->currentPayloadSectionIs(Out::kEntityIdSection);
  wire.out << EntityId(3, 0x80000000) << Out::kTransactEnd;
  wire.write(scalarHeader<bool>(EntityId(3, 0x80000000), 259), true);
  wire.write(variable(EntityId(7, 0x80000000), -387), Lomu::IpGenAddr("10.0.0.1"));
  EXPECT_EQ(hexOf(bytesOf(hexOfDocument())), hexOf(wire.out->pending()));
}

} // namespace
