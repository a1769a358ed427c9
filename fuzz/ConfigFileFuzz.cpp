// Gives one file to the readers of configurations. They may refuse it with errors and in no other way; what
// they accept must build a tree, and be written in either form and read back to the same.

#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/NativeWriter.h"
#include "pbrctl/PbrMapWriter.h"
#include "pbrctl/TreeBuilder.h"
#include "pbrctl/TreeReader.h"

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sstream>

namespace {

using namespace Pbrctl;

[[noreturn]] void fail(char const* what, std::string const& text) {
  std::fprintf(stderr, "%s:\n%s\n", what, text.c_str());
  std::abort();
}

std::optional<ConfigAst> readIf(std::string const& text) {
  Diagnostics diagnostics("input");
  ConfigAst config = readConfig(SourceText("input", text), diagnostics);
  std::ostringstream errors;
  diagnostics.print(errors);
  return diagnostics.ok() ? std::optional(std::move(config)) : std::nullopt;
}

// What the model makes of it: groups are resolved, what says the same is the same.
ConfigAst throughTree(ConfigAst const& config, std::string const& text) {
  Diagnostics diagnostics("input");
  auto const tree = buildTree(config, diagnostics);
  if (!tree) fail("builds no tree", text);
  std::vector<std::string> problems;
  ConfigAst content = readTree(*tree, problems);
  if (!problems.empty()) fail(problems.front().c_str(), text);
  return content;
}

void expectReadsBack(ConfigAst const& content, std::string const& written) {
  std::optional<ConfigAst> const again = readIf(written);
  if (!again) fail("what was written is refused", written);
  if (!(throughTree(*again, written) == content))
    fail("what was written reads back to something else", written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string const text(reinterpret_cast<char const*>(data), size);
  std::optional<ConfigAst> const config = readIf(text);
  if (!config) return 0;
  ConfigAst const content = throughTree(*config, text);
  std::ostringstream native;
  writeNative(content, native);
  expectReadsBack(content, native.str());
  std::ostringstream json;
  writeJson(content, json);
  expectReadsBack(content, json.str());
  std::vector<std::string> problems;
  std::string const pbrMaps = pbrMapText(content, problems);
  if (problems.empty()) expectReadsBack(content, pbrMaps);
  return 0;
}
