// Random configurations copied onto each other. What is to come out is told from the plans that the trees
// were built from.

#include "CopyFixture.h"
#include "RandomTree.h"

#include <algorithm>

namespace {

constexpr int kRounds = 150;

// The text without the bindings, which never count as a change.
std::string countedContent(Pbr::Config const& config) {
  std::string const all = contentOf(config);
  return all.substr(0, std::min(all.find("\npolicy "), all.find("\nfallback ")));
}

// The first forwarding action of the one plan that the other has not; 0 when there is none.
std::uint32_t actionOfOneAlone(ConfigPlan const& one, ConfigPlan const& other) {
  for (auto const& [name, map] : one.policyMaps)
    for (auto const& [number, version] : map.versions)
      for (auto const& [className, plan] : version.classes)
        if (plan.forward && !other.actions.count(plan.forward)) return plan.forward;
  return 0;
}

class CopyPropertyTest : public testing::Test {
protected:
  void plan() {
    from = randomPlan(random);
    onto = random.oneIn(3) ? randomPlan(random) : changedPlan(random, from);
  }
  bool copy(ConfigPtr const& dest, ConfigPtr const& src) { return handler->handleEntity(ec, dest, src, ""); }
  void expectWhole(Pbr::Config const& config) {
    EXPECT_THAT(configFaults(config), IsEmpty());
    EXPECT_THAT(strayActions(config), IsEmpty());
  }

  Random random;
  ConfigPlan from;
  ConfigPlan onto;
  Vyx::Ptr<EntityCopy> const ec = Vyx::make<EntityCopy>();
  Vyx::Ptr<Pbr::ConfigCopyHandler> const handler = Vyx::make<Pbr::ConfigCopyHandler>();
};

TEST_F(CopyPropertyTest, DestinationBecomesTheSourceButForWhatDynamicMapsKeep) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    plan();
    ConfigPtr const src = built(from);
    ConfigPtr const dest = built(onto);
    std::string const untouched = contentOf(*src);
    std::string const before = countedContent(*dest);
    bool const changed = copy(dest, src);
    EXPECT_EQ(contentOf(*built(copiedPlan(from, onto))), contentOf(*dest)) << "round " << round;
    EXPECT_EQ(before != countedContent(*dest), changed);
    EXPECT_EQ(untouched, contentOf(*src));
    expectWhole(*dest);
    expectWhole(*src);
  }
}

// A binding that a dynamic policy map kept goes with the second copy when the first has copied over the map.
TEST_F(CopyPropertyTest, SecondCopyChangesNothingAndTellsNobody) {
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    plan();
    ConfigPtr const src = built(from);
    ConfigPtr const dest = built(onto);
    ConfigPlan const once = copiedPlan(from, onto);
    ConfigPlan const twice = copiedPlan(from, once);
    copy(dest, src);
    TreeRecorder recorder(dest);
    EXPECT_FALSE(copy(dest, src)) << "round " << round;
    std::size_t gone = 0;
    for (int i : {0, 1}) gone += once.bindings[i].size() - twice.bindings[i].size();
    Lines const heard = recorder.take();
    EXPECT_EQ(gone, heard.size());
    EXPECT_EQ(gone, linesOf(heard, "pmapType.intf").size());
    EXPECT_FALSE(copy(dest, src));
    EXPECT_THAT(recorder.take(), IsEmpty());
    expectWhole(*dest);
  }
}

TEST_F(CopyPropertyTest, InterruptedCopyLeavesATreeThatTheNextCopyFinishes) {
  int interrupted = 0;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    plan();
    for (auto& [name, map] : onto.policyMaps)
      for (auto& [number, version] : map.versions) version.dynamic = false;
    std::uint32_t const number = actionOfOneAlone(from, onto);
    if (!number) continue;
    ++interrupted;
    ConfigPtr const src = built(from);
    ConfigPtr const dest = built(onto);
    dest->pbrActions()->fwdActionIs("in the way", idOf(number), Pbr::dropAction);
    EXPECT_THROW(copy(dest, src), Vyx::NameInUseException);
    EXPECT_THAT(invariantFaults(*dest), IsEmpty());
    dest->pbrActions()->fwdActionDel(idOf(number));
    copy(dest, src);
    EXPECT_EQ(contentOf(*built(copiedPlan(from, onto))), contentOf(*dest)) << "round " << round;
    expectWhole(*dest);
  }
  EXPECT_NE(0, interrupted);
}

TEST_F(CopyPropertyTest, CopyingBackAndForthComesHome) {
  for (int round = 0; round < kRounds / 3 && !HasFailure(); ++round) {
    plan();
    for (auto* plans : {&from, &onto}) {
      for (auto& [name, map] : plans->classMaps) map.current = 0;
      for (auto& [name, map] : plans->policyMaps) map.current = 0;
    }
    ConfigPtr const one = built(from);
    ConfigPtr const other = built(onto);
    copy(other, one);
    EXPECT_EQ(contentOf(*one), contentOf(*other));
    copy(other, built(onto));
    EXPECT_EQ(contentOf(*built(onto)), contentOf(*other)) << "round " << round;
    expectWhole(*other);
  }
}

} // namespace
