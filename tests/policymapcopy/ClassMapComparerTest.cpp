#include "PolicyMap/PolicyMap.h"
#include "PolicyMap/PolicyMapCopy.h"

#include <gtest/gtest.h>

namespace {

using namespace PolicyMap;

class ClassMapComparerTest : public testing::Test {
protected:
  static Vyx::Ptr<ClassMapConfig> classMap(std::initializer_list<std::pair<unsigned, char const*>> rules) {
    auto const cmap = classMapConfigFactory("web");
    cmap->currentSubConfigIs(cmap->subconfigIs({1, 0, 0}));
    for (auto const& [sequence, rule] : rules)
      cmap->currentSubConfig()->matchIs(sequence, Vyx::strepToValue<MatchRule>(rule));
    return cmap;
  }
  bool equal(Vyx::Ptr<ClassMapConfig> const& left, Vyx::Ptr<ClassMapConfig> const& right) {
    EXPECT_EQ(comparer->equal(left, right), comparer->equal(right, left));
    return comparer->equal(left, right);
  }
  Vyx::Ptr<ClassMapComparer> const comparer = classMapComparerFactory();
};

TEST_F(ClassMapComparerTest, EqualRulesUnderEqualNumbersAreEqual) {
  EXPECT_TRUE(equal(classMap({{10, "ip any any"}}), classMap({{10, "ip any any"}})));
  EXPECT_FALSE(equal(classMap({{10, "ip any any"}}), classMap({{20, "ip any any"}})));
  EXPECT_FALSE(equal(classMap({{10, "ip any any"}}), classMap({{10, "access-list a"}})));
  EXPECT_FALSE(equal(classMap({{10, "ip any any"}}), classMap({{10, "ip any any"}, {20, "ip any any"}})));
}

TEST_F(ClassMapComparerTest, NoContentMatchesAsNoRules) {
  auto const bare = classMapConfigFactory("bare");
  EXPECT_TRUE(equal(bare, classMapConfigFactory("bare")));
  EXPECT_TRUE(equal(bare, classMap({})));
  EXPECT_FALSE(equal(bare, classMap({{10, "ip any any"}})));
}

TEST_F(ClassMapComparerTest, OnlyTheCurrentVersionIsLookedAt) {
  auto const left = classMap({{10, "ip any any"}});
  left->subconfigIs({2, 0, 0})->matchIs(20, MatchRule());
  EXPECT_TRUE(equal(left, classMap({{10, "ip any any"}})));
}

TEST_F(ClassMapComparerTest, NullEqualsNone) {
  EXPECT_FALSE(equal(nullptr, classMap({})));
  EXPECT_FALSE(equal(nullptr, nullptr));
}

TEST(PolicyMapCopyHandlerComparer, IsAChildMadeOnDemand) {
  auto const handler = policyMapCopyHandlerFactory();
  EXPECT_EQ(nullptr, handler->classMapComparer());
  auto const comparer = handler->classMapComparerIs();
  EXPECT_EQ(514, comparer->parentAttrId());
  EXPECT_EQ(handler.ptr(), comparer->parent().ptr());
  EXPECT_EQ(comparer, handler->classMapComparerIs());
  EXPECT_EQ(comparer, handler->classMapComparerDel());
  EXPECT_EQ(nullptr, handler->classMapComparer());
}

} // namespace
