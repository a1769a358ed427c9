// What the compiler makes of tests/golden/vyxc/output/zoo.vyx is in the folder beside it, to the letter. With
// VYXC_UPDATE_GOLDEN in the environment the files are written instead of compared.

#include "SchemaFixture.h"

#include "vyxc/Output.h"

#include <cstdlib>

namespace vyxc {
namespace {

namespace fs = std::filesystem;

fs::path outputFolder() { return fs::path(PBR_TESTS_DIR) / "golden" / "vyxc" / "output"; }

std::vector<OutputFile> zoo() {
  Compilation const compilation({}, {(outputFolder() / "zoo.vyx").string()});
  EXPECT_EQ("", printed(compilation.diagnostics()));
  return emit(compilation.model());
}

TEST(OutputGoldenTest, ZooIsWrittenToTheLetter) {
  auto const files = zoo();
  if (std::getenv("VYXC_UPDATE_GOLDEN")) {
    EXPECT_TRUE(writeOutputs(outputFolder().string(), files, std::cerr));
  }
  for (auto const& file : files) EXPECT_EQ(readFile(outputFolder() / file.path), file.text) << file.path;
}

TEST(OutputGoldenTest, NoFileIsLeftOver) {
  std::size_t kept = 0;
  for (auto const& entry : fs::recursive_directory_iterator(outputFolder())) {
    auto const extension = entry.path().extension();
    if (extension == ".h" || extension == ".cpp") ++kept;
  }
  EXPECT_EQ(zoo().size(), kept);
}

TEST(OutputGoldenTest, TwoRunsAreEqual) {
  auto const first = zoo();
  auto const second = zoo();
  ASSERT_EQ(first.size(), second.size());
  for (std::size_t i = 0; i < first.size(); ++i) EXPECT_EQ(first[i].text, second[i].text);
}

TEST(OutputGoldenTest, NoLineIsTooWide) {
  for (auto const& file : zoo()) {
    std::istringstream lines(file.text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), CodeWriter::kWidth) << line;
  }
}

class OutputTest : public SchemaFixture {};

TEST_F(OutputTest, FoldersAreMade) {
  EXPECT_TRUE(writeOutputs(folder_.string(), {{"a/b/c.h", "text"}}, std::cerr));
  EXPECT_EQ("text", readFile(folder_ / "a/b/c.h"));
}

TEST_F(OutputTest, FileWithItsTextIsLeftAlone) {
  auto const path = write("a.h", "text");
  auto const before = fs::last_write_time(path) - std::chrono::hours(1);
  fs::last_write_time(path, before);
  EXPECT_TRUE(writeOutputs(folder_.string(), {{"a.h", "text"}}, std::cerr));
  EXPECT_EQ(before, fs::last_write_time(path));
  EXPECT_TRUE(writeOutputs(folder_.string(), {{"a.h", "other"}}, std::cerr));
  EXPECT_NE(before, fs::last_write_time(path));
}

TEST_F(OutputTest, FileThatCannotBeWrittenIsTold) {
  write("a", "no folder");
  std::ostringstream errors;
  EXPECT_FALSE(writeOutputs(folder_.string(), {{"a/b.h", "text"}}, errors));
  EXPECT_EQ((folder_ / "a/b.h").string() + ": error: cannot be written: Not a directory\n", errors.str());
}

} // namespace
} // namespace vyxc
