// An attribute's id is what its round tells a reactor that failed, and what its name answers to.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "RecordText.h"

#include <gmock/gmock.h>

namespace {

using Kest::UniqueId;
using testing::ElementsAre;
using Vyx::AttributeId;

// Fails at every entry and keeps the ids under which it is told so.
template <class X> class Failing : public X::Notifiee {
public:
  void onIsNondestructing() override { fail(); }
  void onNotificationException(AttributeId id) override { ids.push_back(id); }
  std::vector<AttributeId> ids;

protected:
  [[noreturn]] static void fail() { throw 1; }
};

class FailingOnAction final : public Failing<Pbr::PbrFwdAction> {
  void onNexthop(Lomu::IpGenAddr const&) override { fail(); }
  void onRecursive() override { fail(); }
  void onNexthopGroup() override { fail(); }
};

class FailingOnConfig final : public Failing<Pbr::Config> {
  void onPbrUnresolvedNexthopActionDrop() override { fail(); }
  void onBgpPbrRedirect() override { fail(); }
  void onPbrEnableNonAgingMacAddr() override { fail(); }
  void onPbrActions() override { fail(); }
  void onCmapType() override { fail(); }
  void onPmapType() override { fail(); }
};

class FailingOnContainer final : public Failing<Pbr::PbrActionContainer> {
  void onFwdAction(UniqueId const&) override { fail(); }
  void onDscpAction(UniqueId const&) override { fail(); }
};

class FailingOnHandler final : public Failing<Pbr::PolicyMapCopyHandler> {
  void onConfig() override { fail(); }
};

class FailingOnDirectory final : public Failing<Pbr::ConfigCopyHandlerDir> {
  void onConfigHandler() override { fail(); }
};

template <class Reactor, class X> Vyx::Ptr<Reactor> attached(Vyx::Ptr<X> const& to) {
  auto const reactor = Vyx::ptrFromNew(new Reactor);
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(to));
  return reactor;
}

TEST(AttributeId, RoundsOfAForwardingAction) {
  auto const action = Pbr::pbrFwdActionFactory("c", UniqueId(1, 2, 3), Pbr::nexthopAction);
  auto const reactor = attached<FailingOnAction>(action);
  action->nexthopIs("10.0.0.1", true);
  action->recursiveIs(true);
  action->nexthopGroupIs("g");
  action->isNondestructingIs(true);
  EXPECT_THAT(reactor->ids, ElementsAre(387, 388, 389, 6));
  action->isNondestructingIs(false);
}

TEST(AttributeId, RoundsOfAConfiguration) {
  auto const config = Pbr::configFactory("c");
  auto const reactor = attached<FailingOnConfig>(config);
  config->pbrUnresolvedNexthopActionDropIs(true);
  config->bgpPbrRedirectIs(true);
  config->pbrEnableNonAgingMacAddrIs(false);
  config->pbrActionsDel();
  config->cmapTypeDel();
  config->pmapTypeDel();
  EXPECT_THAT(reactor->ids, ElementsAre(258, 259, 260, 261, 262, 263));
}

TEST(AttributeId, RoundsOfAContainer) {
  auto const container = Pbr::pbrActionContainerFactory("c");
  auto const reactor = attached<FailingOnContainer>(container);
  container->fwdActionIs("c", UniqueId(1, 2, 3), Pbr::dropAction);
  container->dscpActionIs("c", UniqueId(1, 2, 3), Pbr::Dscp(9));
  EXPECT_THAT(reactor->ids, ElementsAre(258, 259));
}

TEST(AttributeId, RoundsOfTheCopyHandlers) {
  auto const handler = Pbr::policyMapCopyHandlerFactory();
  auto const directory = Pbr::configCopyHandlerDirFactory("d");
  auto const onHandler = attached<FailingOnHandler>(handler);
  auto const onDirectory = attached<FailingOnDirectory>(directory);
  handler->configIs(Pbr::configFactory("c"));
  directory->configHandlerDel();
  directory->configHandlerIs();
  EXPECT_THAT(onHandler->ids, ElementsAre(642));
  EXPECT_EQ(258, onDirectory->ids.back());
}

// Every row but that of the key, which is no attribute of the class.
void expectNamesOfRows(Vyx::Entity const& entity) {
  for (Vyx::VyxType::AttributeQIteratorConst at(*entity.fwkType()); at; ++at)
    if (at->id() != Vyx::kFwkKeyId) {
      EXPECT_EQ(textOf(at->name()), textOf(entity.attributeString(at->id()))) << at->id();
    }
}

TEST(AttributeId, NameAnswersToTheIdInEveryEntity) {
  expectNamesOfRows(*Pbr::pbrFwdActionFactory("c", UniqueId(1, 2, 3), Pbr::nexthopAction));
  expectNamesOfRows(*Pbr::pbrActionSetDscpFactory("c", UniqueId(1, 2, 3), Pbr::Dscp(9)));
  expectNamesOfRows(*Pbr::pbrActionContainerFactory("c"));
  expectNamesOfRows(*Pbr::configFactory("c"));
  expectNamesOfRows(*Pbr::policyMapCopyHandlerFactory());
  expectNamesOfRows(*Vyx::make<Pbr::ConfigCopyHandler>());
  expectNamesOfRows(*Pbr::configCopyHandlerDirFactory("c"));
}

} // namespace
