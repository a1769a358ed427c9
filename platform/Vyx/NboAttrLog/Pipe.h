// A stream within one process, without system calls: what one end writes, the other reads.
//
// Invariants:
// (1) Each end holds at most `capacity` bytes that it hasn't read.
// (2) Both ends belong to one thread. Either may end before the other; what was written before can be read.

#pragma once

#include "Vyx/NboAttrLog/Transport.h"

#include <memory>
#include <vector>

namespace Vyx::NboAttrLog {

class PipeEnd final : public Transport {
public:
  static constexpr std::size_t kCapacity = 256 * 1024;

  ~PipeEnd() override;

  IoResult read(std::span<unsigned char> room) override;
  IoResult write(std::span<unsigned char const> first, std::span<unsigned char const> second) override;
  void writeEnds() override;
  int fd() const override { return -1; }
  bool isReadable() const override { return used_ > 0 || isAtEnd_; }
  bool isWritable() const override { return !other_ || other_->used_ < other_->bytes_.size(); }
  // It runs within the peer's call: after a write, a read that made room, or its end.
  void wakerIs(Waker* waker) override { waker_ = waker; }
  std::string peerName() const override { return "pipe"; }
  bool isLocal() const override { return true; }

private:
  friend struct PipePair pipePair(std::size_t capacity);
  explicit PipeEnd(std::size_t capacity) : bytes_(capacity) {}

  std::size_t take(std::span<unsigned char const> bytes);
  std::size_t wrapped(std::size_t at) const { return at < bytes_.size() ? at : at - bytes_.size(); }
  void wake() const {
    if (waker_) waker_->wake();
  }

  PipeEnd* other_ = nullptr; // Null once that one has ended.
  bool isAtEnd_ = false;     // Nothing comes behind what is held.
  bool isWriteEnded_ = false;
  std::vector<unsigned char> bytes_; // A ring: `used_` bytes from `first_` on.
  std::size_t first_ = 0;
  std::size_t used_ = 0;
  Waker* waker_ = nullptr;
};

struct PipePair {
  std::unique_ptr<PipeEnd> first;
  std::unique_ptr<PipeEnd> second;
};
// REQUIRES: capacity > 0, that of each direction.
PipePair pipePair(std::size_t capacity = PipeEnd::kCapacity);

} // namespace Vyx::NboAttrLog
