#include "RandomConfig.h"
#include "Trees.h"

namespace Pbrctl {
namespace {

constexpr char const* kOneClass = "class-map C\npolicy-map P\nclass C\n";

TEST(Tree, EveryStatementHasItsPlaceInTheModel) {
  auto const tree = treeOf("unresolved-nexthop drop\nbgp-redirect\nno non-aging-mac\n"
                           "class-map C\ndynamic\n10 match access-list A\n"
                           "policy-map P\ndynamic\n20 class C\nset nexthop 10.0.0.1 recursive\nset dscp 46\n"
                           "interface e\npolicy P\ninterface f\npolicy fallback P\n");
  EXPECT_TRUE(tree->pbrUnresolvedNexthopActionDrop());
  EXPECT_TRUE(tree->bgpPbrRedirect());
  EXPECT_FALSE(tree->pbrEnableNonAgingMacAddr());
  auto const cmap = tree->cmapType()->cmap("C");
  EXPECT_TRUE(cmap->currentSubConfig()->dynamic());
  EXPECT_EQ(Vyx::Name("A"), cmap->currentSubConfig()->match(10).acl());
  auto const content = tree->pmapType()->pmap("P")->currentSubConfig();
  EXPECT_TRUE(content->dynamic());
  EXPECT_EQ(20u, content->classAction("C")->sequence());
  EXPECT_EQ(2u, content->classAction("C")->policyActions());
  auto const forward = forwardOf(*tree, "P", "C");
  EXPECT_EQ(Pbr::nexthopAction, forward->fwdActionType());
  EXPECT_EQ(Vyx::Name("C"), forward->className());
  EXPECT_TRUE(forward->nexthop("10.0.0.1"));
  EXPECT_TRUE(forward->recursive());
  EXPECT_EQ(1u, tree->pbrActions()->dscpActions());
  EXPECT_EQ(Vyx::Name("P"), tree->pmapType()->intf(Lomu::IntfId("e")));
  EXPECT_EQ(Vyx::Name("P"), tree->pmapType()->intfFallback(Lomu::IntfId("f")));
}

TEST(Tree, WhatIsReadFromATreeBuildsAnEqualOne) {
  Random random;
  for (int round = 0; round < 200; ++round) {
    ConfigAst const first = contentOf(*built(RandomConfig(random).make()));
    ConfigAst const again = contentOf(*built(first));
    ASSERT_TRUE(first == again) << nativeText(first) << nativeText(again);
  }
}

TEST(Tree, BothFormsSayTheWholeTree) {
  Random random;
  for (int round = 0; round < 200; ++round) {
    ConfigAst const content = contentOf(*built(RandomConfig(random).make()));
    ASSERT_TRUE(contentOf(*built(parsed(nativeText(content)))) == content) << nativeText(content);
    ASSERT_TRUE(contentOf(*built(parsed(jsonText(content)))) == content) << jsonText(content);
  }
}

TEST(Tree, AGroupsNextHopsStandWithEachClassThatNamesIt) {
  auto const tree =
      treeOf(std::string(kOneClass) + "set nexthop-group G\nnexthop-group G\nnexthop 10.0.0.1\n");
  auto const forward = forwardOf(*tree, "P", "C");
  EXPECT_EQ(Pbr::nexthopGroupAction, forward->fwdActionType());
  EXPECT_EQ(Vyx::Name("G"), forward->nexthopGroup());
  EXPECT_TRUE(forward->nexthop("10.0.0.1"));
  EXPECT_EQ(1u, tree->pbrActions()->fwdActions());
}

TEST(Tree, AGroupThatNobodyNamesIsKept) {
  ConfigAst const content = contentOf(*treeOf("nexthop-group G\nnexthop 10.0.0.1\n"));
  ASSERT_EQ(1u, content.groups.size());
  EXPECT_EQ(1u, content.groups.at("G").nexthops.size());
}

TEST(Tree, ClassesThatDisagreeOnAGroupAreWrittenWithTheirOwnNextHops) {
  std::string const text = "class-map A\nclass-map B\npolicy-map P\n"
                           "  10 class A\n    set nexthop-group G nexthop 10.0.0.1\n"
                           "  20 class B\n    set nexthop-group G nexthop 10.0.0.2\n";
  EXPECT_TRUE(contentOf(*treeOf(text)) == parsed(text)) << nativeText(contentOf(*treeOf(text)));
}

TEST(Tree, ClassesThatAgreeOnAGroupAreWrittenWithItsBlock) {
  ConfigAst const content =
      contentOf(*treeOf(std::string(kOneClass) + "set nexthop-group G nexthop 10.0.0.1\n"));
  EXPECT_EQ(1u, content.groups.count("G"));
  EXPECT_FALSE(content.policyMaps.at("P").classes.at("C").forward->ownNexthops);
}

std::string problemsOf(Pbr::Config const& tree) {
  std::vector<std::string> problems;
  readTree(tree, problems);
  std::string lines;
  for (std::string const& problem : problems) lines += problem + "\n";
  return lines;
}

TEST(Tree, WhatNoFileCanSayIsToldAsAProblem) {
  auto const tree = treeOf(std::string(kOneClass) + "set nexthop 10.0.0.1\n");
  forwardOf(*tree, "P", "C")->nexthopIs("10.0.0.1", false);
  EXPECT_EQ("class 'C' of policy-map 'P' holds a next hop with the value false\n", problemsOf(*tree));
  tree->cmapType()->cmapIs("empty");
  tree->pmapType()->pmap("P")->currentSubConfig()->classActionIs("D")->sequenceIs(10);
  EXPECT_NE(std::string::npos, problemsOf(*tree).find("class-map 'empty' has no current version\n"));
  EXPECT_NE(std::string::npos, problemsOf(*tree).find("has the sequence number 10 of class"));
}

TEST(Tree, ANameThatNoFileCanSayIsToldAsAProblem) {
  auto const tree = treeOf("class-map C\n10 match access-list A\n");
  PolicyMap::MatchRule rule;
  rule.aclIs("\xff");
  tree->cmapType()->cmap("C")->currentSubConfig()->matchIs(10, rule);
  EXPECT_NE("", problemsOf(*tree));
  rule.aclIs("!A");
  tree->cmapType()->cmap("C")->currentSubConfig()->matchIs(10, rule);
  EXPECT_EQ("the name '!A' begins like a comment\n", problemsOf(*tree));
}

Kest::UniqueId alwaysTheSame(std::initializer_list<std::string_view>) { return Kest::UniqueId(1, 2, 3); }

TEST(Tree, TwoActionsOfOneIdentifierAreRefused) {
  Diagnostics diagnostics("test.conf");
  ConfigAst const config = parsed(std::string(kOneClass) + "set nexthop 10.0.0.1\nset dscp 1\n");
  EXPECT_FALSE(buildTree(config, diagnostics, alwaysTheSame));
  ASSERT_EQ(1u, diagnostics.sorted().size());
  EXPECT_EQ("the identifier 00000001-0002-0003 belongs to another action already; rename the class",
            diagnostics.sorted()[0].text);
}

TEST(Ids, AreTheSameInEveryProcess) {
  EXPECT_EQ(idOf({"cmap", "WEB"}), idOf({"cmap", "WEB"}));
  EXPECT_EQ(std::string("241a0df8-4dc0-e7d2"),
            std::string(valueToStrep(idOf({"fwd", "WAN", "WEB", "nexthopAction"})).view()));
}

TEST(Ids, EveryPartAndEveryBorderCounts) {
  EXPECT_FALSE(idOf({"ab", "c"}) == idOf({"a", "bc"}));
  EXPECT_FALSE(idOf({"a", "b"}) == idOf({"b", "a"}));
  EXPECT_FALSE(idOf({"a"}) == idOf({"a", ""}));
  EXPECT_FALSE(idOf({"fwd", "P", "C", "dropAction"}) == idOf({"fwd", "P", "C", "nexthopAction"}));
}

// A change of one next hop is a change of one entity, in place.
TEST(Ids, DoNotDependOnWhatAnActionHolds) {
  auto const before = treeOf(std::string(kOneClass) + "set nexthop 10.0.0.1\n");
  auto const after = treeOf(std::string(kOneClass) + "set nexthop 10.0.0.2\n");
  EXPECT_EQ(forwardOf(*before, "P", "C")->id(), forwardOf(*after, "P", "C")->id());
  auto const other = treeOf(std::string(kOneClass) + "drop\n");
  EXPECT_FALSE(forwardOf(*before, "P", "C")->id() == forwardOf(*other, "P", "C")->id());
}

} // namespace
} // namespace Pbrctl
