#include "CommandLine.h"
#include "Compilation.h"
#include "Output.h"

#include <exception>
#include <iostream>

namespace {

int run(std::vector<std::string> const& words) {
  std::string fault;
  auto const asked = vyxc::parseCommandLine(words, fault);
  if (!asked) {
    std::cerr << "vyxc: " << fault << "\n" << vyxc::kUsage;
    return 2;
  }
  if (asked->help) return std::cout << vyxc::kUsage, 0;
  if (asked->version) return std::cout << vyxc::kVersion << "\n", 0;

  vyxc::Compilation const compilation(asked->includeDirs, asked->files);
  compilation.diagnostics().print(std::cerr);
  if (!compilation.diagnostics().ok()) return 1;
  auto const files = vyxc::emit(compilation.model());
  if (!asked->listOutputs) return vyxc::writeOutputs(asked->outDir, files, std::cerr) ? 0 : 1;
  for (auto const& file : files)
    std::cout << (asked->outDir.empty() ? "" : asked->outDir + "/") << file.path << "\n";
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + 1, argv + argc});
  } catch (std::exception const& exception) {
    std::cerr << "vyxc: " << exception.what() << "\n";
    return 1;
  }
}
