// What a newer writer puts around a message that it knows under several ids.

#include "Reading.h"

#include "Pbr/CheckpointAgentStatusSa.h"
#include "Pbr/CheckpointStatusSa.h"
#include "Pbr/ClassMapCheckpointStatusSa.h"
#include "Pbr/ConfigCopyHandlerDirSa.h"
#include "Pbr/ConfigCopyHandlerSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrAclCheckpointStatusSa.h"
#include "Pbr/PbrAclTypeCheckpointStatusSa.h"
#include "Pbr/PolicyMapCheckpointStatusSa.h"
#include "Pbr/PolicyMapCopyHandlerSa.h"
#include "Pbr/StatusSa.h"
#include "PolicyMap/ClassMapTypeConfigSa.h"

namespace replication_test {
namespace {

// The envelope: where its list ends, where the entity id stands, the ids, newest first; a word; the payload.

TEST_F(ContainerReading, EnvelopesFirstKnownIdCounts) {
  apply("00000090 11 0010 0000 00000999 00000102 00000103" // The list ends at 16.
        "00000000 00000003 776562" +
        std::string(kId) + kNexthop + kFive);
  EXPECT_TRUE(entity->fwdAction(id));
}

TEST_F(ContainerReading, EnvelopeSkipsConstructorValuesOfANewerWriter) {
  // 8 for the list, 4 for the word, 7 + 8 + 4 for the values, 5 that are new.
  apply("00000090 11 0008 0024 00000102 00000000 00000003 776562" + std::string(kId) + kNexthop +
        "aabbccddee" + kFive);
  EXPECT_EQ(kChild, log.adapter(entity->fwdAction(id))->entityId());
}

TEST_F(ContainerReading, EnvelopeOfARemovalHasNoWord) {
  apply(announced(kNexthop, kFive));
  apply("ffffff70 01 0008 0000 fffffefe" + std::string(kId));
  EXPECT_EQ(0U, entity->fwdActions());
}

TEST_F(ContainerReading, EnvelopeWithoutAKnownIdGoesToTheRuntime) {
  log.message(std::string(kHead) + "00000090 01 0008 0000 00000999 0000abcd 11");
  EXPECT_EQ("attribute 144 is unknown to Pbr::PbrActionContainer", refusal<Vyx::ProtocolException>([&] {
              adapter->handleAttrDeserialization(144, {}, 0, nullptr);
            }));
  EXPECT_EQ(12U, log.in->position());
  log.message(std::string(kHead) + "ffffff70 01 0008 0000 00000999 0000abcd 11");
  EXPECT_EQ("attribute -144 is unknown to Pbr::PbrActionContainer", refusal<Vyx::ProtocolException>([&] {
              adapter->handleAttrDeserialization(-144, {}, 0, nullptr);
            }));
  EXPECT_EQ(8U, log.in->position());
}

// Which types read one.

// Every id that the type's reader takes out of the list of an envelope.
template <class X> std::string known() {
  std::string text;
  for (Vyx::AttributeId aid = -1000; aid <= 1000; ++aid)
    if (X::VyxNboAttrLogSa::vyxKnowsInEnvelope(aid)) text += std::to_string(aid) + ' ';
  return text;
}

TEST(Envelope, KnowsTheChildrenOfEachTypeAndNothingElse) {
  EXPECT_EQ("-263 -262 -261 261 262 263 ", known<Pbr::Config>());
  EXPECT_EQ("-259 -258 258 259 ", known<Pbr::PbrActionContainer>());
  EXPECT_EQ("-260 260 ", known<Pbr::PbrClassMapStatus>());
  EXPECT_EQ("-386 -264 -259 259 264 386 ", known<Pbr::Status>());
  EXPECT_EQ("-259 259 ", known<Pbr::PbrAclTypeCheckpointStatus>());
  EXPECT_EQ("-260 260 ", known<Pbr::ClassMapCheckpointStatus>());
  EXPECT_EQ("-258 258 ", known<Pbr::PolicyMapCheckpointStatus>());
  EXPECT_EQ("-258 258 ", known<Pbr::CheckpointAgentStatus>());
  EXPECT_EQ("-258 258 ", known<Pbr::CheckpointStatus>());
  EXPECT_EQ("-258 258 ", known<Pbr::ConfigCopyHandlerDir>());
  EXPECT_EQ("-391 -387 387 391 ", known<Pbr::ConfigCopyHandler>());
  EXPECT_EQ("-514 -391 -387 387 391 514 ", known<Pbr::PolicyMapCopyHandler>());
}

// How far the reader has come when it refuses an envelope.
template <class X> std::size_t readOfEnvelope(Ptr<X> const& entity) {
  LogEnd log{Demuxer::connecting};
  auto const adapter = log.joinAs(entity, kMe);
  log.message(std::string(kHead) + "00000090 01 0008 0000 00000184 00000000 01");
  EXPECT_THROW(adapter->handleAttrDeserialization(144, {}, 0, nullptr), Vyx::ProtocolException);
  return log.in->position();
}

TEST(Envelope, OfATypeWithoutChildrenIsNotRead) {
  EXPECT_EQ(0U, readOfEnvelope(Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction)));
  EXPECT_EQ(0U, readOfEnvelope(Pbr::pbrActionSetDscpFactory("web", id, Pbr::Dscp(1))));
  EXPECT_EQ(0U, readOfEnvelope(Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet())));
  EXPECT_EQ(0U, readOfEnvelope(Vyx::ptrFromNew(new Pbr::PbrAclCheckpointStatus("in"))));
  EXPECT_EQ(12U, readOfEnvelope(Pbr::statusFactory("pbr")));
}

TEST_F(ContainerReading, EnvelopesWordDependsOnTheIdFoundNotOnItsOwn) {
  apply("ffffff70 11 0008 0000 00000102 00000000 00000003 776562" + std::string(kId) + kNexthop + kFive);
  EXPECT_EQ(1U, entity->fwdActions());
  apply("00000090 01 0008 0000 fffffefe" + std::string(kId));
  EXPECT_EQ(0U, entity->fwdActions());
}

TEST_F(ContainerReading, EnvelopeIsDrainedToItsEnd) {
  drain("00000090 11 0008 0024 00000102 00000000 00000003 776562" + std::string(kId) + kNexthop +
        "aabbccddee" + kFive);
  EXPECT_EQ(0U, entity->fwdActions());
  EXPECT_EQ("-258", log.told());
}

TEST_F(ContainerReading, ReadOnlyProxyRefusesAnEnvelopeUnread) {
  adapter->flagIs(StreamAdapter::readOnlyProxyFlag, true);
  log.message(std::string(kHead) + "00000090 11 0008 0000 00000102 00000000" + kId);
  EXPECT_EQ("write-update from readonly proxy: Pbr", refusal<Vyx::InternalException>([&] {
              adapter->handleAttrDeserialization(144, {}, 0, nullptr);
            }));
  EXPECT_EQ(0U, log.in->position());
}

// 8 for the list, 4 for the word, 7 for the name, 2 that are new.
TEST_F(ConfigReading, EnvelopeSkipsNewConstructorValuesOfASingleChild) {
  apply("00000090 11 0008 0015 00000106 00000000 00000003 506272 aabb 8000000000000005");
  EXPECT_EQ(kChild, log.adapter(entity->cmapType())->entityId());
}

} // namespace
} // namespace replication_test
