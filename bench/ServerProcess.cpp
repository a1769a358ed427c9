#include "ServerProcess.h"

#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Bench {

ScratchFolder::ScratchFolder(std::filesystem::path const& within) {
  std::string path = (within / "vyxbenchXXXXXX").string();
  if (!::mkdtemp(path.data())) throw std::runtime_error("no temporary folder");
  path_ = path;
}

unsigned freePort() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  int const socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  bool const isFound = ::bind(socket, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                       ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0;
  ::close(socket);
  if (!isFound) throw std::runtime_error("no free port");
  return ntohs(address.sin_port);
}

ServerProcess::ServerProcess(std::string const& program, std::vector<std::string> arguments)
    : owner_(::getpid()) {
  if (::access(program.c_str(), X_OK) != 0) throw std::runtime_error(program + " is not there");
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  child_ = ::fork();
  if (child_ != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  int const nowhere = ::open("/dev/null", O_RDWR);
  for (int stream : {0, 1, 2}) ::dup2(nowhere, stream);
  ::execv(program.c_str(), argv.data());
  ::_exit(127);
}

ServerProcess::~ServerProcess() {
  if (::getpid() != owner_ || child_ <= 0) return;
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
}

} // namespace Bench
