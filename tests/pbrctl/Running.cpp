#include "Running.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace Pbrctl {

namespace {

std::string newDirectory() {
  std::string path = testing::TempDir() + "pbrctl-test-XXXXXX";
  if (!mkdtemp(path.data())) throw std::runtime_error("no directory for test files");
  return path;
}

std::string shellQuoted(std::string const& word) {
  std::string text = "'";
  for (char c : word) text += c == '\'' ? "'\\''" : std::string(1, c);
  return text + "'";
}

} // namespace

std::string contentOf(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string programPath() {
  if (char const* const path = std::getenv("PBRCTL_PATH")) return path;
#ifdef PBRCTL_PATH
  return PBRCTL_PATH;
#else
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "apps/pbrctl/pbrctl";
#endif
}

Ran run(std::vector<std::string> const& arguments) {
  std::vector<char const*> argv = {"pbrctl"};
  for (std::string const& argument : arguments) argv.push_back(argument.c_str());
  std::ostringstream out;
  std::ostringstream err;
  int const code = runCommandLine(static_cast<int>(argv.size()), argv.data(), {out, err});
  return {code, out.str(), err.str()};
}

Ran runProgram(std::vector<std::string> const& arguments) {
  TestFile const out("out", "");
  TestFile const err("err", "");
  std::string command = shellQuoted(programPath());
  for (std::string const& argument : arguments) command += " " + shellQuoted(argument);
  int const status =
      std::system((command + " >" + shellQuoted(out.path()) + " 2>" + shellQuoted(err.path())).c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out.path()), contentOf(err.path())};
}

TestFile::TestFile(std::string const& name, std::string const& content)
    : directory_(newDirectory()), path_(directory_ + "/" + name) {
  std::ofstream(path_, std::ios::binary) << content;
}

TestFile::~TestFile() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

} // namespace Pbrctl
