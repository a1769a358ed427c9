#include "Pbr/Pbr.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using Lomu::IpGenAddr;
using Pbr::PbrActionType;
using Pbr::PbrFwdAction;
using Vyx::Name;

constexpr Vyx::AttributeId kEqualTo = 261;
constexpr Vyx::AttributeId kFwdActionType = 386;
constexpr Vyx::AttributeId kNexthop = 387;
constexpr Vyx::AttributeId kRecursive = 388;
constexpr Vyx::AttributeId kNexthopGroup = 389;

class Reactor final : public PbrFwdAction::Notifiee {
public:
  std::string heard;
  void onNexthop(IpGenAddr const& key) override { heard += "nexthop " + text(key.stringValue()) + ";"; }
  void onRecursive() override { heard += "recursive;"; }
  void onNexthopGroup() override { heard += "nexthopGroup;"; }
  void onIsNondestructing() override { heard += "isNondestructing;"; }

private:
  static std::string text(Vyx::String8 const& text) { return std::string(text.view()); }
};

class FwdActionReflection : public testing::Test {
protected:
  FwdActionReflection() {
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(action));
  }
  static Object hop(char const* address) { return valueOf(IpGenAddr(address)); }
  Object equalTo(Arguments arguments) { return read(object, kEqualTo, listOf(arguments)); }

  Vyx::Ptr<PbrFwdAction> const action =
      Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::nexthopAction);
  Object const object = on(action);
  Object const constant = onConst(action);
  Vyx::Ptr<Reactor> const reactor = Vyx::ptrFromNew(new Reactor);
};

TEST_F(FwdActionReflection, WriteOnAConstInstanceIsRefusedWhateverTheAttribute) {
  EXPECT_EQ(kConst, failureOf(constant, Op::write, 9999));
  EXPECT_EQ(kConst, failureOf(constant, Op::firstModifying, kRecursive));
  EXPECT_EQ(kConst, failureOf(constant, Op::lastModifying, kRecursive));
  EXPECT_EQ(unsupported(static_cast<Op::OpId>(127), "recursive"),
            failureOf(constant, static_cast<Op::OpId>(127), kRecursive));
  EXPECT_EQ(unsupported(Op::equal, "recursive"), failureOf(constant, Op::equal, kRecursive));
}

TEST_F(FwdActionReflection, ReadOnAConstInstanceWorks) {
  action->recursiveIs(true);
  EXPECT_TRUE(readAs<bool>(constant, kRecursive));
  EXPECT_EQ(Pbr::nexthopAction, readAs<PbrActionType>(constant, kFwdActionType));
  EXPECT_TRUE(constant->isConst());
  EXPECT_FALSE(object->isConst());
}

TEST_F(FwdActionReflection, TypeOfForwardingIsReadOnly) {
  EXPECT_EQ(Pbr::nexthopAction, readAs<PbrActionType>(object, kFwdActionType));
  EXPECT_EQ(Pbr::_fwkType_PbrActionType(), read(object, kFwdActionType)->type());
  expectReadOnlyChecks(object, constant, kFwdActionType, "fwdActionType");
}

TEST_F(FwdActionReflection, ScalarIsWrittenThroughItsSetter) {
  write(object, kRecursive, true);
  EXPECT_TRUE(action->recursive());
  write(object, kRecursive, true);
  write(object, kNexthopGroup, Name("g"));
  EXPECT_EQ(Name("g"), action->nexthopGroup());
  EXPECT_EQ("recursive;nexthopGroup;", reactor->heard);
}

TEST_F(FwdActionReflection, ScalarsCheckInOrder) {
  Object const number = valueOf<unsigned>(1);
  expectScalarChecks(object, constant, kRecursive, "recursive", number, "U32");
  expectScalarChecks(object, constant, kNexthopGroup, "nexthopGroup", number, "U32");
}

TEST_F(FwdActionReflection, RefusedValueLeavesTheEntityUnchanged) {
  write(object, kNexthopGroup, Name("g"));
  reactor->heard.clear();
  EXPECT_EQ(badType("String8"),
            failureOf(object, Op::write, kNexthopGroup, nullptr, valueOf(Vyx::String8("h"))));
  EXPECT_EQ(badType("U8"), failureOf(object, Op::write, kRecursive, nullptr, valueOf<unsigned char>(1)));
  EXPECT_EQ(Name("g"), action->nexthopGroup());
  EXPECT_FALSE(action->recursive());
  EXPECT_EQ("", reactor->heard);
}

TEST_F(FwdActionReflection, CollectionWithoutAnIndexTellsItsCounts) {
  auto const version = apply(object, Op::version, kNexthop);
  EXPECT_EQ(Vyx::typeOf<unsigned>(), version->type());
  action->nexthopIs("10.0.0.1", true);
  action->nexthopIs("10.0.0.2", true);
  action->nexthopIs("10.0.0.2", false);
  action->nexthopDel("10.0.0.1");
  EXPECT_EQ(1U, Vyx::unwrap<unsigned>(*apply(object, Op::memberCount, kNexthop)));
  EXPECT_EQ(Vyx::unwrap<unsigned>(*version) + 3,
            Vyx::unwrap<unsigned>(*apply(object, Op::version, kNexthop)));
}

