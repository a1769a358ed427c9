// A reflection object that is registered hears of the changes of what it reflects on.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using testing::ElementsAre;
using testing::IsEmpty;
using Vyx::AttributeId;

class Listener final : public Vyx::PtrInterface::NotifieeConst {
public:
  void onAttribute(AttributeId id) override {
    ids.push_back(id);
    if (lastWord) lastWord();
  }
  std::vector<AttributeId> ids;
  std::function<void()> lastWord;
};

// A registered reflection object and what it hears.
template <class X> struct Registered {
  explicit Registered(Vyx::Ptr<X> const& entity) : object(on(entity)) {
    object->listenerIs(listener);
    object->isRegisteredNotifieeIs(true);
  }
  std::vector<AttributeId> take() const { return std::exchange(listener->ids, {}); }

  Vyx::Ptr<Listener> const listener = Vyx::ptrFromNew(new Listener);
  Object object;
};

Vyx::Ptr<Pbr::PbrFwdAction> newAction() {
  return Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::nexthopAction);
}

TEST(ReflectionAdapter, HearsOfEachChangeOnceByItsId) {
  auto const action = newAction();
  Registered const registered(action);
  action->recursiveIs(true);
  action->recursiveIs(true);
  action->nexthopGroupIs("g");
  action->nexthopIs("10.0.0.1", true);
  action->nexthopDel("10.0.0.1");
  EXPECT_THAT(registered.take(), ElementsAre(388, 389, 387, 387));
}

TEST(ReflectionAdapter, HearsOfTheBasesAttributesToo) {
  auto const action = newAction();
  Registered const registered(action);
  action->isNondestructingIs(true);
  action->isNondestructingIs(false);
  EXPECT_THAT(registered.take(), ElementsAre(6, 6));
}

TEST(ReflectionAdapter, HearsOfWhatReflectionChanges) {
  auto const action = newAction();
  Registered const registered(action);
  write(registered.object, 388, true);
  write(on(action), 388, false);
  EXPECT_THAT(registered.take(), ElementsAre(388, 388));
}

TEST(ReflectionAdapter, HearsOfAConfigurationsChildren) {
  auto const config = Pbr::configFactory("running");
  Registered const registered(config);
  config->pbrUnresolvedNexthopActionDropIs(true);
  config->bgpPbrRedirectIs(true);
  config->pbrEnableNonAgingMacAddrIs(false);
  config->pbrActionsDel();
  config->cmapTypeDel();
  config->pmapTypeDel();
  EXPECT_THAT(registered.take(), ElementsAre(258, 259, 260, 261, 262, 263));
}

TEST(ReflectionAdapter, HearsOfOwnedMembers) {
  auto const container = Pbr::pbrActionContainerFactory("Pbr");
  Registered const registered(container);
  container->fwdActionIs("web", UniqueId(1, 0, 0), Pbr::dropAction);
  container->dscpActionIs("web", UniqueId(2, 0, 0), Pbr::Dscp(1));
  container->fwdActionDel(UniqueId(1, 0, 0));
  EXPECT_THAT(registered.take(), ElementsAre(258, 259, 258));
}

TEST(ReflectionAdapter, HearsOfEveryClassOfTheLine) {
  auto const handler = Pbr::policyMapCopyHandlerFactory();
  Registered const registered(handler);
  handler->configIs(Pbr::configFactory("running"));
  handler->sessionStatusIs(Cli::Session::sessionDone);
  handler->postAttributeCopyEnq("path");
  handler->classMapComparerDel();
  handler->classMapComparerIs();
  std::vector<AttributeId> const heard = registered.take();
  EXPECT_EQ((std::vector<AttributeId>{642, 386, 391}),
            std::vector<AttributeId>(heard.begin(), heard.begin() + 3));
  EXPECT_EQ(514, heard.back());
}

TEST(ReflectionAdapter, EveryEntryOfACollectionIsForwardedUnderItsId) {
  auto const action = newAction();
  Registered const registered(action);
  auto* const adapter = dynamic_cast<Pbr::PbrFwdAction::NotifieeConst*>(action->vyxReactors().head());
  ASSERT_NE(nullptr, adapter);
  adapter->onNexthop("10.0.0.9");
  adapter->onNexthopvyxImmediate();
  adapter->onNexthop();
  EXPECT_THAT(registered.take(), ElementsAre(387, 387, 387));
}

TEST(ReflectionAdapter, EntriesWithoutAnObjectDoNothing) {
  auto const action = newAction();
  auto registered = std::make_unique<Registered<Pbr::PbrFwdAction>>(action);
  auto const listener = registered->listener;
  Vyx::Ptr<Pbr::PbrFwdAction::NotifieeConst> const adapter(
      dynamic_cast<Pbr::PbrFwdAction::NotifieeConst*>(action->vyxReactors().head()));
  registered = nullptr;
  adapter->onRecursive();
  EXPECT_THAT(listener->ids, IsEmpty());
}

TEST(ReflectionAdapter, HearsNothingUnregistered) {
  auto const action = newAction();
  Registered const registered(action);
  registered.object->isRegisteredNotifieeIs(false);
  action->recursiveIs(true);
  EXPECT_THAT(registered.take(), IsEmpty());
  registered.object->isRegisteredNotifieeIs(true);
  action->recursiveIs(false);
  EXPECT_THAT(registered.take(), ElementsAre(388));
}

