// The order of fields, seen in the objects' own bytes: each structure below has the fields of a type in the
// order that they are promised in, and is laid over an object. Holds for 64 and for 32 bits alike.

#include "PolicyListeners.h"

#include "support/Fields.h"

namespace {

using Table = fields::Table<Pbr::PbrFwdAction::VyxNexthopMap>;
using fields::Entity;
using fields::List;
using fields::over;
using fields::Reactor;

struct Action {
  Entity entity;
  void* className;
  std::uint32_t type;
  std::uint32_t id[2];
  List reactors;
};
struct FwdAction {
  Action action;
  std::uint32_t fwdActionType;
  Table nexthop;
  unsigned char recursive;
  void* nexthopGroup;
  void const* fwkHmNext;
};
struct SetDscp {
  Action action;
  unsigned char dscp;
  void const* fwkHmNext;
};
struct Container {
  Entity entity;
  Table fwdAction;
  Table dscpAction;
  List reactors;
};
struct Config {
  Entity entity;
  unsigned char unresolvedDrop;
  unsigned char bgpRedirect;
  unsigned char nonAging;
  void const* pbrActions;
  void const* cmapType;
  void const* pmapType;
  List reactors;
};
struct Nexthop {
  void* operations;
  std::uint32_t word;
  std::uint32_t family;
  unsigned char address[16];
  unsigned char value;
  void const* fwkHmNext;
};

TEST(Layout, EntityBeginsWithTheWordNameAndPlace) {
  auto const container = Pbr::pbrActionContainerFactory("actions");
  Entity const fields = over<Entity>(static_cast<Vyx::Entity const&>(*container));
  EXPECT_EQ(1U, fields.word);
  EXPECT_NE(nullptr, fields.name);
  EXPECT_EQ(nullptr, fields.parent);
  EXPECT_EQ(136, fields.parentAttrId);
  EXPECT_EQ(0U, fields.fourth);
}

TEST(Layout, EntityKnowsItsPlace) {
  auto const config = Pbr::configFactory("running");
  auto const fields = over<Entity>(static_cast<Vyx::Entity const&>(*config->cmapType()));
  EXPECT_EQ(config.ptr(), fields.parent);
  EXPECT_EQ(262, fields.parentAttrId);
}

TEST(Layout, ConfigHasSwitchesThenChildrenThenItsList) {
  Heard heard;
  auto const config = Pbr::configFactory("running");
  config->bgpPbrRedirectIs(true);
  auto const reactor = listen<ConfigListener>(config, heard);
  Config const fields = over<Config>(*config);
  EXPECT_EQ(0, fields.unresolvedDrop);
  EXPECT_EQ(1, fields.bgpRedirect);
  EXPECT_EQ(1, fields.nonAging);
  EXPECT_EQ(config->pbrActions().ptr(), fields.pbrActions);
  EXPECT_EQ(config->cmapType().ptr(), fields.cmapType);
  EXPECT_EQ(config->pmapType().ptr(), fields.pmapType);
  EXPECT_EQ(1U, fields.reactors.count);
  EXPECT_EQ(1U, fields.reactors.version);
  EXPECT_EQ(reactor.ptr(), fields.reactors.head);
  EXPECT_EQ(reactor.ptr(), fields.reactors.tail);
}

TEST(Layout, ContainerHasItsTablesThenItsList) {
  Heard heard;
  auto const container = Pbr::pbrActionContainerFactory("actions");
  container->fwdActionIs("web", actionId(1), Pbr::dropAction);
  container->dscpActionIs("web", actionId(1), 46);
  container->dscpActionIs("web", actionId(2), 46);
  auto const reactor = listen<ContainerListener>(container, heard);
  Container const fields = over<Container>(*container);
  EXPECT_EQ(1U, fields.fwdAction.count);
  EXPECT_EQ(2U, fields.dscpAction.count);
  EXPECT_EQ(reactor.ptr(), fields.reactors.head);
}

TEST(Layout, ActionsListStandsBehindItsParameters) {
  auto const action = PolicyMap::actionFactory("web", PolicyMap::actionPbrForward, {7, 8, 9});
  Heard heard;
  auto const reactor = listen<Recorder<PolicyMap::Action>>(action, heard);
  Action const fields = over<Action>(*action);
  EXPECT_NE(nullptr, fields.className);
  EXPECT_EQ(4U, fields.type);
  EXPECT_EQ(7U, fields.id[0]);
  EXPECT_EQ(1U, fields.reactors.count);
}

TEST(Layout, FwdActionHasItsAttributesInOrderAndTheLinkLast) {
  auto const container = Pbr::pbrActionContainerFactory("actions");
  auto const one = container->fwdActionIs("web", actionId(1), Pbr::nexthopAction);
  auto const two = container->fwdActionIs("web", actionId(2), Pbr::nexthopAction);
  for (auto const& action : {one, two}) {
    action->nexthopIs("10.0.0.1", true);
    action->recursiveIs(true);
    action->nexthopGroupIs("gold");
  }
  auto const fields = over<FwdAction>(*container->fwdActionIterator());
  EXPECT_EQ(2U, fields.fwdActionType);
  EXPECT_EQ(1U, fields.nexthop.count);
  EXPECT_EQ(1, fields.recursive);
  EXPECT_NE(nullptr, fields.nexthopGroup);
  EXPECT_EQ((++container->fwdActionIterator()).member().ptr(), fields.fwkHmNext);
}

TEST(Layout, SetDscpHasItsByteAndTheLinkLast) {
  auto const container = Pbr::pbrActionContainerFactory("actions");
  for (unsigned n : {1U, 2U}) container->dscpActionIs("web", actionId(n), 46);
  auto const fields = over<SetDscp>(*container->dscpActionIterator());
  EXPECT_EQ(46, fields.dscp);
  EXPECT_EQ((++container->dscpActionIterator()).member().ptr(), fields.fwkHmNext);
}

TEST(Layout, RecordHasKeyValueAndLink) {
  auto const action = Pbr::pbrFwdActionFactory("web", actionId(1), Pbr::nexthopAction);
  action->nexthopIs("10.0.0.1", true);
  auto const record = action->nexthopIterator().member();
  auto const fields = over<Nexthop>(*record);
  EXPECT_EQ(2U, fields.word);
  EXPECT_EQ(4U, fields.family);
  EXPECT_EQ(10, fields.address[0]);
  EXPECT_EQ(1, fields.value);
  EXPECT_EQ(nullptr, fields.fwkHmNext);
}

TEST(Layout, ReactorHasNotifierFlagsAndLink) {
  Heard heard;
  auto const config = Pbr::configFactory("running");
  auto const first = listen<ConfigListener>(config, heard);
  auto const second = listen<ConfigListener>(config, heard);
  second->isWeakReferenceIs(true);
  Reactor const fields = over<Reactor>(static_cast<Vyx::Entity::NotifieeConst const&>(*first));
  EXPECT_EQ(config.ptr(), fields.notifier);
  EXPECT_EQ(0, fields.isWeakReference);
  EXPECT_EQ(1, fields.isRegisteredNotifiee);
  EXPECT_EQ(static_cast<Vyx::Entity::NotifieeConst const*>(second.ptr()), fields.next);
  EXPECT_EQ(1, over<Reactor>(static_cast<Vyx::Entity::NotifieeConst const&>(*second)).isWeakReference);
}

TEST(Layout, ReactorInterfacesAddNoField) {
  EXPECT_EQ(sizeof(Reactor), sizeof(Vyx::Entity::NotifieeConst));
  EXPECT_EQ(sizeof(Reactor), sizeof(Pbr::Config::Notifiee));
  EXPECT_EQ(sizeof(Reactor), sizeof(Pbr::PbrFwdAction::Notifiee));
}

} // namespace
