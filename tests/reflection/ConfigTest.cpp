// Reflection on a configuration, whose children it owns, and on the other entities below it.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Reflecting.h"

namespace {

using Kest::UniqueId;
using Pbr::Config;
using Pbr::PbrActionContainer;
using Vyx::Name;

class ConfigReactor final : public Config::Notifiee {
public:
  std::string heard;
  void onBgpPbrRedirect() override { heard += "bgpPbrRedirect;"; }
  void onPbrActions() override { heard += "pbrActions;"; }
};

class ConfigReflection : public testing::Test {
protected:
  ConfigReflection() {
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(config));
  }
  Vyx::Ptr<Config> const config = Pbr::configFactory("running");
  Object const object = on(config);
  Object const constant = onConst(config);
  Vyx::Ptr<ConfigReactor> const reactor = Vyx::ptrFromNew(new ConfigReactor);
};

TEST_F(ConfigReflection, SwitchesAreReadAndWritten) {
  EXPECT_FALSE(readAs<bool>(object, 258));
  EXPECT_TRUE(readAs<bool>(object, 260));
  write(object, 259, true);
  write(object, 260, false);
  EXPECT_TRUE(config->bgpPbrRedirect());
  EXPECT_FALSE(config->pbrEnableNonAgingMacAddr());
  EXPECT_EQ("bgpPbrRedirect;", reactor->heard);
}

TEST_F(ConfigReflection, SwitchesCheckInOrder) {
  Object const number = valueOf<unsigned>(1);
  expectScalarChecks(object, constant, 258, "pbrUnresolvedNexthopActionDrop", number, "U32");
  expectScalarChecks(object, constant, 259, "bgpPbrRedirect", number, "U32");
  expectScalarChecks(object, constant, 260, "pbrEnableNonAgingMacAddr", number, "U32");
}

TEST_F(ConfigReflection, OwnedChildIsReadAsAnInterfaceOnIt) {
  EXPECT_EQ(config->pbrActions().ptr(), entityOn(read(object, 261)));
  EXPECT_EQ(config->cmapType().ptr(), entityOn(read(object, 262)));
  EXPECT_EQ(config->pmapType().ptr(), entityOn(read(constant, 263)));
  EXPECT_EQ(PbrActionContainer::_fwkType(), read(object, 261)->type());
}

TEST_F(ConfigReflection, OwnedChildIsMadeByItsParentAlone) {
  expectReadOnlyChecks(object, constant, 261, "pbrActions");
  auto const another = on(Pbr::pbrActionContainerFactory("Pbr"));
  EXPECT_EQ(unsupported(Op::write, "pbrActions"), failureOf(object, Op::write, 261, nullptr, another));
}

TEST_F(ConfigReflection, DeletingAnOwnedChildAnswersWhetherThereWasOne) {
  EXPECT_EQ(kConst, failureOf(constant, Op::del, 261));
  EXPECT_EQ(badIndex("pbrActions"), failureOf(object, Op::del, 261, valueOf<unsigned>(1)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(object, Op::del, 261)));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::del, 261)));
  EXPECT_FALSE(read(object, 261));
  EXPECT_EQ("pbrActions;", reactor->heard);
}

TEST_F(ConfigReflection, TextIsThePath) {
  EXPECT_EQ("running", object->strRep());
  EXPECT_EQ("running.pbrActions", read(object, 261)->strRep());
}

class ContainerReflection : public testing::Test {
protected:
  static Object key(std::uint32_t id) { return valueOf(UniqueId(id, 0, 0)); }
  Vyx::Ptr<PbrActionContainer> const container = Pbr::pbrActionContainerFactory("Pbr");
  Vyx::Ptr<Pbr::PbrFwdAction> const action =
      container->fwdActionIs("web", UniqueId(1, 0, 0), Pbr::nexthopAction);
  Object const object = on(container);
  Object const constant = onConst(container);
};

TEST_F(ContainerReflection, MembersAreCountedFoundAndRead) {
  EXPECT_EQ(1U, Vyx::unwrap<unsigned>(*apply(object, Op::memberCount, 258)));
  EXPECT_EQ(0U, Vyx::unwrap<unsigned>(*apply(object, Op::memberCount, 259)));
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(object, Op::contains, 258, key(1))));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::contains, 258, key(2))));
  EXPECT_EQ(action.ptr(), entityOn(read(constant, 258, key(1))));
  EXPECT_FALSE(read(object, 258, key(2)));
}

TEST_F(ContainerReflection, VersionRisesWithInsertionAndDeletion) {
  unsigned const before = Vyx::unwrap<unsigned>(*apply(object, Op::version, 258));
  container->fwdActionIs("web", UniqueId(2, 0, 0), Pbr::dropAction);
  container->fwdActionDel(UniqueId(2, 0, 0));
  EXPECT_EQ(before + 2, Vyx::unwrap<unsigned>(*apply(object, Op::version, 258)));
}

