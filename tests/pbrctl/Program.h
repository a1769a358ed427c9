// The tool as a process of its own that runs beside the test.

#pragma once

#include "Running.h"

#include <chrono>
#include <sys/types.h>

namespace Pbrctl {

class Program {
public:
  static constexpr auto kPatience = std::chrono::seconds(30);

  explicit Program(std::vector<std::string> const& arguments);
  // One that still runs is killed.
  ~Program();
  Program(Program const&) = delete;
  Program& operator=(Program const&) = delete;

  // Waits until it has written that text, or fails the test. RETURNS all that it has written.
  std::string waitFor(std::string const& text);
  std::string written() const;
  std::string errors() const;
  void signal(int number);
  // Waits for its end. RETURNS the exit code; -1 when a signal ended it, or it doesn't end.
  int exitCode();
  int end(int number) {
    signal(number);
    return exitCode();
  }

private:
  TestFile out_;
  TestFile err_;
  pid_t pid_ = -1;
};

} // namespace Pbrctl
