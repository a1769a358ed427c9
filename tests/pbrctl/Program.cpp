#include "Program.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Pbrctl {

namespace {

constexpr int kStepMilliseconds = 5;

template <class Condition> bool becomesTrue(Condition condition) {
  auto const until = std::chrono::steady_clock::now() + Program::kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= until) return false;
    ::poll(nullptr, 0, kStepMilliseconds);
  }
  return true;
}

} // namespace

Program::Program(std::vector<std::string> const& arguments) : out_("out", ""), err_("err", "") {
  std::string const path = programPath();
  std::vector<char*> argv{const_cast<char*>(path.c_str())};
  for (std::string const& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  int const out = ::open(out_.path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  int const err = ::open(err_.path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  ::close(out);
  ::close(err);
}

Program::~Program() {
  if (pid_ > 0) end(SIGKILL);
}

std::string Program::waitFor(std::string const& text) {
  EXPECT_TRUE(becomesTrue([&] { return written().find(text) != std::string::npos; }))
      << "no " << text << " in " << written() << errors();
  return written();
}

std::string Program::written() const { return contentOf(out_.path()); }
std::string Program::errors() const { return contentOf(err_.path()); }

void Program::signal(int number) { ::kill(pid_, number); }

int Program::exitCode() {
  int status = 0;
  if (!becomesTrue([&] { return ::waitpid(pid_, &status, WNOHANG) != 0; })) return -1;
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace Pbrctl
