// A process that a test forks, and a folder that the two share.

#pragma once

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace processes_test {

class Child {
public:
  Child() = default;
  // The task runs in the new process, which ends with it.
  template <class Task> explicit Child(Task const& task) {
    std::fflush(nullptr);
    pid_ = ::fork();
    if (pid_ != 0) return;
    ::alarm(kPatience);
    int code = 0;
    try {
      task();
    } catch (std::exception const& error) {
      std::fprintf(stderr, "%s\n", error.what());
      code = 1;
    }
    ::_exit(code);
  }
  Child(Child const&) = delete;
  Child& operator=(Child const&) = delete;
  ~Child() { kill(); }

  void kill() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    wait();
  }
  // RETURNS "exit 0" or "signal 9", and waits for that.
  std::string wait() {
    int status = 0;
    ::waitpid(std::exchange(pid_, 0), &status, 0);
    return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                               : "exit " + std::to_string(WEXITSTATUS(status));
  }
  // Whether it has ended; that is kept for `wait`.
  bool hasEnded() const {
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT);
    return ended.si_pid == pid_;
  }
  pid_t pid() const { return pid_; }

private:
  static constexpr unsigned kPatience = 60; // Seconds; a child that is forgotten ends by itself.

  pid_t pid_ = 0;
};

class SharedFolder {
public:
  SharedFolder() : path_((std::filesystem::temp_directory_path() / "pbrXXXXXX").string()) {
    if (!::mkdtemp(path_.data())) throw std::runtime_error("no temporary folder");
  }
  SharedFolder(SharedFolder const&) = delete;
  SharedFolder& operator=(SharedFolder const&) = delete;
  ~SharedFolder() { std::filesystem::remove_all(path_); }

  // Any user may come in.
  void openToAll() const { ::chmod(path_.c_str(), 0755); }
  std::string operator/(std::string const& name) const { return path_ + "/" + name; }
  std::string const& path() const { return path_; }

  void write(std::string const& name, std::string const& text) const {
    std::ofstream(*this / name, std::ios::binary) << text;
  }
  std::string read(std::string const& name) const {
    std::ifstream from(*this / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(from), {}};
  }

private:
  std::string path_;
};

} // namespace processes_test
