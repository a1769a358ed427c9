// What vyxc is asked to do.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vyxc {

struct CommandLine {
  std::vector<std::string> includeDirs;
  std::vector<std::string> files;
  std::string outDir;
  bool listOutputs = false;
  bool help = false;
  bool version = false;
};

// RETURNS nothing if the words make no sense; `fault` says why then.
std::optional<CommandLine> parseCommandLine(std::vector<std::string> const& words, std::string& fault);

extern char const* const kUsage;
extern char const* const kVersion;

} // namespace vyxc
