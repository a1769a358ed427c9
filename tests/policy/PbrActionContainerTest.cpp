#include "PolicyListeners.h"

#include "support/Invariants.h"
#include "support/Refusals.h"

namespace {

// The claims hold for both kinds of action: `Fwd` and `Marking` say the same of each.
struct Fwd {
  using Member = Pbr::PbrFwdAction;
  static constexpr char const* name = "fwdAction";
  static constexpr int id = 258;
  static auto is(Pbr::PbrActionContainer& of, unsigned key) {
    return of.fwdActionIs("web", actionId(key), Pbr::nexthopAction);
  }
  static auto otherIs(Pbr::PbrActionContainer& of, Vyx::Name className, unsigned key) {
    return of.fwdActionIs(className, actionId(key), Pbr::dropAction);
  }
  static auto add(Pbr::PbrActionContainer& of, unsigned key) {
    return of.newFwdAction("web", actionId(key), Pbr::nexthopAction);
  }
  static auto get(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdAction(actionId(key)); }
  static auto del(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdActionDel(actionId(key)); }
  static auto delAt(Pbr::PbrActionContainer& of, auto& at) { return of.fwdActionDel(at); }
  static auto at(Pbr::PbrActionContainer& of) { return of.fwdActionIterator(); }
  static auto at(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdActionIterator(actionId(key)); }
  static void delAll(Pbr::PbrActionContainer& of) { of.fwdActionDelAll(); }
  static void notify(Pbr::PbrActionContainer& of, unsigned key) { of.fwdActionNotify(actionId(key)); }
  static unsigned count(Pbr::PbrActionContainer& of) { return of.fwdActions(); }
  static bool isAsMade(Member const& member) { return member.fwdActionType() == Pbr::nexthopAction; }
  static constexpr char const* otherRefused =
      "Reinstantiating the entity with name web where constructor parameter attribute _fwdActionType has a "
      "different value of 'dropAction' than the current value of 'nexthopAction' not allowed";
};

struct Marking {
  using Member = Pbr::PbrActionSetDscp;
  static constexpr char const* name = "dscpAction";
  static constexpr int id = 259;
  static auto is(Pbr::PbrActionContainer& of, unsigned key) {
    return of.dscpActionIs("web", actionId(key), 46);
  }
  static auto otherIs(Pbr::PbrActionContainer& of, Vyx::Name className, unsigned key) {
    return of.dscpActionIs(className, actionId(key), 12);
  }
  static auto add(Pbr::PbrActionContainer& of, unsigned key) {
    return of.newDscpAction("web", actionId(key), 46);
  }
  static auto get(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpAction(actionId(key)); }
  static auto del(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpActionDel(actionId(key)); }
  static auto delAt(Pbr::PbrActionContainer& of, auto& at) { return of.dscpActionDel(at); }
  static auto at(Pbr::PbrActionContainer& of) { return of.dscpActionIterator(); }
  static auto at(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpActionIterator(actionId(key)); }
  static void delAll(Pbr::PbrActionContainer& of) { of.dscpActionDelAll(); }
  static void notify(Pbr::PbrActionContainer& of, unsigned key) { of.dscpActionNotify(actionId(key)); }
  static unsigned count(Pbr::PbrActionContainer& of) { return of.dscpActions(); }
  static bool isAsMade(Member const& member) { return member.dscp().value() == 46; }
  static constexpr char const* otherRefused =
      "Reinstantiating the entity with name web where constructor parameter attribute _dscp has a "
      "different value of 12 than the current value of 46 not allowed";
};

constexpr char const* kOtherClassRefused =
    "Reinstantiating the entity with name web where constructor parameter attribute _className has a "
    "different value of voice than the current value of web not allowed";

template <class C> class PbrActionContainer : public testing::Test {
protected:
  ~PbrActionContainer() override { checkInvariants(*container); }

  Heard heard;
  Vyx::Ptr<Pbr::PbrActionContainer> const container = Pbr::pbrActionContainerFactory("actions");
  Vyx::Ptr<ContainerListener> const listener = listen<ContainerListener>(container, heard);

  Pbr::PbrActionContainer& of() { return *container; }
  std::string told() { return heard.take(); }
  static std::string line(unsigned key) {
    return std::string(C::name) + " 0000000" + std::to_string(key) + "-0000-0000";
  }
  // The members 1, 2, 3, unheard.
  void fill() {
    for (unsigned key : {1U, 2U, 3U}) C::is(of(), key);
    told();
  }
  std::string linesInOrder() {
    Heard lines;
    for (auto at = C::at(of()); at; ++at)
      lines.note(std::string(C::name) + " " + Vyx::String8(valueToStrep(at.key())).charPtr());
    return lines.take();
  }
};

using Kinds = testing::Types<Fwd, Marking>;
TYPED_TEST_SUITE(PbrActionContainer, Kinds);

TYPED_TEST(PbrActionContainer, StartsEmpty) {
  EXPECT_EQ(0U, TypeParam::count(this->of()));
  EXPECT_FALSE(TypeParam::at(this->of()));
  EXPECT_FALSE(TypeParam::get(this->of(), 1));
}

TYPED_TEST(PbrActionContainer, NewActionIsAttachedAndTold) {
  auto const action = TypeParam::is(this->of(), 7);
  EXPECT_EQ(this->line(7), this->told());
  EXPECT_EQ(action, TypeParam::get(this->of(), 7));
  EXPECT_EQ(this->container, action->parent());
  EXPECT_EQ(TypeParam::id, action->parentAttrId());
  EXPECT_EQ(2U, action->references());
}

TYPED_TEST(PbrActionContainer, ActionIsThereAndAttachedWhenTheReactorsRun) {
  bool attached = false;
  this->listener->during = [&] {
    auto const action = TypeParam::get(this->of(), 7);
    attached = action && action->parent() == this->container;
  };
  TypeParam::is(this->of(), 7);
  EXPECT_TRUE(attached);
}

TYPED_TEST(PbrActionContainer, SameParametersFindTheActionThatIsThere) {
  auto const action = TypeParam::is(this->of(), 7);
  EXPECT_EQ(action, TypeParam::is(this->of(), 7));
  EXPECT_EQ(this->line(7), this->told());
}

TYPED_TEST(PbrActionContainer, OtherValueIsRefusedAndNothingChanges) {
  auto const action = TypeParam::is(this->of(), 7);
  this->told();
  EXPECT_EQ(TypeParam::otherRefused, nameInUse([&] { TypeParam::otherIs(this->of(), "web", 7); }));
  EXPECT_EQ("", this->told());
  EXPECT_TRUE(TypeParam::isAsMade(*action));
  EXPECT_EQ(action, TypeParam::get(this->of(), 7));
}

TYPED_TEST(PbrActionContainer, OtherClassNameIsRefusedFirst) {
  auto const action = TypeParam::is(this->of(), 7);
  EXPECT_EQ(kOtherClassRefused, nameInUse([&] { TypeParam::otherIs(this->of(), "voice", 7); }));
  EXPECT_EQ("web", action->className());
}

TYPED_TEST(PbrActionContainer, RemovedIdMayComeBackWithOtherParameters) {
  TypeParam::is(this->of(), 7);
  TypeParam::del(this->of(), 7);
  EXPECT_EQ("voice", TypeParam::otherIs(this->of(), "voice", 7)->className());
}

TYPED_TEST(PbrActionContainer, NewOneIsAttachedAndNobodyIsTold) {
  auto const action = TypeParam::add(this->of(), 7);
  EXPECT_EQ("", this->told());
  EXPECT_EQ(action, TypeParam::get(this->of(), 7));
  EXPECT_EQ(this->container, action->parent());
  EXPECT_EQ(TypeParam::id, action->parentAttrId());
}

TYPED_TEST(PbrActionContainer, RemovedActionIsReturnedDetachedAndTold) {
  auto const action = TypeParam::is(this->of(), 7);
  this->told();
  EXPECT_EQ(action, TypeParam::del(this->of(), 7));
  EXPECT_EQ(this->line(7), this->told());
  EXPECT_FALSE(action->parent());
  EXPECT_EQ(1U, action->references());
}

TYPED_TEST(PbrActionContainer, RemovedActionIsKeptByTheReturnedPointerAlone) {
  TypeParam::is(this->of(), 7);
  auto const action = TypeParam::del(this->of(), 7);
  EXPECT_EQ(1U, action->references());
  EXPECT_EQ(actionId(7), action->id());
}

TYPED_TEST(PbrActionContainer, RemovedActionIsGoneAndHasNoParentWhenTheReactorsRun) {
  auto const action = TypeParam::is(this->of(), 7);
  bool gone = false;
  this->listener->during = [&] { gone = !TypeParam::get(this->of(), 7) && !action->parent(); };
  TypeParam::del(this->of(), 7);
  EXPECT_TRUE(gone);
}

TYPED_TEST(PbrActionContainer, RemovalOfAnAbsentIdReturnsNullAndIsNotTold) {
  EXPECT_FALSE(TypeParam::del(this->of(), 7));
  EXPECT_EQ("", this->told());
}

TYPED_TEST(PbrActionContainer, RemovalUnderAnIteratorReturnsTheAction) {
  this->fill();
  auto at = TypeParam::at(this->of(), 2);
  auto const action = TypeParam::delAt(this->of(), at);
  EXPECT_EQ(actionId(2), action->id());
  EXPECT_FALSE(action->parent());
  EXPECT_EQ(this->line(2), this->told());
}

TYPED_TEST(PbrActionContainer, RemovalUnderAnIteratorOnNoMemberReturnsNull) {
  auto at = TypeParam::at(this->of());
  EXPECT_FALSE(TypeParam::delAt(this->of(), at));
  EXPECT_EQ("", this->told());
}

TYPED_TEST(PbrActionContainer, RemovalOfAllTellsOfEachInOrderAndNeverWithoutAKey) {
  this->fill();
  std::string const each = this->linesInOrder();
  auto const action = TypeParam::get(this->of(), 2);
  TypeParam::delAll(this->of());
  EXPECT_EQ(each, this->told());
  EXPECT_EQ(0U, TypeParam::count(this->of()));
  EXPECT_FALSE(action->parent());
}

TYPED_TEST(PbrActionContainer, RemovalOfAllFromNothingIsNotTold) {
  TypeParam::delAll(this->of());
  EXPECT_EQ("", this->told());
}

TYPED_TEST(PbrActionContainer, RemovalOfAllBearsAReactorThatRemoves) {
  this->fill();
  std::string const each = this->linesInOrder();
  bool once = true;
  this->listener->during = [&] {
    if (!std::exchange(once, false)) return;
    auto at = TypeParam::at(this->of());
    TypeParam::delAt(this->of(), at);
  };
  TypeParam::delAll(this->of());
  EXPECT_EQ(each, this->told());
  EXPECT_EQ(0U, TypeParam::count(this->of()));
}

TYPED_TEST(PbrActionContainer, NotifyTellsOfAnyId) {
  TypeParam::notify(this->of(), 9);
  EXPECT_EQ(this->line(9), this->told());
}

TYPED_TEST(PbrActionContainer, ExceptionComesBackWithTheAttributesId) {
  this->listener->during = [] { throw 1; };
  auto const action = TypeParam::is(this->of(), 7);
  EXPECT_EQ(this->line(7) + " !" + std::to_string(TypeParam::id), this->told());
  EXPECT_EQ(action, TypeParam::get(this->of(), 7));
}

TYPED_TEST(PbrActionContainer, IteratorKeepsTheContainerAlive) {
  EXPECT_EQ(2U, this->container->references());
  auto const at = TypeParam::at(this->of());
  EXPECT_EQ(3U, this->container->references());
}

class BothKinds : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Pbr::PbrActionContainer> container = Pbr::pbrActionContainerFactory("actions");
};

