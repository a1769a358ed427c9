// What the session copy traces, to the letter.

#include "CopyFixture.h"
#include "SubConfigActions.h"
#include "Traces.h"

namespace {

constexpr unsigned kQuiet = 5; // No statement has this level.

class CopyTraceTest : public CopyTest {};

TEST_F(CopyTraceTest, EntryNamesDestinationAndPath) {
  Traces traces({8});
  copy("a/path");
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 8: handleEntity dest path a/path"));
}

TEST_F(CopyTraceTest, EachMapIsTold) {
  addClassMap(*dest, "learnedClass")->dynamicIs(true);
  addClassMap(*dest, "oldClass");
  addClassMap(*dest, "web");
  addClassMap(*src, "web");
  addPolicyMap(*dest, "learnedPolicy")->dynamicIs(true);
  addPolicyMap(*dest, "oldPolicy");
  addPolicyMap(*dest, "edge");
  addPolicyMap(*src, "edge");
  Traces traces({9});
  copy();
  Lines const told = traces.take();
  EXPECT_THAT(Lines(told.begin(), told.begin() + 2),
              testing::UnorderedElementsAre("PbrCopy 9: handleEntity ignoring dynamic learnedClass",
                                            "PbrCopy 9: handleEntity deleting oldClass"));
  EXPECT_THAT(Lines(told.begin() + 2, told.end()),
              ElementsAre("PbrCopy 9: handleEntity copying web",
                          "PbrCopy 9: handleEntity ignoring dynamic learnedPolicy",
                          "PbrCopy 9: handleEntity deleting oldPolicy",
                          "PbrCopy 9: handleEntity copying edge"));
}

TEST_F(CopyTraceTest, DynamicMapThatTheSourceHasIsToldAsIgnoredAndCopied) {
  addPolicyMap(*dest, "edge")->dynamicIs(true);
  addPolicyMap(*src, "edge");
  Traces traces({9});
  copy();
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 9: handleEntity ignoring dynamic edge",
                                         "PbrCopy 9: handleEntity copying edge"));
}

TEST_F(CopyTraceTest, HooksAreTold) {
  auto const edge = addPolicyMap(*src, "edge", 7);
  addForward(*src, *edge, "web", 1);
  addSetDscp(*src, *edge, "web", 2, 10);
  addPolicyMap(*dest, "edge", 6);
  addPolicyMap(*dest, "old", 5);
  Traces traces({0, 8});
  copy("p");
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 8: handleEntity dest path p",
                                         "PbrCopy 8: deleteSubConfigActions subConfigId 00000005-0000-0000",
                                         "PbrCopy 8: subConfigDelete policy edge",
                                         "PbrCopy 8: deleteSubConfigActions subConfigId 00000006-0000-0000",
                                         "PbrCopy 8: updateActionPtrs policy ",
                                         "PbrCopy 0: FwdAction pointer change00000001-0000-0000",
                                         "PbrCopy 0: setDscp pointer change00000002-0000-0000"));
}

TEST_F(CopyTraceTest, LevelsAreSwitchedOneByOne) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1);
  Traces traces({0});
  copy();
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 0: FwdAction pointer change00000001-0000-0000"));
}

TEST_F(CopyTraceTest, CoverageHearsWhateverTheSwitchesSayWithModuleAndFunction) {
  addForward(*src, *addPolicyMap(*src, "edge"), "web", 1);
  addForward(*dest, *addPolicyMap(*dest, "old", 5), "web", 2);
  Traces traces({kQuiet});
  Coverage coverage;
  copy("p");
  EXPECT_THAT(traces.take(), IsEmpty());
  EXPECT_THAT(
      coverage.take(),
      ElementsAre("PbrCopy handleEntity handleEntity dest path p",
                  "PbrCopy handleEntity handleEntity deleting old",
                  "PbrCopy deleteSubConfigActions deleteSubConfigActions subConfigId 00000005-0000-0000",
                  "PbrCopy handleEntity handleEntity copying edge",
                  "PbrCopy updateActionPtrs updateActionPtrs policy ",
                  "PbrCopy updateActionPtrs FwdAction pointer change00000001-0000-0000"));
}

TEST_F(CopyTraceTest, StatementsAreToldOnceWhereBothHear) {
  Traces traces({8});
  Coverage coverage;
  copy("p");
  EXPECT_EQ(1U, traces.take().size());
  EXPECT_EQ(1U, coverage.take().size());
}

TEST_F(CopyTraceTest, NullPointersAreTolerated) {
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  hooks->configIs(dest);
  auto const edge = addPolicyMap(*dest, "edge");
  Traces traces({8});
  hooks->updateActionPtrs(ec, nullptr, edge);
  hooks->updateActionPtrs(ec, edge, nullptr);
  hooks->subConfigDelete(dest->pmapType()->pmap("edge"), idOf(99));
  Pbr::deleteSubConfigActions(dest, nullptr);
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 8: updateActionPtrs policy ",    //
                                         "PbrCopy 8: updateActionPtrs policy ",    //
                                         "PbrCopy 8: subConfigDelete policy edge", //
                                         "PbrCopy 8: deleteSubConfigActions subConfigId none",
                                         "PbrCopy 8: deleteSubConfigActions subConfigId none"));
}

TEST_F(CopyTraceTest, MissingClassActionIsToldByName) {
  auto const hooks = Pbr::policyMapCopyHandlerFactory();
  hooks->configIs(dest);
  auto const from = addPolicyMap(*src, "edge");
  addForward(*src, *from, "web", 1);
  Traces traces({8});
  hooks->updateActionPtrs(ec, addPolicyMap(*dest, "edge"), from);
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 8: updateActionPtrs policy ",
                                         "PbrCopy 8: updateActionPtrs no dClassAction for web"));
}

// Counts how often it is written.
struct Costly {
  int* written;
  friend std::ostream& operator<<(std::ostream& out, Costly const& of) {
    ++*of.written;
    return out;
  }
};

TEST(CopyTrace, NothingIsComposedWhileItIsQuiet) {
  int written = 0;
  Traces traces({kQuiet});
  Pbr::traceCopy(9, 1, "f", Costly{&written});
  Pbr::copyTrace().levelIs(9, true);
  Pbr::copyTrace().enabledIs(false);
  Pbr::traceCopy(9, 1, "f", Costly{&written});
  EXPECT_EQ(0, written);
  Pbr::copyTrace().enabledIs(true);
  Pbr::traceCopy(9, 1, "f", Costly{&written});
  Pbr::copyTrace().levelIs(9, false);
  EXPECT_EQ(1, written);
}

TEST(CopyTrace, NumbersHaveTwelveDigits) {
  Traces traces({9});
  Pbr::traceCopy(9, 1, "f", "a third is ", 1.0 / 3);
  EXPECT_THAT(traces.take(), ElementsAre("PbrCopy 9: a third is 0.333333333333"));
}

TEST(CopyTrace, FacilityIsOneAndKnowsItsName) {
  EXPECT_EQ(&Pbr::copyTrace(), &Pbr::copyTrace());
  EXPECT_STREQ("PbrCopy", Pbr::copyTrace().name());
}

TEST(CopyTraceDeathTest, FacilityIsMadeQuiet) {
  GTEST_FLAG_SET(death_test_style, "threadsafe"); // Another process, in which nobody has asked for it yet.
  EXPECT_EXIT(std::exit(Pbr::copyTrace().enabled() || Pbr::copyTrace().level(0) ? 1 : 0),
              testing::ExitedWithCode(0), "");
}

} // namespace
