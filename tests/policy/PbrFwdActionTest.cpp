#include "PolicyListeners.h"

#include "support/Invariants.h"
#include "support/TextForms.h"
#include "support/Walks.h"

namespace {

using Pbr::PbrActionType;
using Addr = Lomu::IpGenAddr;
using Action = Vyx::Ptr<Pbr::PbrFwdAction>;

Addr const x("10.0.0.1");
Addr const y("10.0.0.2");
Addr const z("2001:db8::1");

Action made(PbrActionType type) { return Pbr::pbrFwdActionFactory("web", actionId(1), type); }

class PbrFwdAction : public testing::Test {
protected:
  ~PbrFwdAction() override { checkInvariants(*action); }

  Heard heard;
  Action const action = made(Pbr::nexthopAction);
  Vyx::Ptr<FwdListener> const listener = listen<FwdListener>(action, heard);

  std::string told() { return heard.take(); }
  void fill() {
    for (Addr const& hop : {x, y, z}) action->nexthopIs(hop, true);
    told();
  }
};

TEST_F(PbrFwdAction, IsMadeOfItsParameters) {
  EXPECT_EQ("web", action->className());
  EXPECT_EQ(actionId(1), action->id());
  EXPECT_EQ(Pbr::nexthopAction, action->fwdActionType());
  EXPECT_EQ(4U, static_cast<unsigned>(action->type()));
  EXPECT_EQ(0U, action->nexthops());
  EXPECT_FALSE(action->recursive());
  EXPECT_EQ("", action->nexthopGroup());
  EXPECT_FALSE(action->parent());
  EXPECT_FALSE(action->fwkHmNext_);
}

TEST_F(PbrFwdAction, NexthopIsEnteredAndTold) {
  action->nexthopIs(x, true);
  EXPECT_EQ("nexthop 10.0.0.1", told());
  EXPECT_TRUE(action->nexthop(x));
  EXPECT_EQ(1U, action->nexthops());
}

TEST_F(PbrFwdAction, NexthopOfFalseIsAMember) {
  action->nexthopIs(x, false);
  EXPECT_EQ("nexthop 10.0.0.1", told());
  EXPECT_FALSE(action->nexthop(x));
  EXPECT_EQ(1U, action->nexthops());
}

TEST_F(PbrFwdAction, SameValueIsToldOnceAndAnotherAgain) {
  action->nexthopIs(x, true);
  action->nexthopIs(x, true);
  EXPECT_EQ("nexthop 10.0.0.1", told());
  action->nexthopIs(x, false);
  EXPECT_EQ("nexthop 10.0.0.1", told());
}

TEST_F(PbrFwdAction, ChangedMemberKeepsItsPlace) {
  fill();
  std::string const before = keysFrom(action->nexthopIterator());
  auto const record = action->nexthopIterator(y).member();
  action->nexthopIs(y, false);
  EXPECT_EQ(before, keysFrom(action->nexthopIterator()));
  EXPECT_EQ(record, action->nexthopIterator(y).member());
  EXPECT_FALSE(record->value());
}

TEST_F(PbrFwdAction, FamiliesOfTheSameBytesAreTwoNexthops) {
  action->nexthopIs("10.0.0.1", true);
  action->nexthopIs("a00:1::", true);
  EXPECT_EQ(2U, action->nexthops());
}

TEST_F(PbrFwdAction, RemovalReturnsTheValueAndIsTold) {
  fill();
  EXPECT_TRUE(action->nexthopDel(x));
  EXPECT_EQ("nexthop 10.0.0.1", told());
  EXPECT_EQ(2U, action->nexthops());
}

TEST_F(PbrFwdAction, RemovalOfFalseReturnsFalseButIsTold) {
  action->nexthopIs(x, false);
  told();
  EXPECT_FALSE(action->nexthopDel(x));
  EXPECT_EQ("nexthop 10.0.0.1", told());
}

TEST_F(PbrFwdAction, RemovalOfAnAbsentOneReturnsFalseAndIsNotTold) {
  EXPECT_FALSE(action->nexthopDel(x));
  EXPECT_EQ("", told());
}

TEST_F(PbrFwdAction, NexthopIsGoneWhenTheReactorsRun) {
  fill();
  bool there = true;
  listener->during = [&] { there = action->nexthop(x); };
  EXPECT_TRUE(action->nexthopDel(x));
  EXPECT_FALSE(there);
}

TEST_F(PbrFwdAction, RemovalUnderAnIteratorLeavesItValid) {
  fill();
  auto at = action->nexthopIterator();
  Addr const first = at.key();
  std::string const rest = keysFrom(++action->nexthopIterator());
  EXPECT_TRUE(action->nexthopDel(at));
  EXPECT_EQ("nexthop " + printed(first), told());
  EXPECT_EQ(rest, keysFrom(++at));
}

TEST_F(PbrFwdAction, RemovalUnderAnIteratorOnNoMemberIsFalse) {
  auto at = action->nexthopIterator();
  EXPECT_FALSE(action->nexthopDel(at));
  EXPECT_EQ("", told());
}

TEST_F(PbrFwdAction, RemovalOfAllTellsOfEachInOrderAndNeverWithoutAKey) {
  fill();
  Heard each;
  for (auto at = action->nexthopIterator(); at; ++at) each.note("nexthop " + printed(at.key()));
  action->nexthopDelAll();
  EXPECT_EQ(each.take(), told());
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(PbrFwdAction, RemovalOfAllFromNothingIsNotTold) {
  action->nexthopDelAll();
  EXPECT_EQ("", told());
}

TEST_F(PbrFwdAction, NewRecordIsEnteredAndNobodyIsTold) {
  auto const record = action->newNexthop(x, true);
  EXPECT_EQ("", told());
  EXPECT_EQ(2U, record->references());
  EXPECT_TRUE(action->nexthop(x));
}

TEST_F(PbrFwdAction, NotifyTellsOfAnyKey) {
  action->nexthopNotify(z);
  EXPECT_EQ("nexthop 2001:db8::1", told());
}

TEST_F(PbrFwdAction, IteratorStartsAtTheKeyOrAfterIt) {
  fill();
  EXPECT_EQ(x, action->nexthopIterator(x).key());
  auto second = ++action->nexthopIterator();
  Addr const key = second.key();
  auto third = ++second;
  Addr const next = third.key();
  action->nexthopDel(key);
  EXPECT_EQ(next, action->nexthopIterator(key).key());
}

TEST_F(PbrFwdAction, IteratorAfterTheLastMemberStandsOnNone) {
  fill();
  auto last = action->nexthopIterator();
  for (auto at = last; at; ++at) last = at;
  Addr const key = last.key();
  action->nexthopDel(key);
  EXPECT_FALSE(action->nexthopIterator(key));
}

TEST_F(PbrFwdAction, IteratorKeepsTheActionAlive) {
  fill();
  EXPECT_EQ(2U, action->references());
  auto const at = action->nexthopIterator();
  EXPECT_EQ(3U, action->references());
}

TEST_F(PbrFwdAction, SettersTellOncePerChange) {
  action->recursiveIs(true);
  action->recursiveIs(true);
  action->nexthopGroupIs("gold");
  action->nexthopGroupIs("gold");
  EXPECT_EQ("recursive nexthopGroup", told());
}

TEST_F(PbrFwdAction, StoredValueStartsNoRound) {
  action->recursiveIs(false);
  action->nexthopGroupIs("");
  EXPECT_EQ("", told());
}

TEST_F(PbrFwdAction, ExceptionComesBackWithTheAttributesId) {
  listener->during = [] { throw 1; };
  auto const second = listen<FwdListener>(action, heard, "second");
  action->recursiveIs(true);
  EXPECT_EQ("recursive !388 second.recursive", told());
  EXPECT_TRUE(action->recursive());
  action->nexthopGroupIs("gold");
  action->nexthopIs(x, true);
  EXPECT_EQ("nexthopGroup !389 second.nexthopGroup nexthop 10.0.0.1 !387 second.nexthop 10.0.0.1", told());
}

TEST_F(PbrFwdAction, ReactorOfTheBaseHearsNothingAndBringsNoException) {
  auto const base = listen<Recorder<PolicyMap::Action>>(action, heard, "base");
  action->recursiveIs(true);
  action->nexthopIs(x, true);
  EXPECT_EQ("recursive nexthop 10.0.0.1", told());
  action->zeroReferencesIs(true);
  EXPECT_EQ("zeroReferences base.zeroReferences", told());
}

TEST_F(PbrFwdAction, SetterLooksAtNoType) {
  auto const drop = made(Pbr::dropAction);
  drop->nexthopIs(x, true);
  drop->nexthopGroupIs("gold");
  drop->recursiveIs(true);
  EXPECT_TRUE(drop->nexthop(x) && drop->recursive());
  EXPECT_EQ("gold", drop->nexthopGroup());
}

TEST(PbrFwdActionEnd, TellsNobodyOfTheNexthopsThatGo) {
  Heard heard;
  Action action = made(Pbr::nexthopAction);
  action->nexthopIs(x, true);
  auto const record = action->nexthopIterator().member();
  auto const weak = listen<FwdListener>(action, heard);
  weak->isWeakReferenceIs(true);
  action = nullptr;
  EXPECT_EQ("", heard.take());
  EXPECT_FALSE(weak->notifier());
  EXPECT_EQ(1U, record->references());
}

// Two actions of one type.
class PbrFwdActionEquality : public testing::TestWithParam<PbrActionType> {
protected:
  Action const a = made(GetParam());
  Action const b = Pbr::pbrFwdActionFactory("voice", actionId(2), GetParam());
};

TEST_P(PbrFwdActionEquality, FreshOnesAreEqualWhateverTheirClassAndId) {
  EXPECT_TRUE(a->equalTo(b));
  EXPECT_TRUE(b->equalTo(a));
}

TEST_P(PbrFwdActionEquality, EqualsNeitherNullNorAnotherTypeOfAction) {
  EXPECT_FALSE(a->equalTo(nullptr));
  EXPECT_FALSE(a->equalTo(Pbr::pbrActionSetDscpFactory("web", actionId(1), 46)));
}

TEST_P(PbrFwdActionEquality, EqualsNoOneThatForwardsOtherwise) {
  for (unsigned type = 0; type < 4; ++type)
    EXPECT_EQ(type == GetParam(), a->equalTo(made(static_cast<PbrActionType>(type))));
}

TEST_P(PbrFwdActionEquality, OnlyWhatTheTypeUsesCounts) {
  bool const hops = GetParam() == Pbr::nexthopAction;
  bool const group = GetParam() == Pbr::nexthopGroupAction;
  a->nexthopIs(x, true);
  EXPECT_EQ(!hops, a->equalTo(b));
  a->nexthopDel(x);
  a->recursiveIs(true);
  EXPECT_EQ(!hops, a->equalTo(b));
  a->recursiveIs(false);
  a->nexthopGroupIs("gold");
  EXPECT_EQ(!group, a->equalTo(b));
  b->nexthopGroupIs("gold");
  EXPECT_TRUE(a->equalTo(b));
}

TEST_P(PbrFwdActionEquality, ComparisonLeavesNoReferenceBehind) {
  a->nexthopIs(x, true);
  a->equalTo(b);
  b->equalTo(a);
  EXPECT_EQ(1U, a->references());
  EXPECT_EQ(1U, b->references());
}

INSTANTIATE_TEST_SUITE_P(OfEachType, PbrFwdActionEquality,
                         testing::Values(Pbr::noAction, Pbr::dropAction, Pbr::nexthopAction,
                                         Pbr::nexthopGroupAction, static_cast<PbrActionType>(7)));

class NexthopEquality : public testing::Test {
protected:
  Action const a = made(Pbr::nexthopAction);
  Action const b = made(Pbr::nexthopAction);
};

TEST_F(NexthopEquality, SubsetEqualsTheWholeButNotTheOtherWayRound) {
  a->nexthopIs(x, true);
  b->nexthopIs(x, true);
  b->nexthopIs(y, true);
  EXPECT_TRUE(a->equalTo(b));
  EXPECT_FALSE(b->equalTo(a));
}

TEST_F(NexthopEquality, OnlyTheOthersValuesAreRead) {
  a->nexthopIs(x, false);
  b->nexthopIs(x, true);
  EXPECT_TRUE(a->equalTo(b));
  EXPECT_FALSE(b->equalTo(a));
}

TEST_F(NexthopEquality, OwnFalseOnesAreLookedUpToo) {
  a->nexthopIs(x, false);
  EXPECT_FALSE(a->equalTo(b));
  b->nexthopIs(x, false);
  EXPECT_FALSE(a->equalTo(b));
}

TEST_F(NexthopEquality, RecursionMustAgree) {
  a->recursiveIs(true);
  EXPECT_FALSE(a->equalTo(b));
  b->recursiveIs(true);
  EXPECT_TRUE(a->equalTo(b));
}

TEST(GroupEquality, RecursionAndNexthopsDoNotCount) {
  auto const a = made(Pbr::nexthopGroupAction);
  auto const b = made(Pbr::nexthopGroupAction);
  for (auto const& action : {a, b}) action->nexthopGroupIs("gold");
  a->recursiveIs(true);
  a->nexthopIs(x, true);
  EXPECT_TRUE(a->equalTo(b));
  EXPECT_TRUE(b->equalTo(a));
}

TEST(DropEquality, NothingButTheTypeCounts) {
  auto const a = made(Pbr::dropAction);
  auto const b = made(Pbr::dropAction);
  a->nexthopIs(x, true);
  a->nexthopGroupIs("gold");
  b->nexthopIs(y, true);
  b->recursiveIs(true);
  EXPECT_TRUE(a->equalTo(b));
}

} // namespace
