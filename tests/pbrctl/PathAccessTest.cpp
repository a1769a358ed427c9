#include "Trees.h"

#include "pbrctl/PathAccess.h"

namespace Pbrctl {
namespace {

class PathAccessTest : public testing::Test {
protected:
  std::string get(std::string const& path) const {
    try {
      std::string lines;
      for (std::string const& line : PathAccess(tree_).get(path)) lines += (lines.empty() ? "" : "\n") + line;
      return lines;
    } catch (PathError const& e) {
      return "! " + e.text;
    }
  }
  std::string set(std::string const& path, std::string const& value) const {
    try {
      PathAccess(tree_).set(path, value);
      return "";
    } catch (PathError const& e) {
      return "! " + e.text;
    }
  }

  Vyx::Ptr<Pbr::Config> tree_ =
      treeOf("class-map a.b]c\n10 match ip 10.0.0.0/8 any\npolicy-map P\nclass a.b]c\n"
             "set nexthop 10.0.0.1 2001:db8::1\ninterface e\npolicy P\n");
  std::string const class_ = "pmapType.pmap[P].currentSubConfig.classAction[a.b]c]";
  std::string const action_ = class_ + ".policyAction[actionPbrForward]";
};

TEST_F(PathAccessTest, AScalarIsReadByItsPath) {
  EXPECT_EQ("true", get("pbrEnableNonAgingMacAddr"));
  EXPECT_EQ("10", get(class_ + ".sequence"));
  EXPECT_EQ("false", get(action_ + ".recursive"));
  EXPECT_EQ("'nexthopAction'", get(action_ + ".fwdActionType"));
}

TEST_F(PathAccessTest, AKeyReachesIntoACollection) {
  EXPECT_EQ("true", get(action_ + ".nexthop[2001:db8::1]"));
  EXPECT_EQ("ip 10.0.0.0/8 any", get("cmapType.cmap[a.b]c].currentSubConfig.match[10]"));
  EXPECT_EQ("P", get("pmapType.intf[e]"));
}

TEST_F(PathAccessTest, AnEntityShowsEachOfItsAttributes) {
  std::string const all = get(action_);
  EXPECT_NE(std::string::npos, all.find("className = a.b]c\n"));
  EXPECT_NE(std::string::npos, all.find("nexthop[10.0.0.1] = true\n"));
  EXPECT_NE(std::string::npos, all.find("recursive = false\n"));
  EXPECT_NE(std::string::npos, get(".").find("pmapType = -> "));
  EXPECT_EQ(0u, get(class_ + ".policyAction").find("policyAction[actionPbrForward] = -> "));
}

TEST_F(PathAccessTest, ACollectionShowsItsMembers) {
  EXPECT_EQ("intf[e] = P", get("pmapType.intf"));
  EXPECT_EQ("", get("pmapType.intfFallback"));
}

TEST_F(PathAccessTest, AWriteGoesThroughTheSetter) {
  EXPECT_EQ("", set(action_ + ".recursive", "true"));
  EXPECT_TRUE(forwardOf(*tree_, "P", "a.b]c")->recursive());
  EXPECT_EQ("", set(action_ + ".nexthop[10.0.0.7]", "true"));
  EXPECT_TRUE(forwardOf(*tree_, "P", "a.b]c")->nexthop("10.0.0.7"));
  EXPECT_EQ("", set("cmapType.cmap[a.b]c].currentSubConfig.match[20]", "ip any any dscp ef"));
  EXPECT_EQ(46u, tree_->cmapType()->cmap("a.b]c")->currentSubConfig()->match(20).dscp());
}

TEST_F(PathAccessTest, APathThatLeadsNowhereIsTold) {
  EXPECT_EQ("! Pbr::Config has no attribute 'colour'", get("colour"));
  EXPECT_EQ("! 'pmap' has no member 'Q'", get("pmapType.pmap[Q].currentSubConfig"));
  EXPECT_EQ("! 'pmap' is a collection and needs a key", get("pmapType.pmap.currentSubConfig"));
  EXPECT_EQ("! 'bgpPbrRedirect' is no collection and takes no key", get("bgpPbrRedirect[1]"));
  EXPECT_EQ("! 'bgpPbrRedirect' is a value; nothing lies below it", get("bgpPbrRedirect.x"));
  EXPECT_EQ("! the bracket behind 'pmap' is not closed", get("pmapType.pmap[P"));
  EXPECT_EQ("! the path is empty", get(""));
}

TEST_F(PathAccessTest, AValueThatDoesNotFitLeavesTheTreeAsItWas) {
  EXPECT_EQ("! ", set(class_ + ".sequence", "many").substr(0, 2));
  EXPECT_EQ("! ", set(action_ + ".fwdActionType", "dropAction").substr(0, 2));
  EXPECT_EQ("! ", set(action_ + ".nexthop[nowhere]", "true").substr(0, 2));
  EXPECT_EQ("! 'currentSubConfig' holds entities and takes no value",
            set("pmapType.pmap[P].currentSubConfig", "x"));
  EXPECT_EQ("10", get(class_ + ".sequence"));
  EXPECT_EQ("'nexthopAction'", get(action_ + ".fwdActionType"));
}

} // namespace
} // namespace Pbrctl
