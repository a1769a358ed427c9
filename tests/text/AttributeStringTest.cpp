// The names of attributes by their ids, in every entity of the library.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Vyx/VyxType.h"
#include "support/TextForms.h"

namespace {

using Kest::UniqueId;

// The names from `first` on until an id is unknown.
std::string namesFrom(Vyx::Entity const& entity, Vyx::AttributeId first) {
  std::string names;
  for (Vyx::AttributeId id = first; entity.attributeString(id) != Vyx::String8("unknown"); ++id)
    names += (names.empty() ? "" : " ") + std::string(entity.attributeString(id).view());
  return names;
}

std::vector<Vyx::Ptr<Vyx::Entity>> oneOfEach() {
  return {Pbr::pbrFwdActionFactory("c", UniqueId(1, 2, 3), Pbr::nexthopAction),
          Pbr::pbrActionSetDscpFactory("c", UniqueId(1, 2, 3), Pbr::Dscp(9)),
          Pbr::pbrActionContainerFactory("c"),
          Pbr::configFactory("c"),
          Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet()),
          Pbr::pbrClassMapStatusFactory("c", UniqueId(1, 2, 3)),
          Pbr::statusFactory("c"),
          Vyx::make<Pbr::PbrAclCheckpointStatus>("c"),
          Vyx::make<Pbr::PbrAclTypeCheckpointStatus>("c", Acl::ip),
          Vyx::make<Pbr::ClassMapCheckpointStatus>("c"),
          Vyx::make<Pbr::PolicyMapCheckpointStatus>("c"),
          Pbr::checkpointAgentStatusFactory("c"),
          Pbr::checkpointStatusFactory("c"),
          Pbr::policyMapCopyHandlerFactory(),
          Vyx::make<Pbr::ConfigCopyHandler>(),
          Pbr::configCopyHandlerDirFactory("c")};
}

TEST(AttributeString, ActionsNameTheirOwnThenTheirBases) {
  auto const forward = Pbr::pbrFwdActionFactory("c", UniqueId(1, 2, 3), Pbr::nexthopAction);
  auto const mark = Pbr::pbrActionSetDscpFactory("c", UniqueId(1, 2, 3), Pbr::Dscp(9));
  EXPECT_EQ("fwdActionType nexthop recursive nexthopGroup", namesFrom(*forward, 386));
  EXPECT_EQ("dscp", namesFrom(*mark, 386));
  EXPECT_EQ("className type id equalTo", namesFrom(*forward, 258));
  EXPECT_EQ("className type id equalTo", namesFrom(*mark, 258));
}

TEST(AttributeString, EntitiesUnderTheRootNameTheirOwn) {
  EXPECT_EQ("fwdAction dscpAction", namesFrom(*Pbr::pbrActionContainerFactory("c"), 258));
  EXPECT_EQ(
      "pbrUnresolvedNexthopActionDrop bgpPbrRedirect pbrEnableNonAgingMacAddr pbrActions cmapType pmapType",
      namesFrom(*Pbr::configFactory("c"), 258));
  EXPECT_EQ("configHandler", namesFrom(*Pbr::configCopyHandlerDirFactory("c"), 258));
}

TEST(AttributeString, StatusNamesItsOwnThenItsBases) {
  auto const classMap = Pbr::pbrClassMapStatusFactory("c", UniqueId(1, 2, 3));
  EXPECT_EQ("actionType nexthopGroup nexthopIndexAndL2AdjKey", namesFrom(*classMap, 386));
  EXPECT_EQ("className id match ruleStatus", namesFrom(*classMap, 258));
  auto const status = Pbr::statusFactory("c");
  EXPECT_EQ("pbrClassMapStatus", namesFrom(*status, 386));
  EXPECT_EQ("type status intfDisallowed result countersPerRule", namesFrom(*status, 258));
  EXPECT_EQ("classMapStatus initialized", namesFrom(*status, 264));
  EXPECT_EQ("nexthopSet nexthopIndex nexthopIndexPublishCounter nexthopIndexDelCounter l2AdjKey viasUsed",
            namesFrom(*Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet()), 258));
}

TEST(AttributeString, CheckpointLevelsNameTheirOwn) {
  EXPECT_EQ("checkpointAgentStatus", namesFrom(*Pbr::checkpointStatusFactory("c"), 258));
  EXPECT_EQ("pmapCkptStatus", namesFrom(*Pbr::checkpointAgentStatusFactory("c"), 258));
  EXPECT_EQ("cmapCkptStatus ckptTimestamp", namesFrom(*Vyx::make<Pbr::PolicyMapCheckpointStatus>("c"), 258));
  EXPECT_EQ("pktMatch version aclTypeCkptStatus",
            namesFrom(*Vyx::make<Pbr::ClassMapCheckpointStatus>("c"), 258));
  EXPECT_EQ("type acl", namesFrom(*Vyx::make<Pbr::PbrAclTypeCheckpointStatus>("c", Acl::ip), 258));
  EXPECT_EQ("ruleStatus timestamp version", namesFrom(*Vyx::make<Pbr::PbrAclCheckpointStatus>("c"), 258));
}

TEST(AttributeString, CopyHandlersNameWhatTheyRedefine) {
  auto const handler = Pbr::policyMapCopyHandlerFactory();
  EXPECT_EQ("config", namesFrom(*handler, 642));
  EXPECT_EQ("classMapComparer updateActionPtrs", namesFrom(*handler, 514));
  EXPECT_EQ("subConfigDelete", namesFrom(*handler, 517));
  EXPECT_EQ("handleEntity", std::string(Vyx::make<Pbr::ConfigCopyHandler>()->attributeString(258).view()));
}

TEST(AttributeString, WhatNoClassOfTheLineHasIsUnknown) {
  for (auto const& entity : oneOfEach()) {
    EXPECT_EQ("unknown", entity->attributeString(9999)) << entity->fwkType()->fullTypeName();
    EXPECT_EQ("unknown", entity->attributeString(-1)) << entity->fwkType()->fullTypeName();
    EXPECT_EQ("isNondestructing", entity->attributeString(6)) << entity->fwkType()->fullTypeName();
    EXPECT_EQ("vyxHasAttrLogInterface", entity->attributeString(154)) << entity->fwkType()->fullTypeName();
  }
}

} // namespace
