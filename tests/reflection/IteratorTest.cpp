// Walking a collection through reflection.

#include "Pbr/Pbr.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using Lomu::IpGenAddr;
using Walk = GenericIf::AttributeIteratorConst;
using ConstObject = Vyx::Ptr<GenericIf const>;

constexpr Vyx::AttributeId kNexthop = 387;

std::string textOf(Object const& object) { return std::string(object->strRep().view()); }

class ReflectionWalk : public testing::Test {
protected:
  ReflectionWalk() {
    for (char const* address : {"10.0.0.1", "10.0.0.2", "10.0.0.3"})
      action->nexthopIs(address, std::string_view(address) == "10.0.0.2");
  }
  // The keys in the order of the collection itself.
  std::vector<std::string> keys() const {
    std::vector<std::string> keys;
    for (auto at = action->nexthopIteratorConst(); at; ++at)
      keys.push_back(std::string(at.key().stringValue().view()));
    return keys;
  }
  // The keys that a walk meets from where it stands.
  std::vector<std::string> walked(Walk const& at) const {
    std::vector<std::string> keys;
    for (; object->attributeIterator_nonNull(at); object->attributeIterator_iterInc(at))
      keys.push_back(textOf(object->attributeIterator_iterKey(at)));
    return keys;
  }
  static ConstObject hop(std::string const& address) { return valueOf(IpGenAddr(Vyx::String8(address))); }

  Vyx::Ptr<Pbr::PbrFwdAction> const action =
      Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::nexthopAction);
  Object const object = on(action);
};

TEST_F(ReflectionWalk, MeetsEveryMemberInTheCollectionsOrder) {
  EXPECT_EQ(keys(), walked(object->attributeIteratorConst(kNexthop)));
  EXPECT_EQ(keys(), walked(object->attributeIterator(kNexthop)));
  EXPECT_EQ(keys(), walked(onConst(action)->attributeIteratorConst(kNexthop)));
}

TEST_F(ReflectionWalk, MeetsNobodyInAnEmptyCollection) {
  action->nexthopDelAll();
  EXPECT_FALSE(object->attributeIterator_nonNull(object->attributeIteratorConst(kNexthop)));
}

TEST_F(ReflectionWalk, ReadsKeyAndValue) {
  Walk const at = object->attributeIteratorKey(kNexthop, hop("10.0.0.2"));
  EXPECT_EQ(IpGenAddr("10.0.0.2"), Vyx::unwrap<IpGenAddr>(*object->attributeIterator_iterKey(at)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*object->attributeIterator_iterObj(at)));
  GenericIf const& constant = *object;
  EXPECT_EQ("true", std::string(constant.attributeIterator_iterObj(at)->strRep().view()));
}

TEST_F(ReflectionWalk, StartsAtTheKey) {
  for (std::size_t i = 0; i < keys().size(); ++i) {
    std::vector<std::string> const all = keys();
    std::vector<std::string> const rest(all.begin() + static_cast<std::ptrdiff_t>(i), all.end());
    EXPECT_EQ(rest, walked(object->attributeIteratorKeyConst(kNexthop, hop(all[i]))));
  }
}

TEST_F(ReflectionWalk, StepAnswersNothingAndStopsAtTheEnd) {
  Walk const at = object->attributeIteratorConst(kNexthop);
  for (int step = 0; step < 5; ++step) EXPECT_FALSE(object->attributeIterator_iterInc(at));
  EXPECT_FALSE(object->attributeIterator_nonNull(at));
}

TEST_F(ReflectionWalk, MemberAtTheEndIsRefusedByTheAttributesName) {
  Walk const at = object->attributeIteratorConst(kNexthop);
  walked(at);
  GenericIf const& constant = *object;
  EXPECT_EQ(badType("nexthop"), failure([&] { object->attributeIterator_iterObj(at); }));
  EXPECT_EQ(badType("nexthop"), failure([&] { constant.attributeIterator_iterObj(at); }));
  EXPECT_EQ(badType("nexthop"), failure([&] { object->attributeIterator_iterKey(at); }));
}

TEST_F(ReflectionWalk, CloneStandsAtTheSamePlaceAndGoesItsOwnWay) {
  Walk const at = object->attributeIteratorConst(kNexthop);
  object->attributeIterator_iterInc(at);
  Walk const clone = object->attributeIterator_iterClone(at);
  EXPECT_EQ(kNexthop, clone.id());
  object->attributeIterator_iterInc(at);
  EXPECT_EQ(keys()[1], textOf(object->attributeIterator_iterKey(clone)));
  EXPECT_EQ(keys()[2], textOf(object->attributeIterator_iterKey(at)));
}

