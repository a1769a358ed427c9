// A file descriptor that is closed when its holder ends.

#pragma once

#include <unistd.h>
#include <utility>

namespace Vyx::NboAttrLog {

class Descriptor {
public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& o) noexcept : fd_(std::exchange(o.fd_, -1)) {}
  Descriptor& operator=(Descriptor o) noexcept {
    std::swap(fd_, o.fd_);
    return *this;
  }
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }

private:
  int fd_ = -1;
};

} // namespace Vyx::NboAttrLog