TEST_F(BothKinds, MayShareAnId) {
  auto const fwd = Fwd::is(*container, 1);
  auto const marking = Marking::otherIs(*container, "voice", 1);
  EXPECT_EQ(fwd, Fwd::get(*container, 1));
  EXPECT_EQ(marking, Marking::get(*container, 1));
  Fwd::del(*container, 1);
  EXPECT_TRUE(Marking::get(*container, 1));
}

TEST_F(BothKinds, AreTakenOutByTheDestructorForwardingFirst) {
  Marking::is(*container, 1);
  auto const fwd = Fwd::is(*container, 2);
  Marking::is(*container, 3);
  auto const weak = listen<ContainerListener>(container, heard);
  weak->isWeakReferenceIs(true);
  weak->during = [&] { EXPECT_FALSE(fwd->parent()); };
  container = nullptr;
  EXPECT_EQ(0U, heard.take().find("fwdAction 00000002-0000-0000 dscpAction 0000000"));
  EXPECT_FALSE(weak->notifier());
}

TEST_F(BothKinds, ContainerOfNothingEndsSilently) {
  auto const weak = listen<ContainerListener>(container, heard);
  weak->isWeakReferenceIs(true);
  container = nullptr;
  EXPECT_EQ("", heard.take());
}

TEST_F(BothKinds, FrameRoundsComeBackWithTheirIds) {
  auto const listener = listen<ContainerListener>(container, heard);
  listener->during = [] { throw 1; };
  container->isNondestructingIs(true);
  container->isNondestructingIs(true);
  container->zeroReferencesIs(false);
  EXPECT_EQ("isNondestructing !6 zeroReferences !5", heard.take());
  container->isNondestructingIs(false);
}

} // namespace
