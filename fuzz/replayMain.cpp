// Feeds each file of the folders named on the command line to the fuzzer once. An empty corpus is an error:
// a replay that tries nothing would always pass.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

void replay(std::filesystem::path const& path) {
  std::ifstream in(path, std::ios::binary);
  std::string const bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::fprintf(stderr, "%s (%zu bytes)\n", path.c_str(), bytes.size());
  LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    for (auto const& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      replay(entry.path());
      ++replayed;
    }
  }
  std::fprintf(stderr, "%d inputs\n", replayed);
  return replayed > 0 ? 0 : 1;
}