TEST_F(FwdActionReflection, CollectionWithoutAnIndexHasNoOtherOperation) {
  for (auto code : {Op::read, Op::contains, Op::write, Op::del, Op::equal, kUnknownCode})
    EXPECT_EQ(unsupported(code, "nexthop"), failureOf(object, code, kNexthop, nullptr, valueOf(true)));
}

TEST_F(FwdActionReflection, MemberIsWrittenReadFoundAndDeletedByItsKey) {
  EXPECT_FALSE(apply(object, Op::write, kNexthop, hop("10.0.0.1"), valueOf(true)));
  EXPECT_TRUE(readAs<bool>(object, kNexthop, hop("10.0.0.1")));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(constant, Op::contains, kNexthop, hop("10.0.0.1"))));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(object, Op::del, kNexthop, hop("10.0.0.1"))));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::contains, kNexthop, hop("10.0.0.1"))));
  EXPECT_FALSE(readAs<bool>(object, kNexthop, hop("10.0.0.1")));
  EXPECT_EQ("nexthop 10.0.0.1;nexthop 10.0.0.1;", reactor->heard);
}

TEST_F(FwdActionReflection, EqualMemberValueTellsNobody) {
  apply(object, Op::write, kNexthop, hop("10.0.0.1"), valueOf(true));
  reactor->heard.clear();
  apply(object, Op::write, kNexthop, hop("10.0.0.1"), valueOf(true));
  EXPECT_EQ("", reactor->heard);
}

TEST_F(FwdActionReflection, DeletingAnAbsentMemberGivesFalseAndCallsNobody) {
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::del, kNexthop, hop("10.0.0.1"))));
  EXPECT_EQ("", reactor->heard);
}

TEST_F(FwdActionReflection, DeletingAMemberGivesItsValue) {
  action->nexthopIs("10.0.0.1", false);
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::del, kNexthop, hop("10.0.0.1"))));
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(FwdActionReflection, MemberChecksInOrder) {
  Object const key = hop("10.0.0.1");
  Object const number = valueOf<unsigned>(1);
  EXPECT_EQ(kConst, failureOf(constant, kUnknownModifyingCode, kNexthop, number, number));
  EXPECT_EQ(badType("U32"), failureOf(object, kUnknownModifyingCode, kNexthop, number, number));
  EXPECT_EQ(unsupported(kUnknownModifyingCode, "nexthop"),
            failureOf(object, kUnknownModifyingCode, kNexthop, key, number));
  EXPECT_EQ(unsupported(Op::memberCount, "nexthop"), failureOf(object, Op::memberCount, kNexthop, key));
  EXPECT_EQ(unsupported(Op::version, "nexthop"), failureOf(object, Op::version, kNexthop, key));
  EXPECT_EQ(badType("nexthop"), failureOf(object, Op::write, kNexthop, key));
  EXPECT_EQ(badType("U32"), failureOf(object, Op::write, kNexthop, key, number));
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(FwdActionReflection, EqualToTakesItsArgumentByName) {
  auto const same = Pbr::pbrFwdActionFactory("other", UniqueId(4, 5, 6), Pbr::nexthopAction);
  auto const drop = Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::dropAction);
  EXPECT_TRUE(Vyx::unwrap<bool>(*equalTo({{"other", on(same)}})));
  EXPECT_TRUE(Vyx::unwrap<bool>(*equalTo({{"other", onConst(same)}})));
  EXPECT_FALSE(Vyx::unwrap<bool>(*equalTo({{"other", on(drop)}})));
  EXPECT_TRUE(Vyx::unwrap<bool>(*read(constant, kEqualTo, listOf({{"other", on(same)}}))));
}

TEST_F(FwdActionReflection, EqualToTakesAMissingActionForNone) {
  EXPECT_FALSE(Vyx::unwrap<bool>(*equalTo({})));
  EXPECT_FALSE(Vyx::unwrap<bool>(*equalTo({{"other", nullptr}})));
}

TEST_F(FwdActionReflection, EqualToChecksInOrder) {
  Object const wrongName = listOf({{"another", object}});
  EXPECT_EQ(kConst, failureOf(constant, Op::write, kEqualTo, wrongName));
  EXPECT_EQ(unsupported(Op::write, "equalTo"), failureOf(object, Op::write, kEqualTo, wrongName));
  EXPECT_EQ(unsupported(Op::memberCount, "equalTo"), failureOf(object, Op::memberCount, kEqualTo));
  EXPECT_EQ(badType("List"), failureOf(object, Op::read, kEqualTo));
  EXPECT_EQ(badType("Vyx::GenericIf::List_"), failureOf(object, Op::read, kEqualTo, object));
  EXPECT_EQ(unknownArgument("equalTo"), failureOf(object, Op::read, kEqualTo, wrongName));
}