TEST_F(ReflectionWalk, DeletedIteratorStandsNowhere) {
  Walk const at = object->attributeIteratorConst(kNexthop);
  Walk const clone = object->attributeIterator_iterClone(at);
  object->attributeIterator_iterDel(at);
  EXPECT_FALSE(object->attributeIterator_nonNull(at));
  EXPECT_FALSE(object->attributeIterator_iterInc(at));
  EXPECT_EQ(badType("nexthop"), failure([&] { object->attributeIterator_iterKey(at); }));
  EXPECT_FALSE(object->attributeIterator_nonNull(object->attributeIterator_iterClone(at)));
  EXPECT_EQ(3U, walked(clone).size());
}

TEST_F(ReflectionWalk, OutlivesTheDeletionOfTheMemberItStandsOn) {
  std::vector<std::string> const before = keys();
  Walk const at = object->attributeIteratorConst(kNexthop);
  action->nexthopDel(before[0].c_str());
  EXPECT_EQ(before[0], textOf(object->attributeIterator_iterKey(at)));
  object->attributeIterator_iterInc(at);
  EXPECT_EQ((std::vector<std::string>{before[1], before[2]}), walked(at));
}

TEST_F(ReflectionWalk, OutlivesTheDeletionOfEveryMember) {
  std::size_t met = 0;
  Walk const at = object->attributeIteratorConst(kNexthop);
  for (; object->attributeIterator_nonNull(at); object->attributeIterator_iterInc(at), ++met)
    apply(object, Op::del, kNexthop, object->attributeIterator_iterKey(at));
  EXPECT_EQ(3U, met);
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(ReflectionWalk, KeepsTheObjectAlive) {
  auto lonely = Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::nexthopAction);
  lonely->nexthopIs("10.0.0.1", true);
  Object interface = on(lonely);
  Walk at = interface->attributeIteratorConst(kNexthop);
  lonely = nullptr;
  interface = nullptr;
  EXPECT_EQ("10.0.0.1", textOf(at.key()));
  EXPECT_FALSE(++at);
}

TEST_F(ReflectionWalk, NullKeyIsRefused) {
  EXPECT_EQ(badType("vyx_index"), failure([&] { object->attributeIteratorKeyConst(kNexthop, nullptr); }));
  EXPECT_EQ(badType("vyx_index"), failure([&] { object->attributeIteratorKey(kNexthop, nullptr); }));
}

TEST_F(ReflectionWalk, KeyOfAnotherTypeIsRefused) {
  EXPECT_EQ(badType("U32"),
            failure([&] { object->attributeIteratorKeyConst(kNexthop, valueOf<unsigned>(1)); }));
}

TEST_F(ReflectionWalk, AttributeIsLookedAtBeforeTheKey) {
  EXPECT_EQ(unsupported(Op::read, "recursive") + " with an index",
            failure([&] { object->attributeIteratorKeyConst(388, nullptr); }));
  EXPECT_EQ(unknownAttribute("9999"), failure([&] { object->attributeIteratorKeyConst(9999, nullptr); }));
}

TEST_F(ReflectionWalk, WhatIsNoCollectionIsRefused) {
  EXPECT_EQ(unsupported(Op::read, "recursive") + " with an index",
            failure([&] { object->attributeIteratorConst(388); }));
  EXPECT_EQ(unsupported(Op::read, "className") + " with an index",
            failure([&] { object->attributeIterator(258); }));
  EXPECT_EQ(unknownAttribute("9999"), failure([&] { object->attributeIteratorConst(9999); }));
}

TEST_F(ReflectionWalk, OwnedMembersAreInterfacesOnThem) {
  auto const container = Pbr::pbrActionContainerFactory("Pbr");
  auto const member = container->dscpActionIs("web", UniqueId(7, 0, 0), Pbr::Dscp(46));
  Object const over = on(container);
  Walk at = over->attributeIteratorConst(259);
  EXPECT_EQ(member.ptr(), entityOn(over->attributeIterator_iterObj(at)));
  EXPECT_EQ(UniqueId(7, 0, 0), Vyx::unwrap<UniqueId>(*over->attributeIterator_iterKey(at)));
  EXPECT_EQ(unsupported(Op::read, "dscp") + " with an index",
            failure([&] { at.value()->attributeIteratorConst(386); }));
}

} // namespace
