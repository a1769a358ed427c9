// The passes over the bindings of interfaces; the same for the first binding and for the fallback.

#include "CopyFixture.h"

namespace {

using PolicyMap::PolicyMapTypeConfig;

// One of the two collections of bindings.
struct Bindings {
  char const* attribute;
  void (PolicyMapTypeConfig::*set)(Lomu::IntfId, Vyx::Name);
  Vyx::Name (PolicyMapTypeConfig::*get)(Lomu::IntfId) const;
  std::uint32_t (PolicyMapTypeConfig::*count)() const;
};

class BindingCopyTest : public CopyTest, public testing::WithParamInterface<Bindings> {
protected:
  void bind(ConfigPtr const& in, Lomu::IntfId intf, Vyx::Name policy) {
    (in->pmapType().ptr()->*GetParam().set)(intf, policy);
  }
  Vyx::Name bound(Lomu::IntfId intf) { return (dest->pmapType().ptr()->*GetParam().get)(intf); }
  std::uint32_t count() { return (dest->pmapType().ptr()->*GetParam().count)(); }
  std::string line(std::string const& rest) {
    return std::string("pmapType.") + GetParam().attribute + "[" + rest;
  }
};

TEST_P(BindingCopyTest, SourcesBindingsAreSetAndDoNotCount) {
  bind(src, "et1", "edge");
  TreeRecorder recorder(dest);
  EXPECT_FALSE(copy());
  EXPECT_EQ("edge", bound("et1"));
  EXPECT_THAT(recorder.take(), ElementsAre(line("et1]+")));
}

TEST_P(BindingCopyTest, ChangedBindingIsReplacedInPlaceAndDoesNotCount) {
  bind(src, "et1", "edge");
  bind(dest, "et1", "core");
  TreeRecorder recorder(dest);
  EXPECT_FALSE(copy());
  EXPECT_EQ("edge", bound("et1"));
  EXPECT_THAT(recorder.take(), ElementsAre(line("et1]+")));
}

TEST_P(BindingCopyTest, BindingThatTheSourceHasNotLeavesAndDoesNotCount) {
  addPolicyMap(*dest, "edge");
  addPolicyMap(*src, "edge");
  copy();
  bind(dest, "et1", "edge");
  EXPECT_FALSE(copy());
  EXPECT_EQ(0U, count());
}

TEST_P(BindingCopyTest, BindingOfNoExistingPolicyMapLeaves) {
  bind(dest, "et1", "nowhere");
  EXPECT_THAT(heardOfCopy(), ElementsAre(line("et1]-")));
}

TEST_P(BindingCopyTest, BindingOfAPolicyMapThatLeavesGoesWithIt) {
  addPolicyMap(*dest, "edge");
  bind(dest, "et1", "edge");
  EXPECT_THAT(heardOfCopy(), ElementsAre("pmapType.pmap[edge]-", line("et1]-")));
}

TEST_P(BindingCopyTest, BindingOfAPolicyMapWithoutCurrentVersionLeaves) {
  dest->pmapType()->pmapIs("bare");
  src->pmapType()->pmapIs("bare");
  bind(dest, "et1", "bare");
  copy();
  EXPECT_EQ(0U, count());
}

TEST_P(BindingCopyTest, BindingOfADynamicPolicyMapStays) {
  addPolicyMap(*dest, "learned")->dynamicIs(true);
  bind(dest, "et1", "learned");
  EXPECT_THAT(heardOfCopy(), IsEmpty());
  EXPECT_EQ("learned", bound("et1"));
}

TEST_P(BindingCopyTest, DestinationsPolicyMapDecidesNotTheSources) {
  addPolicyMap(*dest, "edge");
  addPolicyMap(*src, "edge")->dynamicIs(true);
  bind(dest, "et1", "edge");
  copy();
  EXPECT_EQ(0U, count());
}

TEST_P(BindingCopyTest, BindingOfADynamicPolicyMapGivesWayToTheSources) {
  addPolicyMap(*dest, "learned")->dynamicIs(true);
  bind(dest, "et1", "learned");
  bind(src, "et1", "edge");
  copy();
  EXPECT_EQ("edge", bound("et1"));
}

TEST_P(BindingCopyTest, EmptyBindingOfTheSourceCountsAsNoneAndIsWrittenBack) {
  bind(src, "et1", "");
  bind(dest, "et1", "edge");
  EXPECT_THAT(heardOfCopy(), ElementsAre(line("et1]-"), line("et1]+")));
  EXPECT_EQ("", bound("et1"));
  EXPECT_EQ(1U, count());
}

TEST_P(BindingCopyTest, EmptyBindingOfTheSourceOverwritesThatOfADynamicPolicyMap) {
  addPolicyMap(*dest, "learned")->dynamicIs(true);
  bind(src, "et1", "");
  bind(dest, "et1", "learned");
  EXPECT_THAT(heardOfCopy(), ElementsAre(line("et1]+")));
  EXPECT_EQ("", bound("et1"));
}

TEST_P(BindingCopyTest, BindingsLeaveAndComeInHashOrder) {
  Lines expected;
  for (char const* intf : {"et1", "et2", "et3", "et4", "et5", "et6"}) {
    bind(dest, Lomu::IntfId(Vyx::String8("old-") + intf), "edge");
    bind(src, Lomu::IntfId(Vyx::String8("new-") + intf), "edge");
  }
  auto const expect = [&](ConfigPtr const& in, char const* end) {
    auto const all = [&](auto at) {
      for (; at; ++at) expected.push_back(line(std::string(valueToStrep(at.key()).view()) + end));
    };
    if (GetParam().attribute == std::string("intf"))
      all(in->pmapType()->intfIteratorConst());
    else
      all(in->pmapType()->intfFallbackIteratorConst());
  };
  expect(dest, "]-");
  expect(src, "]+");
  EXPECT_EQ(12U, expected.size());
  EXPECT_THAT(heardOfCopy(), ElementsAreArray(expected));
}

TEST_P(BindingCopyTest, PolicyMapIsLookedUpInTheOneCollectionForBoth) {
  addPolicyMap(*dest, "learned")->dynamicIs(true);
  dest->pmapType()->intfIs("et1", "learned");
  dest->pmapType()->intfFallbackIs("et1", "learned");
  EXPECT_THAT(heardOfCopy(), IsEmpty());
}

TEST_P(BindingCopyTest, OtherCollectionOfTheSourceDoesNotKeepABinding) {
  auto& pmapType = *src->pmapType();
  if (GetParam().attribute == std::string("intf"))
    pmapType.intfFallbackIs("et1", "edge");
  else
    pmapType.intfIs("et1", "edge");
  bind(dest, "et1", "edge");
  copy();
  EXPECT_EQ(0U, count());
}

INSTANTIATE_TEST_SUITE_P(First, BindingCopyTest,
                         testing::Values(Bindings{"intf", &PolicyMapTypeConfig::intfIs,
                                                  &PolicyMapTypeConfig::intf, &PolicyMapTypeConfig::intfs}));
INSTANTIATE_TEST_SUITE_P(Fallback, BindingCopyTest,
                         testing::Values(Bindings{"intfFallback", &PolicyMapTypeConfig::intfFallbackIs,
                                                  &PolicyMapTypeConfig::intfFallback,
                                                  &PolicyMapTypeConfig::intfFallbacks}));

} // namespace