TEST_F(FwdActionReflection, EqualToRefusesAnUnknownArgumentBesideTheKnown) {
  Object const both = listOf({{"other", object}, {"another", object}});
  EXPECT_EQ(unknownArgument("equalTo"), failureOf(object, Op::read, kEqualTo, both));
}

TEST_F(FwdActionReflection, EqualToRefusesWhatIsNoAction) {
  Object const config = on(Pbr::configFactory("c"));
  EXPECT_EQ(badType("Config"), failureOf(object, Op::read, kEqualTo, listOf({{"other", config}})));
  EXPECT_EQ(badType("U32"), failureOf(object, Op::read, kEqualTo, listOf({{"other", valueOf<unsigned>(1)}})));
}

TEST_F(FwdActionReflection, AttributesOfTheBasesAreReached) {
  EXPECT_EQ(Name("web"), readAs<Name>(object, 258));
  EXPECT_EQ(PolicyMap::actionPbrForward, readAs<PolicyMap::ActionType>(object, 259));
  EXPECT_EQ(UniqueId(1, 2, 3), readAs<UniqueId>(object, 260));
  EXPECT_TRUE(readAs<bool>(object, 154));
  expectReadOnlyChecks(object, constant, 260, "id");
  expectReadOnlyChecks(object, constant, 154, "vyxHasAttrLogInterface");
}

TEST_F(FwdActionReflection, NondestructingIsSwitchedInTheReferenceWord) {
  EXPECT_FALSE(readAs<bool>(object, 6));
  write(object, 6, true);
  EXPECT_TRUE(action->isNondestructing());
  EXPECT_TRUE(readAs<bool>(object, 6));
  write(object, 6, false);
  EXPECT_EQ("isNondestructing;isNondestructing;", reactor->heard);
  expectScalarChecks(object, constant, 6, "isNondestructing", valueOf<unsigned>(1), "U32");
}

TEST_F(FwdActionReflection, UnknownAttributeIsRefused) {
  EXPECT_EQ(unknownAttribute("9999"), failureOf(object, Op::read, 9999));
  EXPECT_EQ(unknownAttribute("9999"), failureOf(object, Op::write, 9999, nullptr, valueOf(true)));
}

TEST_F(FwdActionReflection, NamesAnswerToIdsAlongTheLine) {
  EXPECT_EQ(388, object->attributeId("recursive"));
  EXPECT_EQ(261, object->attributeId("equalTo"));
  EXPECT_EQ(258, object->attributeId("className"));
  EXPECT_EQ(6, object->attributeId("isNondestructing"));
  EXPECT_EQ(unknownAttribute("Recursive"), failure([&] { object->attributeId("Recursive"); }));
  EXPECT_EQ(unknownAttribute(""), failure([&] { object->attributeId(""); }));
}

TEST_F(FwdActionReflection, IdsAnswerToNames) {
  EXPECT_EQ("recursive", object->attributeString(388));
  EXPECT_EQ("className", object->attributeString(258));
  EXPECT_EQ("unknown", object->attributeString(9999));
}

TEST_F(FwdActionReflection, RawPointerIsGivenForTheTypeAndItsBases) {
  void* const entity = static_cast<Vyx::Entity*>(action.ptr());
  EXPECT_EQ(PbrFwdAction::_fwkType(), object->type());
  EXPECT_EQ(entity, object->rawPtr(PbrFwdAction::_fwkType()));
  EXPECT_EQ(entity, object->rawPtr(PolicyMap::Action::_fwkType()));
  EXPECT_EQ(entity, constant->rawPtr(Vyx::Entity::_fwkType()));
  EXPECT_EQ(entity, object->object());
}

TEST_F(FwdActionReflection, RawPointerForAnotherTypeIsRefusedUnderTheOwnName) {
  EXPECT_EQ(badType("PbrFwdAction"), failure([&] { object->rawPtr(Pbr::PbrActionSetDscp::_fwkType()); }));
  EXPECT_EQ(badType("PbrFwdAction"), failure([&] { object->rawPtr(Vyx::typeOf<bool>()); }));
  EXPECT_EQ(badType("PbrFwdAction"), failure([&] { object->rawPtr(nullptr); }));
}

TEST_F(FwdActionReflection, HashIsThatOfTheObject) {
  auto const other = Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::nexthopAction);
  EXPECT_EQ(object->hash(), constant->hash());
  EXPECT_NE(object->hash(), on(other)->hash());
}

TEST_F(FwdActionReflection, InterfaceKeepsTheEntityAlive) {
  std::uint32_t const before = action->references();
  Object const another = on(action);
  EXPECT_EQ(before + 1, action->references());
}

} // namespace
