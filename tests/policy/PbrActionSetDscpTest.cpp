#include "PolicyListeners.h"

#include <gtest/gtest.h>

namespace {

using Pbr::pbrActionSetDscpFactory;
using Any = Vyx::Ptr<PolicyMap::Action const>;

TEST(PbrActionSetDscp, IsMadeOfItsParameters) {
  auto const action = pbrActionSetDscpFactory("web", actionId(7), 46);
  EXPECT_EQ("web", action->className());
  EXPECT_EQ("web", action->name());
  EXPECT_EQ(actionId(7), action->id());
  EXPECT_EQ(46, action->dscp().value());
  EXPECT_EQ(5U, static_cast<unsigned>(action->type()));
}

TEST(PbrActionSetDscp, IsMadeAsAnOrphan) {
  auto const action = pbrActionSetDscpFactory("web", actionId(7), 46);
  EXPECT_EQ(1U, action->references());
  EXPECT_FALSE(action->parent());
  EXPECT_EQ(136, action->parentAttrId());
  EXPECT_FALSE(action->fwkHmNext_);
}

TEST(PbrActionSetDscp, BadCodePointIsRefusedBeforeTheActionIsMade) {
  EXPECT_THROW(pbrActionSetDscpFactory("web", actionId(7), 65), Vyx::RangeException);
}

TEST(PbrActionSetDscp, EqualsEveryOtherOfItsCodePoint) {
  auto const one = pbrActionSetDscpFactory("web", actionId(1), 46);
  EXPECT_TRUE(one->equalTo(one));
  EXPECT_TRUE(one->equalTo(pbrActionSetDscpFactory("voice", actionId(2), 46)));
  EXPECT_FALSE(one->equalTo(pbrActionSetDscpFactory("web", actionId(1), 45)));
}

TEST(PbrActionSetDscp, EqualsNeitherNullNorAnActionOfAnotherType) {
  auto const one = pbrActionSetDscpFactory("web", actionId(1), 46);
  EXPECT_FALSE(one->equalTo(nullptr));
  EXPECT_FALSE(one->equalTo(Pbr::pbrFwdActionFactory("web", actionId(1), Pbr::dropAction)));
  EXPECT_FALSE(one->equalTo(PolicyMap::actionFactory("web", PolicyMap::actionPbrSetDscp, actionId(1))));
}

TEST(PbrActionSetDscp, ComparisonLeavesNoReferenceBehind) {
  auto const one = pbrActionSetDscpFactory("web", actionId(1), 46);
  Any const other = pbrActionSetDscpFactory("web", actionId(1), 46);
  one->equalTo(other);
  EXPECT_EQ(1U, other->references());
}

TEST(PbrActionSetDscp, IsComparedThroughItsBase) {
  Any const one = pbrActionSetDscpFactory("web", actionId(1), 46);
  EXPECT_TRUE(one->equalTo(pbrActionSetDscpFactory("voice", actionId(2), 46)));
}

TEST(PbrActionSetDscp, ReactorHearsOfNothingButTheFrame) {
  Heard heard;
  auto const action = pbrActionSetDscpFactory("web", actionId(1), 46);
  auto const reactor = listen<Recorder<Pbr::PbrActionSetDscp>>(action, heard);
  action->isNondestructingIs(true);
  action->zeroReferencesIs(true);
  EXPECT_EQ("isNondestructing zeroReferences", heard.take());
  action->isNondestructingIs(false);
}

} // namespace
