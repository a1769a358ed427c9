#include "Running.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {
namespace {

constexpr char const* kText = "class-map C\nmatch ip 10.0.0.0/8 any\n"
                              "policy-map P\nclass C\nset nexthop 10.0.0.1\ninterface e\npolicy P\n";
constexpr char const* kWritten = "! policy-based routing\n!\nclass-map C\n  10 match ip 10.0.0.0/8 any\n"
                                 "!\npolicy-map P\n  10 class C\n    set nexthop 10.0.0.1\n"
                                 "!\ninterface e\n  policy P\n";

TEST(CommandLine, CheckSaysWhatIsRightAndWhatIsNot) {
  TestFile const good("good.conf", kText);
  TestFile const bad("bad.conf", "colour red\n");
  Ran const ran = run({"check", good.path(), bad.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ(good.path() + ": ok, 1 class map, 1 policy map, 0 next-hop groups, 1 interface\n", ran.out);
  EXPECT_EQ(bad.path() + ":1:1: error: unknown statement 'colour'\n", ran.err);
}

TEST(CommandLine, ShowWritesEitherForm) {
  TestFile const file("a.conf", kText);
  EXPECT_EQ(kWritten, run({"show", file.path()}).out);
  auto const json = nlohmann::json::parse(run({"show", file.path(), "--json"}).out);
  EXPECT_EQ(1, json["version"]);
  EXPECT_EQ("C", json["classMaps"][0]["name"]);
}

TEST(CommandLine, ConvertGoesThereAndBack) {
  TestFile const text("a.conf", kText);
  TestFile const json("a.json", run({"convert", text.path(), "--to", "json"}).out);
  Ran const back = run({"convert", json.path(), "--to", "text"});
  EXPECT_EQ(0, back.exitCode);
  EXPECT_EQ(kWritten, back.out);
}

TEST(CommandLine, ConvertRefusesWhatAPbrMapCannotSay) {
  TestFile const text("a.conf", kText);
  Ran const ran = run({"convert", text.path(), "--to", "pbr-map"});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("", ran.out);
  EXPECT_EQ(0u, ran.err.find(text.path() + ":1:1: error: a pbr-map cannot say class 'C'"));
  EXPECT_EQ(2, run({"convert", text.path(), "--to", "yang"}).exitCode);
}

TEST(CommandLine, DiffIsEmptyForEqualFiles) {
  TestFile const file("a.conf", kText);
  TestFile const empty("b.conf", "!\n");
  Ran const same = run({"diff", file.path(), file.path()});
  EXPECT_EQ(0, same.exitCode);
  EXPECT_EQ("", same.out);
  EXPECT_EQ("pbrctl: no differences\n", same.err);
  EXPECT_NE(std::string::npos,
            run({"diff", file.path(), empty.path()}).out.find("- interface e\n-   policy P\n"));
  EXPECT_TRUE(nlohmann::json::parse(run({"diff", file.path(), file.path(), "--json"}).out)["equal"]);
}

TEST(CommandLine, GetReadsByPath) {
  TestFile const file("a.conf", kText);
  Ran const ran = run({"get", file.path(), "pmapType.pmap[P].currentSubConfig.classAction[C].sequence"});
  EXPECT_EQ(0, ran.exitCode);
  EXPECT_EQ("10\n", ran.out);
  Ran const lost = run({"get", file.path(), "pmapType.pmap[Q].currentSubConfig"});
  EXPECT_EQ(1, lost.exitCode);
  EXPECT_EQ("pbrctl: error: 'pmap' has no member 'Q'\n", lost.err);
}

TEST(CommandLine, SetShowsTheResultAndLeavesTheFile) {
  TestFile const file("a.conf", kText);
  Ran const ran =
      run({"set", file.path(), "pmapType.pmap[P].currentSubConfig.classAction[C].sequence", "77"});
  EXPECT_EQ(0, ran.exitCode);
  EXPECT_NE(std::string::npos, ran.out.find("  77 class C\n"));
  EXPECT_EQ(kWritten, run({"show", file.path()}).out);
}

TEST(CommandLine, SetKeepsTheFormOfTheFile) {
  TestFile const file("a.json", "{\"version\":1}");
  Ran const ran = run({"set", file.path(), "bgpPbrRedirect", "true"});
  EXPECT_TRUE(nlohmann::json::parse(ran.out)["bgpRedirect"]);
}

TEST(CommandLine, SetRefusesWhatNoFileCanSay) {
  TestFile const file("a.conf", kText);
  std::string const action =
      "pmapType.pmap[P].currentSubConfig.classAction[C].policyAction[actionPbrForward]";
  Ran const ran = run({"set", file.path(), action + ".nexthop[10.0.0.1]", "false"});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("", ran.out);
  EXPECT_EQ(1, run({"set", file.path(), action + ".fwdActionType", "dropAction"}).exitCode);
}

TEST(CommandLine, TypesListsTheModel) {
  EXPECT_NE(std::string::npos, run({"types"}).out.find("entity Pbr::PbrFwdAction : PolicyMap::Action\n"));
  Ran const one = run({"types", "Pbr::PbrFwdAction"});
  EXPECT_NE(std::string::npos, one.out.find("   388  recursive "));
  EXPECT_NE(std::string::npos,
            one.out.find(
                "constructor (className: Vyx::Name, id: Kest::UniqueId, fwdActionType: Pbr::PbrActionType)"));
  EXPECT_EQ(one.out, run({"types", "PbrFwdAction"}).out);
  EXPECT_EQ(1, run({"types", "NoSuchType"}).exitCode);
  auto const json = nlohmann::json::parse(run({"types", "Pbr::Config", "--json"}).out);
  EXPECT_EQ("Pbr::Config", json["types"][0]["name"]);
}

TEST(CommandLine, WrongUseIsToldApartFromRefusal) {
  EXPECT_EQ(2, run({}).exitCode);
  EXPECT_EQ(2, run({"frobnicate"}).exitCode);
  EXPECT_EQ(2, run({"show"}).exitCode);
  EXPECT_EQ(2, run({"show", "a", "--colour"}).exitCode);
  EXPECT_EQ(0, run({"--help"}).exitCode);
  EXPECT_EQ("pbrctl 0.1.0\n", run({"--version"}).out);
}

} // namespace
} // namespace Pbrctl
