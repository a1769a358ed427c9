// Each tests/golden/vyxc/errors/NAME.vyx is refused with exactly the text in NAME.txt beside it. With
// VYXC_UPDATE_GOLDEN in the environment the texts are written instead of compared.

#include "SchemaFixture.h"

#include <algorithm>
#include <cstdlib>

namespace vyxc {
namespace {

namespace fs = std::filesystem;

fs::path errorsFolder() { return fs::path(PBR_TESTS_DIR) / "golden" / "vyxc" / "errors"; }

std::vector<std::string> errorCases() {
  std::vector<std::string> result;
  for (auto const& entry : fs::directory_iterator(errorsFolder())) {
    if (entry.path().extension() == ".vyx") result.push_back(entry.path().stem().string());
  }
  std::sort(result.begin(), result.end());
  return result;
}

// Without the folder that the tree happens to be in.
std::string withoutFolder(std::string text) {
  auto const folder = errorsFolder().string() + "/";
  for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder))
    text.erase(at, folder.size());
  return text;
}

class ErrorGoldenTest : public testing::TestWithParam<std::string> {};

TEST_P(ErrorGoldenTest, IsToldAsWritten) {
  auto const schema = errorsFolder() / (GetParam() + ".vyx");
  auto const expected = errorsFolder() / (GetParam() + ".txt");
  Compilation const compilation({(errorsFolder() / "import").string()}, {schema.string()});
  auto const told = withoutFolder(printed(compilation.diagnostics()));
  if (std::getenv("VYXC_UPDATE_GOLDEN")) std::ofstream(expected, std::ios::binary) << told;
  EXPECT_FALSE(compilation.diagnostics().ok());
  EXPECT_EQ(readFile(expected), told);
}

INSTANTIATE_TEST_SUITE_P(Files, ErrorGoldenTest, testing::ValuesIn(errorCases()),
                         [](testing::TestParamInfo<std::string> const& info) { return info.param; });

} // namespace
} // namespace vyxc
