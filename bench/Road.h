// What a measurement between two processes is made of.

#pragma once

#include <cstddef>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace Bench {

inline constexpr std::size_t kEntities = 20000;
inline constexpr std::size_t kAttributes = 5; // Of each entity of a tree that is sent whole.

inline void require(bool holds, char const* what) {
  if (!holds) throw std::runtime_error(what);
}

// All of it.
inline void sendAll(int end, void const* bytes, std::size_t size) {
  for (auto const* at = static_cast<char const*>(bytes); size > 0;) {
    auto const count = ::send(end, at, size, MSG_NOSIGNAL);
    require(count > 0, "send");
    at += count;
    size -= static_cast<std::size_t>(count);
  }
}

// RETURNS how much has come, which is at least one byte.
inline std::size_t receive(int end, void* room, std::size_t size) {
  auto const count = ::recv(end, room, size, 0);
  require(count > 0, "recv");
  return static_cast<std::size_t>(count);
}

// What is measured: made in one process, then used in two.
class Road {
public:
  virtual ~Road() = default;
  virtual void openWriter() {}
  virtual void openReader() {}
  virtual void write(std::size_t changes) = 0;
  // Returns when all are there, and applied if they are.
  virtual void read(std::size_t changes) = 0;
};

class SocketRoad : public Road {
public:
  SocketRoad() { require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends_) == 0, "socketpair"); }
  ~SocketRoad() override {
    for (int const end : ends_) ::close(end);
  }

protected:
  int writerEnd() const { return ends_[0]; }
  int readerEnd() const { return ends_[1]; }

private:
  int ends_[2];
};

} // namespace Bench
