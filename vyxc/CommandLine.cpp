#include "CommandLine.h"

#include <cstddef>
#include <string_view>

namespace vyxc {

char const* const kUsage = R"(usage: vyxc [-I DIR]… --out DIR [--list-outputs] FILE.vyx…

Compiles the schema files, which form one unit, to C++.

  -I DIR          look for imported schemas in DIR too
  --out DIR       write the generated files below DIR; files that would not change are left alone
  --list-outputs  write nothing; print the names of the generated files, below DIR if --out is given
  --help          print this
  --version       print the version

Exit status: 0 done, 1 the schema is refused or a file cannot be written, 2 wrong usage.
)";

char const* const kVersion = "vyxc 0.1.0";

namespace {

// RETURNS whether words[at] is the option `name`, with its value in the same word or in the next one.
bool optionValue(std::vector<std::string> const& words, std::size_t& at, std::string_view name,
                 std::string_view joint, std::optional<std::string>& value) {
  std::string_view const word = words[at];
  value.reset();
  if (word == name) {
    if (at + 1 < words.size()) value = words[++at];
    return true;
  }
  auto const prefix = std::string(name) + std::string(joint);
  if (!word.starts_with(prefix)) return false;
  value = std::string(word.substr(prefix.size()));
  return true;
}

} // namespace

std::optional<CommandLine> parseCommandLine(std::vector<std::string> const& words, std::string& fault) {
  CommandLine result;
  for (std::size_t at = 0; at < words.size(); ++at) {
    auto const& word = words[at];
    std::optional<std::string> value;
    if (word == "--help") {
      result.help = true;
    } else if (word == "--version") {
      result.version = true;
    } else if (word == "--list-outputs") {
      result.listOutputs = true;
    } else if (optionValue(words, at, "-I", "", value)) {
      if (!value) return fault = "-I needs a directory", std::nullopt;
      if (!value->empty()) result.includeDirs.push_back(*value);
    } else if (optionValue(words, at, "--out", "=", value)) {
      if (!value || value->empty()) return fault = "--out needs a directory", std::nullopt;
      result.outDir = *value;
    } else if (word.size() > 1 && word[0] == '-') {
      return fault = "unknown option " + word, std::nullopt;
    } else {
      result.files.push_back(word);
    }
  }
  if (result.help || result.version) return result;
  if (result.files.empty()) return fault = "no schema file", std::nullopt;
  if (result.outDir.empty() && !result.listOutputs) return fault = "--out is missing", std::nullopt;
  return result;
}

} // namespace vyxc
