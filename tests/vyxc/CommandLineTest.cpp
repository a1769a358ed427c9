#include "vyxc/CommandLine.h"

#include <gtest/gtest.h>

namespace vyxc {
namespace {

// Why the words are refused; empty if they are not.
std::string refusal(std::vector<std::string> const& words) {
  std::string fault;
  return parseCommandLine(words, fault) ? "" : fault;
}

TEST(CommandLineTest, IncludeDirectoryStandsInTheSameWordOrTheNext) {
  std::string fault;
  auto const asked = parseCommandLine({"-Ia", "-I", "b", "-I", "", "--out", "o", "f.vyx"}, fault);
  ASSERT_TRUE(asked);
  EXPECT_EQ((std::vector<std::string>{"a", "b"}), asked->includeDirs);
}

TEST(CommandLineTest, OutputFolderTakesAnEqualsSignToo) {
  std::string fault;
  EXPECT_EQ("o", parseCommandLine({"--out=o", "f.vyx"}, fault)->outDir);
}

TEST(CommandLineTest, WrongUsageIsTold) {
  EXPECT_EQ("no schema file", refusal({"--out", "o"}));
  EXPECT_EQ("--out is missing", refusal({"f.vyx"}));
  EXPECT_EQ("--out needs a directory", refusal({"f.vyx", "--out"}));
  EXPECT_EQ("-I needs a directory", refusal({"-I"}));
  EXPECT_EQ("unknown option --quick", refusal({"--quick"}));
}

TEST(CommandLineTest, ListingNeedsNoOutputFolder) { EXPECT_EQ("", refusal({"--list-outputs", "f.vyx"})); }

TEST(CommandLineTest, HelpNeedsNothingElse) {
  EXPECT_EQ("", refusal({"--help"}));
  EXPECT_EQ("", refusal({"--version"}));
}

} // namespace
} // namespace vyxc