TEST(ReflectionAdapter, RegistrationTwiceIsOne) {
  auto const action = newAction();
  Registered const registered(action);
  registered.object->isRegisteredNotifieeIs(true);
  EXPECT_EQ(1U, action->vyxReactors().count());
  action->recursiveIs(true);
  EXPECT_THAT(registered.take(), ElementsAre(388));
}

TEST(ReflectionAdapter, LeavesTheListWithItsObject) {
  auto const action = newAction();
  {
    Registered const registered(action);
    EXPECT_EQ(1U, action->vyxReactors().count());
  }
  EXPECT_EQ(0U, action->vyxReactors().count());
  action->recursiveIs(true);
}

TEST(ReflectionAdapter, ObjectMayEndWhileItHears) {
  auto const action = newAction();
  Registered registered(action);
  registered.listener->lastWord = [&] { registered.object = nullptr; };
  action->recursiveIs(true);
  action->recursiveIs(false);
  EXPECT_THAT(registered.take(), ElementsAre(388));
  EXPECT_EQ(0U, action->vyxReactors().count());
}

TEST(ReflectionAdapter, ConstInstanceHearsToo) {
  auto const action = newAction();
  auto const listener = Vyx::ptrFromNew(new Listener);
  Object const constant = onConst(action);
  constant->listenerIs(listener);
  constant->isRegisteredNotifieeIs(true);
  action->recursiveIs(true);
  EXPECT_THAT(listener->ids, ElementsAre(388));
}

// A registered reflection object whose change listener notes ids and keys.
class ChangeListening final : public Vyx::GenericIfEntity::ChangeListener {
public:
  explicit ChangeListening(Vyx::Ptr<Vyx::Entity> const& entity)
      : object_(Vyx::dynamicPtrCast<Vyx::GenericIfEntity>(on(entity))) {
    object_->changeListenerIs(this);
    object_->isRegisteredNotifieeIs(true);
  }
  ~ChangeListening() { off(); }
  void off() { object_->changeListenerIs(nullptr); }
  void markForDeletion() { object_->vyxMarkedForDeletionIs(true); }
  std::string take() { return std::exchange(heard_, {}); }

private:
  void onChange(AttributeId id, Vyx::Ptr<GenericIf const> const& key) override {
    heard_ += std::to_string(id) + (key ? "[" + std::string(key->strRep().view()) + "]" : "") + " ";
  }
  Vyx::Ptr<Vyx::GenericIfEntity> object_;
  std::string heard_;
};

TEST(ReflectionAdapter, AChangeListenerHearsTheKeyOfAMember) {
  auto const action = newAction();
  ChangeListening listener(action);
  action->nexthopIs("10.0.0.1", true);
  action->recursiveIs(true);
  action->nexthopDel("10.0.0.1");
  EXPECT_EQ("387[10.0.0.1] 388 387[10.0.0.1] ", listener.take());
}

TEST(ReflectionAdapter, AChangeListenerHearsTheKeyOfAChild) {
  auto const container = Pbr::pbrActionContainerFactory("Pbr");
  ChangeListening listener(container);
  container->fwdActionIs("web", UniqueId(1, 0, 0), Pbr::dropAction);
  EXPECT_EQ("258[00000001-0000-0000] ", listener.take());
}

TEST(ReflectionAdapter, AChangeListenerThatIsOffHearsNothing) {
  auto const action = newAction();
  ChangeListening listener(action);
  listener.off();
  action->nexthopIs("10.0.0.1", true);
  EXPECT_EQ("", listener.take());
}

TEST(ReflectionAdapter, AChangeListenerOfAnObjectMarkedForDeletionHearsNothing) {
  auto const action = newAction();
  ChangeListening listener(action);
  listener.markForDeletion();
  action->recursiveIs(true);
  EXPECT_EQ("", listener.take());
}

// Asks for the rest of a notification in the order in which it comes.
class Stepping final : public GenericIf {
public:
  Stepping() : GenericIf(false) {}
  Vyx::VyxType const* type() const override { return nullptr; }
  void* rawPtr(Vyx::VyxType const*) const override { return nullptr; }
  void* object() const override { return nullptr; }
  void actsm() override { steps += "actsm "; }
  void onAttribute(AttributeId id) override { steps += "onAttribute(" + std::to_string(id) + ") "; }
  std::string steps;
};

TEST(ReflectionAdapter, ForwardedChangeStepsTheActivityThenTellsTheId) {
  auto const object = Vyx::ptrFromNew(new Stepping);
  object->vyxForward(388);
  EXPECT_EQ("actsm onAttribute(388) ", object->steps);
}

TEST(ReflectionAdapter, ForwardedChangeEndsAtAnObjectMarkedForDeletion) {
  auto const object = Vyx::ptrFromNew(new Stepping);
  object->vyxMarkedForDeletionIs(true);
  EXPECT_TRUE(object->vyxOnAttribute(388, nullptr));
  object->vyxForward(388);
  EXPECT_EQ("", object->steps);
  object->vyxMarkedForDeletionIs(false);
  EXPECT_FALSE(object->vyxOnAttribute(388, nullptr));
}

} // namespace