TEST_F(ContainerReflection, MemberIsChangedThroughItsOwnInterface) {
  write(read(object, 258, key(1)), 388, true);
  EXPECT_TRUE(action->recursive());
}

TEST_F(ContainerReflection, DeletingAMemberAnswersWhetherThereWasOne) {
  EXPECT_TRUE(Vyx::unwrap<bool>(*apply(object, Op::del, 258, key(1))));
  EXPECT_FALSE(Vyx::unwrap<bool>(*apply(object, Op::del, 258, key(1))));
  EXPECT_FALSE(action->parent());
}

TEST_F(ContainerReflection, MemberChecksInOrder) {
  Object const number = valueOf<unsigned>(1);
  EXPECT_EQ(kConst, failureOf(constant, Op::del, 258, key(1)));
  EXPECT_EQ(unsupported(Op::read, "fwdAction"), failureOf(object, Op::read, 258));
  EXPECT_EQ(badType("U32"), failureOf(object, Op::write, 258, number));
  EXPECT_EQ(unsupported(Op::write, "fwdAction"), failureOf(object, Op::write, 258, key(1), on(action)));
  EXPECT_EQ(unsupported(Op::memberCount, "dscpAction"), failureOf(object, Op::memberCount, 259, key(1)));
}

class SetDscpReflection : public testing::Test {
protected:
  Vyx::Ptr<Pbr::PbrActionSetDscp> const action =
      Pbr::pbrActionSetDscpFactory("web", UniqueId(1, 2, 3), Pbr::Dscp(46));
  Object const object = on(action);
};

TEST_F(SetDscpReflection, CodePointIsReadOnly) {
  EXPECT_EQ(Pbr::Dscp(46), readAs<Pbr::Dscp>(object, 386));
  expectReadOnlyChecks(object, onConst(action), 386, "dscp");
}

TEST_F(SetDscpReflection, EqualToIsItsOwn) {
  auto const same = Pbr::pbrActionSetDscpFactory("ssh", UniqueId(4, 5, 6), Pbr::Dscp(46));
  auto const forward = Pbr::pbrFwdActionFactory("web", UniqueId(1, 2, 3), Pbr::dropAction);
  EXPECT_TRUE(readAs<bool>(object, 261, listOf({{"other", on(same)}})));
  EXPECT_FALSE(readAs<bool>(object, 261, listOf({{"other", on(forward)}})));
  EXPECT_EQ(unknownArgument("equalTo"), failureOf(object, Op::read, 261, listOf({{"action", on(same)}})));
}

TEST_F(SetDscpReflection, HasNoCollectionToWalk) {
  EXPECT_EQ(unsupported(Op::read, "dscp") + " with an index",
            failure([&] { object->attributeIteratorConst(386); }));
  EXPECT_EQ(unknownAttribute("387"), failure([&] { object->attributeIterator(387); }));
}

TEST_F(SetDscpReflection, RawPointerIsRefusedUnderTheOwnName) {
  EXPECT_EQ(badType("PbrActionSetDscp"), failure([&] { object->rawPtr(Pbr::PbrFwdAction::_fwkType()); }));
}

class CopyHandlerReflection : public testing::Test {
protected:
  Vyx::Ptr<Pbr::PolicyMapCopyHandler> const handler = Pbr::policyMapCopyHandlerFactory();
  Vyx::Ptr<Config> const config = Pbr::configFactory("running");
  Object const object = on(handler);
  Object const constant = onConst(handler);
};

TEST_F(CopyHandlerReflection, ReferenceIsWrittenReadAndCleared) {
  EXPECT_FALSE(read(object, 642));
  apply(object, Op::write, 642, nullptr, on(config));
  EXPECT_EQ(config, handler->config());
  EXPECT_EQ(config.ptr(), entityOn(read(constant, 642)));
}

TEST_F(CopyHandlerReflection, ReferenceChecksInOrder) {
  expectScalarChecks(object, constant, 642, "config", on(handler), "PolicyMapCopyHandler");
  EXPECT_FALSE(handler->config());
}

TEST_F(CopyHandlerReflection, FunctionWithoutAResultAnswersNothing) {
  handler->configIs(config);
  auto const map = config->pmapType()->pmapIs("web");
  Object const arguments = listOf({{"dest", on(map)}, {"id", valueOf(UniqueId(1, 2, 3))}});
  EXPECT_FALSE(read(object, 517, arguments));
}

TEST_F(CopyHandlerReflection, FunctionThatMayChangeItsObjectIsRefusedOnAConstInstance) {
  EXPECT_EQ(unsupported(Op::memberCount, "subConfigDelete"), failureOf(constant, Op::memberCount, 517));
  EXPECT_EQ(kConst, failureOf(constant, Op::read, 517, listOf({})));
}

TEST_F(CopyHandlerReflection, MissingValueArgumentIsNamed) {
  EXPECT_EQ(badType("id"), failureOf(object, Op::read, 517, listOf({{"dest", nullptr}})));
}

} // namespace
