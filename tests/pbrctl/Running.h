// Running the tool in tests: in this process, and as the program itself.

#pragma once

#include "pbrctl/CommandLine.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace Pbrctl {

struct Ran {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// Through runCommandLine.
Ran run(std::vector<std::string> const& arguments);
// The built program; its path is in PBRCTL_PATH, the environment variable or else the definition, or it
// stands where the build puts it beside this test.
Ran runProgram(std::vector<std::string> const& arguments);

// Where the built program is, as above.
std::string programPath();
std::string contentOf(std::string const& path);

// A file of a test, removed with the test.
class TestFile {
public:
  TestFile(std::string const& name, std::string const& content);
  ~TestFile();
  TestFile(TestFile const&) = delete;
  TestFile& operator=(TestFile const&) = delete;
  std::string const& path() const { return path_; }

private:
  std::string directory_;
  std::string path_;
};

} // namespace Pbrctl
