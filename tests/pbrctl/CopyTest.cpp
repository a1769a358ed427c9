#include "Running.h"
#include "Trees.h"

#include "pbrctl/TreeWatch.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {
namespace {

class CopyTest : public testing::Test {
protected:
  static Ran copy(std::string const& source, std::string const& destination,
                  std::vector<std::string> more = {}) {
    TestFile const from("from.conf", source);
    TestFile const to("to.conf", destination);
    more.insert(more.begin(), {"copy", from.path(), to.path()});
    return run(more);
  }
  // What stands between the two comments of the output.
  static std::string heard(Ran const& ran) {
    std::size_t const begin = ran.out.find('\n') + 1;
    return ran.out.substr(begin, ran.out.find("! the resulting") - begin);
  }
  static std::string lastLine(Ran const& ran) {
    return ran.out.substr(ran.out.rfind('\n', ran.out.size() - 2) + 1);
  }
};

constexpr char const* kBase =
    "class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\nset nexthop 10.0.0.1\n";
constexpr char const* kEdited =
    "class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\nset nexthop 10.0.0.2\n";

std::string forwardPath() {
  return "pbrActions.fwdAction[" +
         std::string(valueToStrep(idOf({"fwd", "P", "C", "nexthopAction"})).view()) + "]";
}

TEST_F(CopyTest, OneNextHopEditedIsOneNextHopHeard) {
  Ran const ran = copy(kEdited, kBase);
  EXPECT_EQ(0, ran.exitCode);
  EXPECT_EQ("removed  " + forwardPath() + ".nexthop[10.0.0.1]   (class C)\n" + "set      " + forwardPath() +
                ".nexthop[10.0.0.2] = true   (class C)\n",
            heard(ran));
}

TEST_F(CopyTest, AnActionThatGoesIsToldWithItsClass) {
  std::string const text =
      heard(copy("class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\ndrop\n", kBase));
  EXPECT_NE(std::string::npos, text.find("removed  " + forwardPath() + "   (class C)\n"));
}

TEST_F(CopyTest, AnEqualConfigurationIsNotHeardAtAll) {
  Ran const ran = copy(kBase, kBase);
  EXPECT_EQ("", heard(ran));
  EXPECT_EQ("changed: false\n", lastLine(ran));
}

TEST_F(CopyTest, WhatComesDuringTheCopyIsHeardInside) {
  std::string const text = heard(copy(kBase, "!\n"));
  EXPECT_NE(std::string::npos, text.find("added    cmapType.cmap[C]\n"));
  EXPECT_NE(std::string::npos, text.find(".match[10] = ip any any dscp 1\n"));
  EXPECT_NE(std::string::npos, text.find(".classAction[C].sequence = 10\n"));
  EXPECT_NE(std::string::npos, text.find(forwardPath() + ".nexthop[10.0.0.1] = true   (class C)\n"));
  EXPECT_NE(std::string::npos, text.find(".policyAction[actionPbrForward] = "));
}

TEST_F(CopyTest, TheResultIsTheSourceAndTheSecondCopyChangesNothing) {
  Ran const ran = copy(kBase, "class-map GONE\n");
  EXPECT_EQ("changed: true\n", lastLine(ran));
  std::size_t const begin = ran.out.find("! policy-based routing");
  std::string const result = ran.out.substr(begin, ran.out.find("changed: ") - begin);
  EXPECT_TRUE(parsed(result) == contentOf(*treeOf(kBase))) << result;
  EXPECT_EQ("changed: false\n", lastLine(copy(kBase, result)));
}

TEST_F(CopyTest, ADynamicPolicyMapSurvivesWithItsBinding) {
  std::string const destination =
      "class-map D\ndynamic\npolicy-map KEPT\ndynamic\nclass D\ndrop\n"
      "policy-map LOST\ninterface e\npolicy fallback KEPT\ninterface f\npolicy LOST\n";
  Ran const ran = copy(kBase, destination);
  EXPECT_NE(std::string::npos, ran.out.find("policy-map KEPT\n  dynamic\n"));
  EXPECT_NE(std::string::npos, ran.out.find("interface e\n  policy fallback KEPT\n"));
  EXPECT_EQ(std::string::npos, ran.out.find("interface f"));
  EXPECT_EQ("", ran.err);
}

TEST_F(CopyTest, AClassMapThatADynamicPolicyMapLosesIsNoted) {
  Ran const ran = copy("!\n", "class-map D\npolicy-map KEPT\ndynamic\nclass D\ndrop\n");
  EXPECT_EQ(0, ran.exitCode);
  EXPECT_EQ("pbrctl: note: policy-map 'KEPT' names the class-map 'D', which is not defined\n", ran.err);
}

TEST_F(CopyTest, AGroupTravelsWithItsNextHops) {
  std::string const text =
      "class-map C\npolicy-map P\nclass C\nset nexthop-group G\nnexthop-group G\nnexthop 10.0.0.1\n";
  Ran const ran = copy(text, "!\n");
  EXPECT_NE(std::string::npos, ran.out.find("nexthop-group G\n  nexthop 10.0.0.1\n"));
  EXPECT_EQ("changed: false\n", lastLine(copy(text, text)));
}

TEST_F(CopyTest, JsonSaysTheSame) {
  auto const json = nlohmann::json::parse(copy(kEdited, kBase, {"--json"}).out);
  EXPECT_EQ(1, json["version"]);
  ASSERT_EQ(2u, json["notifications"].size());
  EXPECT_EQ("removed", json["notifications"][0]["change"]);
  EXPECT_EQ(forwardPath() + ".nexthop[10.0.0.2]", json["notifications"][1]["path"]);
  EXPECT_EQ("C", json["result"]["classMaps"][0]["name"]);
  EXPECT_TRUE(json["changed"].is_boolean());
}

TEST_F(CopyTest, TheTraceGoesToTheErrorStream) {
  TestFile const from("from.conf", kEdited);
  TestFile const to("to.conf", kBase);
  Ran const traced = runProgram({"copy", from.path(), to.path(), "--trace"});
  EXPECT_NE(std::string::npos, traced.err.find("handleEntity copying C"));
  EXPECT_NE(std::string::npos, traced.err.find("FwdAction pointer change"));
  EXPECT_EQ("", runProgram({"copy", from.path(), to.path()}).err);
}

TEST(TreeWatch, HearsChildrenThatCameBeforeAndAfter) {
  auto const tree = treeOf(kBase);
  std::vector<std::string> heard;
  TreeWatch const watch(
      tree, [&](Change const& c) { heard.push_back(std::string(kindName(c.kind)) + " " + c.path()); });
  tree->cmapType()->cmapIs("NEW");
  tree->bgpPbrRedirectIs(true);
  forwardOf(*tree, "P", "C")->recursiveIs(true);
  tree->cmapType()->cmapDel("NEW");
  EXPECT_EQ((std::vector<std::string>{"added cmapType.cmap[NEW]", "set bgpPbrRedirect",
                                      "set " + forwardPath() + ".recursive", "removed cmapType.cmap[NEW]"}),
            heard);
}

TEST(TreeWatch, HearsNothingOfAChildThatLeft) {
  auto const tree = treeOf(kBase);
  auto const pmap = tree->pmapType()->pmap("P");
  std::vector<std::string> heard;
  TreeWatch const watch(tree, [&](Change const& c) { heard.push_back(c.path()); });
  tree->pmapType()->pmapDel("P");
  pmap->currentSubConfig()->dynamicIs(true);
  EXPECT_EQ(std::vector<std::string>{"pmapType.pmap[P]"}, heard);
}

} // namespace
} // namespace Pbrctl
