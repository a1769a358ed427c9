#include "Output.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

namespace vyxc {

namespace fs = std::filesystem;

namespace {

bool hasText(fs::path const& path, std::string const& text) {
  std::ifstream in(path, std::ios::binary);
  return in && std::string(std::istreambuf_iterator<char>(in), {}) == text;
}

} // namespace

bool writeOutputs(std::string const& folder, std::vector<OutputFile> const& files, std::ostream& errors) {
  bool done = true;
  for (auto const& file : files) {
    auto const path = fs::path(folder) / file.path;
    if (hasText(path, file.text)) continue;
    std::error_code failed;
    fs::create_directories(path.parent_path(), failed);
    errno = 0;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << file.text;
    out.close();
    if (out) continue;
    errors << path.string() << ": error: cannot be written: " << std::strerror(errno) << "\n";
    done = false;
  }
  return done;
}

} // namespace vyxc
