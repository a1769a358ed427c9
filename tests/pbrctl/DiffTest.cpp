#include "pbrctl/Diff.h"

#include "Reading.h"

namespace Pbrctl {
namespace {

std::string diffOf(std::string const& first, std::string const& second) {
  std::ostringstream out;
  printDiff(diff(parsed(first), parsed(second)), out);
  return out.str();
}

constexpr char const* kBase = "class-map A\nmatch ip any any dscp 1\nclass-map B\n"
                              "policy-map P\n10 class A\nset nexthop 10.0.0.1\n20 class B\ndrop\n";

TEST(Diff, EqualFilesDoNotDiffer) { EXPECT_EQ("", diffOf(kBase, std::string("! a comment\n") + kBase)); }

TEST(Diff, AStatementThatChangedStandsUnderItsBlocks) {
  std::string const changed = "class-map A\nmatch ip any any dscp 1\nclass-map B\n"
                              "policy-map P\n10 class A\nset nexthop 10.0.0.2\n20 class B\ndrop\n";
  EXPECT_EQ("  policy-map P\n"
            "    10 class A\n"
            "-     set nexthop 10.0.0.1\n"
            "+     set nexthop 10.0.0.2\n",
            diffOf(kBase, changed));
}

TEST(Diff, ABlockThatCameStandsWhole) {
  EXPECT_EQ("+ class-map C\n+   10 match ip any any dscp 2\n",
            diffOf(kBase, std::string(kBase) + "class-map C\nmatch ip any any dscp 2\n"));
  EXPECT_EQ("- class-map C\n-   10 match ip any any dscp 2\n",
            diffOf(std::string(kBase) + "class-map C\nmatch ip any any dscp 2\n", kBase));
}

TEST(Diff, AClassThatMovedIsOneChange) {
  std::string const moved = "class-map A\nmatch ip any any dscp 1\nclass-map B\n"
                            "policy-map P\n30 class A\nset nexthop 10.0.0.1\n20 class B\ndrop\n";
  EXPECT_EQ("  policy-map P\n-   10 class A\n+   30 class A\n", diffOf(kBase, moved));
}

TEST(Diff, ASwitchIsAStatement) {
  EXPECT_EQ("+ bgp-redirect\n", diffOf(kBase, std::string("bgp-redirect\n") + kBase));
}

TEST(Diff, JsonSaysTheSame) {
  auto const json = diffJson(diff(parsed("class-map A\n"), parsed("class-map A\nmatch ip any any\n")));
  EXPECT_EQ(
      R"({"differences":[{"added":"10 match ip any any","in":["class-map A"]}],"equal":false,"version":1})",
      json.dump());
}

} // namespace
} // namespace Pbrctl
