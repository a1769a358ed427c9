#include "CheckpointListeners.h"

#include "support/Invariants.h"

#include <cmath>
#include <limits>

namespace {

using Acl::RuleCheckpointStatus;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

class AclCheckpoint : public testing::Test {
protected:
  ~AclCheckpoint() override {
    if (acl) checkInvariants(*acl);
  }

  Heard heard;
  Vyx::Ptr<Pbr::PbrAclCheckpointStatus> acl = Vyx::make<Pbr::PbrAclCheckpointStatus>("web in");
  Vyx::Ptr<AclListener> const listener = listen<AclListener>(acl, heard);

  std::string told() { return heard.take(); }
  // Rules 1, 2 and 3, unheard.
  void fill() {
    for (unsigned n : {1U, 2U, 3U}) acl->ruleStatusIs(ruleId(n), RuleCheckpointStatus(0, n));
    told();
  }
  std::string linesInOrder() {
    Heard lines;
    for (auto at = acl->ruleStatusIterator(); at; ++at)
      lines.note("rule " + std::string(valueToStrep(at.key()).view()));
    return lines.take();
  }
};

TEST_F(AclCheckpoint, StartsWithoutRulesTimeAndVersion) {
  EXPECT_EQ("web in", acl->name());
  EXPECT_EQ("web in", acl->fwkKey());
  EXPECT_EQ(0U, acl->ruleStatuses());
  EXPECT_EQ(0.0, acl->timestamp());
  EXPECT_FALSE(std::signbit(acl->timestamp()));
  EXPECT_EQ(Acl::UniqueId(0xffffffffU, 0xffff, 0xffff), acl->version());
  EXPECT_FALSE(acl->isNondestructing());
  EXPECT_TRUE(acl->vyxHasAttrLogInterface());
}

TEST_F(AclCheckpoint, DefaultsStartNoRound) {
  acl->timestampIs(0.0);
  acl->versionIs({});
  EXPECT_EQ("", told());
}

TEST_F(AclCheckpoint, ChangedTimeAndVersionAreToldOnce) {
  for (int twice : {1, 2}) {
    SCOPED_TRACE(twice);
    acl->timestampIs(12.5);
    acl->versionIs({1, 2, 3});
  }
  EXPECT_EQ("timestamp version", told());
  EXPECT_EQ(12.5, acl->timestamp());
  EXPECT_EQ(Acl::UniqueId(1, 2, 3), acl->version());
}

TEST_F(AclCheckpoint, NoNumberIsAChangeEachTime) {
  acl->timestampIs(kNoNumber);
  acl->timestampIs(kNoNumber);
  EXPECT_EQ("timestamp timestamp", told());
  EXPECT_TRUE(std::isnan(acl->timestamp()));
}

TEST_F(AclCheckpoint, ZeroesOfBothSignsAreEqualAndTheOldOneStays) {
  acl->timestampIs(-0.0);
  EXPECT_EQ("", told());
  EXPECT_FALSE(std::signbit(acl->timestamp()));
}

TEST_F(AclCheckpoint, NewRuleIsStoredAndTold) {
  acl->ruleStatusIs(ruleId(1), {3, 4});
  EXPECT_EQ("rule 00000001-0000-0000", told());
  EXPECT_EQ(RuleCheckpointStatus(3, 4), acl->ruleStatus(ruleId(1)));
  EXPECT_EQ(1U, acl->ruleStatuses());
}

TEST_F(AclCheckpoint, EqualValueOfARuleStartsNoRound) {
  acl->ruleStatusIs(ruleId(1), {3, 4});
  told();
  acl->ruleStatusIs(ruleId(1), {3, 4});
  EXPECT_EQ("", told());
}

TEST_F(AclCheckpoint, OtherValueIsWrittenInPlace) {
  acl->ruleStatusIs(ruleId(1), {3, 4});
  auto const record = acl->ruleStatusIterator().member();
  acl->ruleStatusIs(ruleId(1), {3, 5});
  acl->ruleStatusIs(ruleId(1), {4, 5});
  EXPECT_EQ("rule 00000001-0000-0000 rule 00000001-0000-0000 rule 00000001-0000-0000", told());
  EXPECT_EQ(1U, acl->ruleStatuses());
  EXPECT_EQ(record, acl->ruleStatusIterator().member());
  EXPECT_EQ(RuleCheckpointStatus(4, 5), record->value());
}

TEST_F(AclCheckpoint, ZeroValueOfANewRuleIsAChange) {
  acl->ruleStatusIs(ruleId(1), {});
  EXPECT_EQ("rule 00000001-0000-0000", told());
  EXPECT_EQ(1U, acl->ruleStatuses());
}

TEST_F(AclCheckpoint, AbsentRuleHasTheZeroValue) {
  EXPECT_EQ(RuleCheckpointStatus(0, 0), acl->ruleStatus(ruleId(1)));
  EXPECT_EQ(RuleCheckpointStatus(0, 0), acl->ruleStatusDel(ruleId(1)));
  auto at = acl->ruleStatusIterator();
  EXPECT_EQ(RuleCheckpointStatus(0, 0), acl->ruleStatusDel(at));
  EXPECT_EQ("", told());
}

TEST_F(AclCheckpoint, NewRecordIsToldToNobody) {
  auto const record = acl->newRuleStatus(ruleId(1), {3, 4});
  EXPECT_EQ("", told());
  EXPECT_EQ(2U, record->references());
  EXPECT_EQ(record, acl->ruleStatusIterator(ruleId(1)).member());
}

TEST_F(AclCheckpoint, RemovedRuleGivesItsValueAndIsTold) {
  fill();
  EXPECT_EQ(RuleCheckpointStatus(0, 2), acl->ruleStatusDel(ruleId(2)));
  EXPECT_EQ("rule 00000002-0000-0000", told());
  auto at = acl->ruleStatusIterator(ruleId(3));
  EXPECT_EQ(RuleCheckpointStatus(0, 3), acl->ruleStatusDel(at));
  EXPECT_EQ("rule 00000003-0000-0000", told());
  EXPECT_EQ(1U, acl->ruleStatuses());
}

TEST_F(AclCheckpoint, RemovalOfAllTellsOfEachInOrderAndNeverWithoutAKey) {
  fill();
  std::string const each = linesInOrder();
  acl->ruleStatusDelAll();
  EXPECT_EQ(each, told());
  EXPECT_EQ(0U, acl->ruleStatuses());
}

TEST_F(AclCheckpoint, RemovalOfAllFromNothingIsNotTold) {
  acl->ruleStatusDelAll();
  EXPECT_EQ("", told());
}

TEST_F(AclCheckpoint, NotifyTellsOfAnyRule) {
  acl->ruleStatusNotify(ruleId(9));
  EXPECT_EQ("rule 00000009-0000-0000", told());
}

TEST_F(AclCheckpoint, IteratorIsPlacedAtTheRule) {
  fill();
  EXPECT_EQ(ruleId(2), acl->ruleStatusIterator(ruleId(2)).key());
  EXPECT_EQ(ruleId(2), acl->ruleStatusIteratorConst(ruleId(2)).key());
}

TEST_F(AclCheckpoint, RulesAreWalkedByTheirReversedHash) {
  for (unsigned n = 1; n <= 100; ++n) acl->ruleStatusIs(ruleId(n), {});
  std::uint32_t last = 0;
  for (auto at = acl->ruleStatusIteratorConst(); at; ++at) {
    std::uint32_t const reversed = Vyx::bitReverse(at.key().hash());
    EXPECT_LE(last, reversed);
    last = reversed;
  }
}

TEST_F(AclCheckpoint, ExceptionsComeBackWithTheAttributesIdsAndTheValuesStay) {
  listener->during = [] { throw 1; };
  acl->ruleStatusIs(ruleId(1), {3, 4});
  acl->timestampIs(1);
  acl->versionIs({1, 2, 3});
  EXPECT_EQ("rule 00000001-0000-0000 !258 timestamp !259 version !260", told());
  EXPECT_EQ(RuleCheckpointStatus(3, 4), acl->ruleStatus(ruleId(1)));
  EXPECT_EQ(1.0, acl->timestamp());
  EXPECT_EQ(Acl::UniqueId(1, 2, 3), acl->version());
}

TEST_F(AclCheckpoint, EndsSilently) {
  fill();
  listener->isWeakReferenceIs(true);
  acl = nullptr;
  EXPECT_EQ("", told());
}

} // namespace
