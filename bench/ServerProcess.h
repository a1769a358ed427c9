// A server of somebody else's, in a process and a folder of its own for as long as this object lives.

#pragma once

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace Bench {

class ScratchFolder {
public:
  // Within that one; by default where temporary files are.
  explicit ScratchFolder(std::filesystem::path const& within = std::filesystem::temp_directory_path());
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;
  std::string path() const { return path_; }
  std::string operator/(std::string const& name) const { return path_ / name; }

private:
  std::filesystem::path path_;
};

class ServerProcess {
public:
  // Runs the program, under the name that is the first of its arguments; what it says is not shown.
  // THROWS: std::runtime_error when there is no such program.
  ServerProcess(std::string const& program, std::vector<std::string> arguments);
  // Ends it. Only the process that has made this object does.
  ~ServerProcess();
  ServerProcess(ServerProcess const&) = delete;
  ServerProcess& operator=(ServerProcess const&) = delete;

private:
  pid_t const owner_;
  pid_t child_ = 0;
};

// A port of the loopback that nobody listens at.
unsigned freePort();

// Until the condition holds, for half a minute at most. THROWS: std::runtime_error after that.
template <class Condition> void waitUntil(Condition const& condition) {
  auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) throw std::runtime_error("a server doesn't answer");
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

} // namespace Bench
