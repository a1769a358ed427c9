// The text of a pointer to an entity is the way to it from a root that was entered under a name.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Vyx/EntityStrep.h"
#include "support/TextForms.h"

namespace {

using Kest::UniqueId;
using Vyx::Entity;
using Vyx::Ptr;
using Vyx::String8;

// Enters a root for a scope.
class EnteredRoot {
public:
  EnteredRoot(char const* name, Ptr<Entity> const& root) : name_(name) { Vyx::entityRootIs(name_, root); }
  EnteredRoot(EnteredRoot const&) = delete;
  EnteredRoot& operator=(EnteredRoot const&) = delete;
  ~EnteredRoot() { Vyx::entityRootIs(name_, nullptr); }

private:
  Vyx::Name name_;
};

class EntityText : public testing::Test {
protected:
  Ptr<Pbr::Config> const config = Pbr::configFactory("Pbr");
  Ptr<Pbr::PbrFwdAction> const action =
      config->pbrActions()->fwdActionIs("web", UniqueId(0x2a, 0, 1), Pbr::nexthopAction);
  EnteredRoot const root{"running", config};
};

TEST_F(EntityText, IsTheWayFromTheRoot) {
  EXPECT_EQ("running", valueToStrep(config));
  EXPECT_EQ("running/pbrActions", valueToStrep(config->pbrActions()));
  EXPECT_EQ("running/pbrActions/fwdAction/0000002a-0000-0001", valueToStrep(action));
}

TEST_F(EntityText, IsTheSameForAPlainPointer) {
  EXPECT_EQ(valueToStrep(action), Vyx::valueToStrep<Entity const>(action.ptr()));
  EXPECT_EQ(valueToStrep(action), Vyx::valueToStrepOfRawPtr(action.ptr(), typeid(Entity)));
}

TEST_F(EntityText, ReadsBackToTheSameEntity) {
  expectReadsBack(config);
  expectReadsBack(action);
  expectReadsBack(Ptr<Entity const>(action));
  expectReadsBack(Ptr<PolicyMap::Action>(action));
  expectReadsBack(config->cmapType()->cmapIs("class-one"));
  expectReadsBack(config->pmapType()->pmapIs("p")->subconfigIs(UniqueId(1, 2, 3)));
}

TEST_F(EntityText, FunctionsHaveNoPlaceInAPath) {
  EXPECT_THROW(Vyx::strepToValue<Ptr<Entity>>(valueToStrep(action) + Vyx::String8("/equalTo")),
               Vyx::RangeException);
}

TEST_F(EntityText, NamesOfAnyBytesReadBack) {
  for (char const* name :
       {"a/b", "100%", "two words", " ", "%2F", "'quoted'", "'", "null", "a\x01\n\x7f", "\xc3\xa9"})
    expectReadsBack(config->pmapType()->pmapIs(name));
  EXPECT_EQ("running/pmapType/pmap/a%2Fb", valueToStrep(config->pmapType()->pmapIs("a/b")));
  EXPECT_EQ("running/pmapType/pmap/two%20words", valueToStrep(config->pmapType()->pmapIs("two words")));
}

TEST_F(EntityText, StatusAndCheckpointReadBackByAnyKindOfKey) {
  auto const status = Pbr::statusFactory("pbr");
  EnteredRoot const statusRoot("status", status);
  expectReadsBack(status->pbrClassMapStatusIs("web", UniqueId(1, 2, 3)));
  expectReadsBack(Ptr<PolicyMap::ClassMapStatus>(status->classMapStatusIs("web", UniqueId(1, 2, 3))));
  auto const checkpoint = Pbr::checkpointStatusFactory("pbr");
  EnteredRoot const checkpointRoot("checkpoint", checkpoint);
  auto const cmap =
      checkpoint->checkpointAgentStatusIs("Linecard 3")->pmapCkptStatusIs("P")->cmapCkptStatusIs("C");
  auto const acl = cmap->aclTypeCkptStatusIs(Acl::ipv6)->aclIs("web in");
  EXPECT_EQ(
      "checkpoint/checkpointAgentStatus/Linecard%203/pmapCkptStatus/P/cmapCkptStatus/C/aclTypeCkptStatus/"
      "'ipv6'/acl/web%20in",
      valueToStrep(acl));
  expectReadsBack(acl);
  EXPECT_EQ("Pbr::PbrClassMapStatus: \"status\": an entity of another type",
            refusal<Ptr<Pbr::PbrClassMapStatus>>("status"));
}

TEST_F(EntityText, NullIsNoFailure) {
  expectReadsBack(Ptr<Pbr::Config>());
  EXPECT_EQ("null", valueToStrep(Ptr<Pbr::Config>()));
  EXPECT_EQ("null", Vyx::valueToStrep<Entity const>(nullptr));
  EXPECT_FALSE(Vyx::strepToValue<Ptr<Pbr::Config>>("null"));
  EXPECT_FALSE(Vyx::strepToValue<Ptr<Pbr::Config>>(""));
}

TEST_F(EntityText, EntityOfAnotherTypeIsRefused) {
  EXPECT_EQ("Pbr::Config: \"running/pbrActions\": an entity of another type",
            refusal<Ptr<Pbr::Config>>("running/pbrActions"));
  EXPECT_EQ("Pbr::PbrFwdAction: \"running\": an entity of another type",
            refusal<Ptr<Pbr::PbrFwdAction>>("running"));
}

TEST_F(EntityText, WhatIsLeftOverIsJunk) {
  EXPECT_EQ("junk at column 7 deserializing running pbrActions", refusal<Ptr<Entity>>("running pbrActions"));
  EXPECT_EQ("junk at column 4 deserializing null ", refusal<Ptr<Entity>>("null "));
  EXPECT_EQ("junk at column 0 deserializing  running", refusal<Ptr<Entity>>(" running"));
}

TEST_F(EntityText, ReaderMovesThePositionToTheEndOfTheWord) {
  String8 const text("to running/pbrActions and on");
  Vyx::StrepIterator8 at(text, 3);
  auto const container = Vyx::sequenceToValue<Ptr<Pbr::PbrActionContainer>>(at, text.end());
  EXPECT_EQ(config->pbrActions(), container);
  EXPECT_EQ(21U, at.position());
}

TEST_F(EntityText, RefusedTypeIsToldOfTheReferenceAlone) {
  String8 const text("to running/pbrActions and on");
  Vyx::StrepIterator8 at(text, 3);
  EXPECT_EQ("Pbr::Config: \"running/pbrActions\": an entity of another type",
            rangeMessage([&] { Vyx::sequenceToValue<Ptr<Pbr::Config>>(at, text.end()); }));
}

TEST_F(EntityText, ReferenceToNothingIsRefused) {
  EXPECT_EQ("Entity: \"startup\": no root is entered as startup", refusal<Ptr<Entity>>("startup"));
  EXPECT_EQ("Entity: \"running/door\": Pbr::Config has no attribute door",
            refusal<Ptr<Entity>>("running/door"));
  EXPECT_EQ("Entity: \"running/\": Pbr::Config has no attribute ", refusal<Ptr<Entity>>("running/"));
  EXPECT_EQ("Entity: \"running/bgpPbrRedirect\": no entity stands at bgpPbrRedirect",
            refusal<Ptr<Entity>>("running/bgpPbrRedirect"));
  EXPECT_EQ("Entity: \"running/pbrActions/fwdAction\": no key stands behind fwdAction",
            refusal<Ptr<Entity>>("running/pbrActions/fwdAction"));
}

TEST_F(EntityText, ReferenceToAMemberThatIsGoneIsRefused) {
  String8 const text = valueToStrep(action);
  config->pbrActions()->fwdActionDel(action->id());
  EXPECT_EQ("Entity: \"" + std::string(text.view()) + "\": no entity stands at fwdAction",
            refusal<Ptr<Entity>>(text));
}

TEST_F(EntityText, KeyThatDoesNotReadIsRefusedByItsType) {
  EXPECT_EQ(refusal<UniqueId>("zz"), refusal<Ptr<Entity>>("running/pbrActions/fwdAction/zz"));
}

TEST_F(EntityText, FunctionsAreNoWay) {
  EXPECT_EQ("Entity: \"running/uriPath\": no entity stands at uriPath",
            refusal<Ptr<Entity>>("running/uriPath"));
}

TEST_F(EntityText, EntityBelowNoRootDoesNotReadBack) {
  auto const other = Pbr::configFactory("running");
  EXPECT_EQ("/running/pbrActions", valueToStrep(other->pbrActions()));
  EXPECT_EQ("Entity: \"/running/pbrActions\": no root is entered as ",
            refusal<Ptr<Entity>>("/running/pbrActions"));
}

TEST_F(EntityText, NearestRootIsTaken) {
  EnteredRoot const actions("my actions", config->pbrActions());
  EXPECT_EQ("my%20actions/fwdAction/0000002a-0000-0001", valueToStrep(action));
  expectReadsBack(action);
  EXPECT_EQ(action,
            Vyx::strepToValue<Ptr<Pbr::PbrFwdAction>>("running/pbrActions/fwdAction/0000002a-0000-0001"));
}

TEST_F(EntityText, RootIsHeldUntilItsNameIsTakenOut) {
  auto const before = config->references();
  {
    EnteredRoot const again("again", config);
    EXPECT_EQ(before + 1, config->references());
    EXPECT_EQ(config, Vyx::entityRoot("again"));
  }
  EXPECT_EQ(before, config->references());
  EXPECT_FALSE(Vyx::entityRoot("again"));
}

TEST_F(EntityText, NameThatBeginsNoReferenceIsRefused) {
  EXPECT_EQ("Entity: \"\": no reference to an entity can begin with it",
            rangeMessage([&] { Vyx::entityRootIs("", config); }));
  EXPECT_EQ("Entity: \"null\": no reference to an entity can begin with it",
            rangeMessage([&] { Vyx::entityRootIs("null", config); }));
}

TEST(EntityTextOfAnything, WhatIsNoEntityIsToldByItsType) {
  struct Thing final : Vyx::PtrInterface {};
  auto const thing = Vyx::ptrFromNew(new Thing);
  EXPECT_EQ("/Vyx::Entity", Vyx::valueToStrepOfRawPtr(thing.ptr(), typeid(Entity)));
}

// A pointer to each entity type of the library reads back as its own type and is refused as another.
template <class X> void expectOwnType(Ptr<X> const& entity) {
  EnteredRoot const root("one", entity);
  expectReadsBack(entity);
  expectReadsBack(Ptr<X const>(entity));
  using Other = std::conditional_t<std::is_same_v<X, Pbr::Config>, Pbr::PbrFwdAction, Pbr::Config>;
  EXPECT_NE(std::string::npos, refusal<Ptr<Other>>("one").find("an entity of another type"));
  EXPECT_FALSE(Vyx::strepToValue<Ptr<X>>("null"));
}

TEST(EntityTextOfAnything, EveryTypeReadsBackAsItsOwn) {
  expectOwnType(Pbr::pbrFwdActionFactory("c", UniqueId(1, 2, 3), Pbr::nexthopAction));
  expectOwnType(Pbr::pbrActionSetDscpFactory("c", UniqueId(1, 2, 3), Pbr::Dscp(9)));
  expectOwnType(Pbr::pbrActionContainerFactory("c"));
  expectOwnType(Pbr::configFactory("c"));
  expectOwnType(Pbr::policyMapCopyHandlerFactory());
  expectOwnType(Vyx::make<Pbr::ConfigCopyHandler>());
  expectOwnType(Pbr::configCopyHandlerDirFactory("c"));
}

} // namespace
