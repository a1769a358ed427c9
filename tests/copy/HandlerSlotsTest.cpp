#include "Pbr/PbrCopy.h"
#include "Vyx/VyxType.h"
#include "support/SlotOf.h"

namespace {

using Cli::Session::EntityCopyGlobalSessionHandler;
using Cli::Session::EntityCopyHandler;
using Queue = EntityCopyGlobalSessionHandler::PostAttributeCopyIterator;
using DelByKey = Vyx::String8 (EntityCopyGlobalSessionHandler::*)(unsigned);
using DelAtIterator = Vyx::String8 (EntityCopyGlobalSessionHandler::*)(Queue&);
using OnKey = void (EntityCopyGlobalSessionHandler::NotifieeConst::*)(unsigned);
using On = void (EntityCopyGlobalSessionHandler::NotifieeConst::*)();

// What every handler of a session has behind the slots of an entity.
template <class H> void expectSessionSlots() {
  expectSlotsFrom(
      slotCount<Vyx::Entity>(),
      {slotOf(&H::handleEntity), slotOf(&H::resolveEntityPtr), slotOf<DelByKey>(&H::postAttributeCopyDel),
       slotOf<DelAtIterator>(&H::postAttributeCopyDel), slotOf(&H::postAttributeCopyNotify),
       slotOf(&H::postAttributeCopyEnq), slotOf(&H::postAttributeCopyDeq), slotOf(&H::postAttributeCopyIs),
       slotOf(&H::sessionStatusIs), slotOf(&H::copiedDel), slotOf(&H::copiedIs), slotOf(&H::handlerTableIs),
       slotOf(&H::externalDestIs), slotCount<EntityCopyGlobalSessionHandler>()});
}

template <class R> void expectSessionReactorSlots() {
  expectSlotsFrom(slotCount<Vyx::Entity::NotifieeConst>(),
                  {slotOf(&R::onIsNondestructing), slotOf(&R::onSessionStatus), slotOf(&R::onCopied),
                   slotOf(&R::onHandlerTable), slotOf(&R::onExternalDest),
                   slotOf(&R::onPostAttributeCopyMetadata), slotOf<OnKey>(&R::onPostAttributeCopy),
                   slotOf(&R::onPostAttributeCopyvyxImmediate), slotOf<On>(&R::onPostAttributeCopy),
                   slotCount<EntityCopyGlobalSessionHandler::NotifieeConst>()});
}

TEST(HandlerSlots, ConfigCopyHandlerAddsNoneToTheSessionHandlers) {
  expectSessionSlots<Pbr::ConfigCopyHandler>();
  EXPECT_EQ(slotCount<EntityCopyGlobalSessionHandler>(), slotCount<Pbr::ConfigCopyHandler>());
}

TEST(HandlerSlots, PolicyMapCopyHandlerAddsHooksThenComparer) {
  using H = Pbr::PolicyMapCopyHandler;
  expectSessionSlots<H>();
  expectSlotsFrom(slotCount<EntityCopyGlobalSessionHandler>(),
                  {slotOf(&H::updateActionPtrs), slotOf(&H::subConfigDelete), slotOf(&H::classMapComparerDel),
                   slotOf(&H::classMapComparerIs), slotCount<PolicyMap::PolicyMapCopyHandler>()});
  EXPECT_EQ(slotCount<PolicyMap::PolicyMapCopyHandler>(), slotCount<H>());
}

TEST(HandlerSlots, ReactorsEndInTheSessionsRun) {
  expectSessionReactorSlots<Pbr::ConfigCopyHandler::NotifieeConst>();
  expectSessionReactorSlots<Pbr::PolicyMapCopyHandler::NotifieeConst>();
  EXPECT_EQ(slotCount<EntityCopyGlobalSessionHandler::NotifieeConst>(),
            slotCount<Pbr::ConfigCopyHandler::NotifieeConst>());
  EXPECT_EQ(slotCount<EntityCopyGlobalSessionHandler::NotifieeConst>(),
            slotCount<Pbr::ConfigCopyHandler::Notifiee>());
}

TEST(HandlerSlots, PolicyMapReactorGoesOnWithComparerAndConfig) {
  using R = Pbr::PolicyMapCopyHandler::NotifieeConst;
  expectSlotsFrom(slotCount<EntityCopyGlobalSessionHandler::NotifieeConst>(),
                  {slotOf(&R::onClassMapComparer), slotOf(&R::onConfig), slotCount<R>()});
  EXPECT_EQ(slotCount<R>(), slotCount<Pbr::PolicyMapCopyHandler::Notifiee>());
}

TEST(HandlerSlots, BothHandlersStandUnderTheSessionLibrarys) {
  EXPECT_TRUE(Pbr::ConfigCopyHandler::_fwkType()->isA(EntityCopyGlobalSessionHandler::_fwkType()));
  EXPECT_TRUE(Pbr::PolicyMapCopyHandler::_fwkType()->isA(PolicyMap::PolicyMapCopyHandler::_fwkType()));
  EXPECT_TRUE(PolicyMap::PolicyMapCopyHandler::_fwkType()->isA(EntityCopyGlobalSessionHandler::_fwkType()));
  EXPECT_EQ(EntityCopyHandler::_fwkType(), EntityCopyGlobalSessionHandler::_fwkType()->baseType());
  EXPECT_EQ(Vyx::Entity::_fwkType(), EntityCopyHandler::_fwkType()->baseType());
}

TEST(HandlerTexts, NameTheirAttributes) {
  auto const policy = Pbr::policyMapCopyHandlerFactory();
  EXPECT_EQ("config", policy->attributeString(642));
  EXPECT_EQ("sessionStatus", policy->attributeString(386));
  EXPECT_EQ("unknown", policy->attributeString(643));
  auto const config = Vyx::make<Pbr::ConfigCopyHandler>();
  for (Vyx::AttributeId id : {258, 259, 386, 391, 642})
    EXPECT_EQ(config->EntityCopyGlobalSessionHandler::attributeString(id), config->attributeString(id)) << id;
  EXPECT_EQ("unknown", config->attributeString(642));
}

TEST(HandlerTexts, EveryHandlerCanStandOnALog) {
  EXPECT_TRUE(Pbr::policyMapCopyHandlerFactory()->vyxHasAttrLogInterface());
  EXPECT_TRUE(Vyx::make<Pbr::ConfigCopyHandler>()->vyxHasAttrLogInterface());
  EXPECT_TRUE(Pbr::configCopyHandlerDirFactory("dir")->vyxHasAttrLogInterface());
}

} // namespace
