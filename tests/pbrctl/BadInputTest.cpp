// What users feed to programs by mistake: each gets an error with its place, exit code 1 and no output.

#include "Running.h"

#include <filesystem>

namespace Pbrctl {
namespace {

struct Bad {
  char const* name;
  std::string content;
  char const* error; // Behind the file's name.
};

std::vector<Bad> badFiles() {
  return {
      {"statement.conf", "frobnicate\n", ":1:1: error: unknown statement 'frobnicate'"},
      {"address.conf", "class-map C\npolicy-map P\nclass C\nset nexthop 10.0.0.256\n", ":4:13: error: "},
      {"prefix.conf", "class-map C\nmatch ip 10.0.0.0/33 any\n", ":2:10: error: "},
      {"hostbits.conf", "class-map C\nmatch ip 10.0.0.1/8 any\n", ":2:10: error: "},
      {"dscp.conf", "class-map C\npolicy-map P\nclass C\nset dscp 64\n", ":4:10: error: "},
      {"name.conf", "class-map " + std::string(101, 'n') + "\n", ":1:11: error: the name "},
      {"sequence.conf", "class-map C\n10 match ip any any\n10 match ip any any\n",
       ":3:4: error: duplicate sequence number 10 in class-map 'C'"},
      {"empty.conf", "", ":1:1: error: the file is empty"},
      {"blank.conf", " \n\t\n", ":1:1: error: the file is empty"},
      {"empty.json", "", ":1:1: error: the file is empty"},
      {"line.conf", std::string(10000000, 'x'), ":1:1: error: the line has 10000000 bytes, more than 65536"},
      {"line.json", "{\"version\":1,\"" + std::string(10000000, 'x') + "\":1}",
       ":1:14: error: unknown member 'x"},
      {"nul.conf", std::string("class-map A\0B\n", 14), ":1:12: error: NUL byte in the text"},
      {"utf8.conf", "class-map A\xff\n", ":1:12: error: the text is not valid UTF-8"},
      {"utf8.json", "{\"version\":1,\"\xff\":1}", ":1:15: error: the text is not valid UTF-8"},
      {"deep.json", std::string(1000000, '['), ":1:17: error: nested deeper than 16"},
      {"type.json", "{\"version\":1,\"bgpRedirect\":\"yes\"}",
       ":1:28: error: bgpRedirect: true or false belongs here"},
      {"noversion.json", "{}", ":1:1: error: the member 'version' is missing"},
      {"broken.json", "{\"version\":1,", ":1:14: error: no valid JSON"},
  };
}

void expectRefused(Ran const& ran, std::string const& path, std::string const& error) {
  EXPECT_EQ(1, ran.exitCode) << path;
  EXPECT_EQ("", ran.out) << path;
  EXPECT_EQ(path + error, ran.err.substr(0, path.size() + error.size()));
  EXPECT_LT(ran.err.size(), 2000u) << path;
}

TEST(BadInput, EveryVerbRefusesItWithItsPlace) {
  TestFile const good("good.conf", "class-map C\n");
  for (Bad const& bad : badFiles()) {
    TestFile const file(bad.name, bad.content);
    expectRefused(runProgram({"check", file.path()}), file.path(), bad.error);
    if (bad.content.size() > 1000000) continue; // Read once; that is slow enough with sanitizers.
    expectRefused(run({"show", file.path()}), file.path(), bad.error);
    expectRefused(run({"convert", file.path(), "--to", "json"}), file.path(), bad.error);
    expectRefused(run({"diff", good.path(), file.path()}), file.path(), bad.error);
    expectRefused(run({"copy", good.path(), file.path()}), file.path(), bad.error);
    expectRefused(run({"get", file.path(), "."}), file.path(), bad.error);
    expectRefused(run({"set", file.path(), "bgpPbrRedirect", "true"}), file.path(), bad.error);
  }
}

TEST(BadInput, WhatIsNoFileIsRefused) {
  TestFile const file("there.conf", "!\n");
  std::string const directory = std::filesystem::path(file.path()).parent_path();
  expectRefused(runProgram({"show", directory}), directory, ":1:1: error: is a directory, not a file");
  expectRefused(runProgram({"show", directory + "/none"}), directory + "/none",
                ":1:1: error: cannot be opened: No such file or directory");
}

TEST(BadInput, AllErrorsOfAFileComeAtOnce) {
  TestFile const file("a.conf", "one\ntwo\nclass-map C\nthree\n");
  Ran const ran = runProgram({"check", file.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ(file.path() + ":1:1: error: unknown statement 'one'\n" + file.path() +
                ":2:1: error: unknown statement 'two'\n" + file.path() +
                ":4:1: error: unknown statement 'three' in class-map 'C'\n",
            ran.err);
}

TEST(BadInput, TheProgramExitsWithTheCodeOfItsVerb) {
  TestFile const good("good.conf", "class-map C\n");
  EXPECT_EQ(0, runProgram({"show", good.path()}).exitCode);
  EXPECT_EQ(2, runProgram({}).exitCode);
  EXPECT_EQ(2, runProgram({"show", "--colour"}).exitCode);
  EXPECT_EQ(0, runProgram({"--help"}).exitCode);
}

} // namespace
} // namespace Pbrctl
