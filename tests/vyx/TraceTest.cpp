#include "Vyx/Trace.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {

using Vyx::TraceHandle;

class TraceTest : public testing::Test {
protected:
  TraceTest() {
    Vyx::traceSinkIs([this](TraceHandle const& facility, unsigned level, std::string const& text) {
      told << facility.name() << ' ' << level << ' ' << text << '\n';
    });
  }
  ~TraceTest() override {
    Vyx::traceSinkIs(nullptr);
    Vyx::coverageStream_ = nullptr;
  }
  template <class... Parts> void trace(TraceHandle const& facility, unsigned level, Parts const&... parts) {
    if (Vyx::traceWanted(facility, level)) Vyx::trace(facility, level, "Module", 7, "function", parts...);
  }
  std::ostringstream told;
};

TEST_F(TraceTest, FreshFacilityIsQuietAtEveryLevel) {
  static TraceHandle const facility("TraceQuiet", true);
  for (unsigned level = 0; level < TraceHandle::kLevels; ++level)
    EXPECT_FALSE(Vyx::traceWanted(facility, level));
}

TEST_F(TraceTest, LevelIsTurnedOnByName) {
  static TraceHandle const facility("TraceByName", false);
  Vyx::traceLevelIs("TraceByName", 3, true);
  trace(facility, 3, "binds ", 2, " of ", 3);
  trace(facility, 4, "never");
  EXPECT_EQ("TraceByName 3 binds 2 of 3\n", told.str());
  Vyx::traceLevelIs("TraceByName", 3, false);
  trace(facility, 3, "never");
  EXPECT_EQ("TraceByName 3 binds 2 of 3\n", told.str());
}

TEST_F(TraceTest, SettingWaitsForAFacilityThatDoesNotExistYet) {
  Vyx::traceLevelIs("TraceLater", 9, true);
  static TraceHandle const facility("TraceLater", false);
  trace(facility, 9, "x");
  EXPECT_EQ("TraceLater 9 x\n", told.str());
}

TEST_F(TraceTest, FacilityThatWasOnlyTurnedOffComesDisabled) {
  Vyx::traceLevelIs("TurnedOffBefore", 3, false);
  static Vyx::TraceHandle const handle("TurnedOffBefore", false);
  EXPECT_FALSE(handle.enabled());
}

TEST_F(TraceTest, LevelsThatDoNotExistAreIgnored) {
  Vyx::traceLevelIs("NoSuchLevel", Vyx::TraceHandle::kLevels, true);
  static Vyx::TraceHandle const handle("NoSuchLevel", false);
  EXPECT_FALSE(handle.enabled());
}

TEST_F(TraceTest, DisabledFacilityIsQuietWhateverItsLevels) {
  static TraceHandle facility("TraceDisabled", false);
  facility.levelIs(1, true);
  EXPECT_FALSE(Vyx::traceWanted(facility, 1));
  facility.enabledIs(true);
  EXPECT_TRUE(Vyx::traceWanted(facility, 1));
}

TEST_F(TraceTest, NumbersHaveTwelveDigits) {
  static TraceHandle const facility("TraceDigits", true);
  Vyx::traceLevelIs("TraceDigits", 0, true);
  trace(facility, 0, 1.0 / 3);
  EXPECT_EQ("TraceDigits 0 0.333333333333\n", told.str());
}

TEST_F(TraceTest, CoverageStreamHearsWhatIsOff) {
  static TraceHandle const facility("TraceCovered", false);
  std::ostringstream covered;
  Vyx::coverageStream_ = &covered;
  trace(facility, 5, "text");
  EXPECT_EQ("Module:7 function text\n", covered.str());
  EXPECT_EQ("", told.str());
}

TEST_F(TraceTest, WithoutASinkTheErrorStreamIsWritten) {
  static TraceHandle const facility("TraceDefault", true);
  Vyx::traceLevelIs("TraceDefault", 2, true);
  Vyx::traceSinkIs(nullptr);
  std::ostringstream errors;
  auto* const before = std::cerr.rdbuf(errors.rdbuf());
  trace(facility, 2, "text");
  std::cerr.rdbuf(before);
  EXPECT_EQ("TraceDefault 2: text\n", errors.str());
}

} // namespace
