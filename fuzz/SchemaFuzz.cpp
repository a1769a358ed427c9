// Gives a text to the schema compiler as a unit's only file. It reports mistakes with their places or
// compiles the schema; what it compiles it also generates code for. Nothing else may come of any text.

#include "vyxc/Compilation.h"
#include "vyxc/Emit.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

// The compiler reads files, so the text becomes one; it is rewritten for each input.
std::string const& schemaPath() {
  static std::string const path =
      std::filesystem::temp_directory_path() / ("fuzzed-" + std::to_string(::getpid()) + ".vyx");
  static bool const registered = std::atexit([] { std::remove(schemaPath().c_str()); }) == 0;
  if (!registered) std::abort();
  return path;
}

void fail(char const* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
  std::ofstream(schemaPath(), std::ios::binary)
      .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
  vyxc::Compilation const compilation({}, {schemaPath()});
  if (!compilation.diagnostics().ok()) {
    std::ostringstream words;
    compilation.diagnostics().print(words);
    if (words.str().empty()) fail("a refusal without words");
    return 0;
  }
  for (auto const& file : vyxc::emit(compilation.model()))
    if (file.path.empty() || file.text.empty()) fail("an output without a name or a text");
  return 0;
}
