#include "Vyx/NboAttrLog/Pipe.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Vyx::NboAttrLog {

PipePair pipePair(std::size_t capacity) {
  PipePair pair{std::unique_ptr<PipeEnd>(new PipeEnd(capacity)),
                std::unique_ptr<PipeEnd>(new PipeEnd(capacity))};
  pair.first->other_ = pair.second.get();
  pair.second->other_ = pair.first.get();
  return pair;
}

PipeEnd::~PipeEnd() {
  if (!other_) return;
  other_->other_ = nullptr;
  other_->isAtEnd_ = true;
  other_->wake();
}

IoResult PipeEnd::read(std::span<unsigned char> room) {
  if (used_ == 0) return IoResult::none(isAtEnd_ ? IoResult::Kind::closed : IoResult::Kind::wouldBlock);
  std::size_t const count = std::min(room.size(), used_);
  std::size_t const straight = std::min(count, bytes_.size() - first_);
  std::memcpy(room.data(), bytes_.data() + first_, straight);
  if (straight < count) std::memcpy(room.data() + straight, bytes_.data(), count - straight);
  bool const wasFull = used_ == bytes_.size();
  used_ -= count;
  first_ = used_ == 0 ? 0 : wrapped(first_ + count);
  if (wasFull && other_) other_->wake();
  return IoResult::moved(count);
}

// RETURNS how many of the bytes there was room for.
std::size_t PipeEnd::take(std::span<unsigned char const> bytes) {
  std::size_t const count = std::min(bytes.size(), bytes_.size() - used_);
  if (count == 0) return 0;
  std::size_t const at = wrapped(first_ + used_);
  std::size_t const straight = std::min(count, bytes_.size() - at);
  std::memcpy(bytes_.data() + at, bytes.data(), straight);
  if (straight < count) std::memcpy(bytes_.data(), bytes.data() + straight, count - straight);
  used_ += count;
  return count;
}

IoResult PipeEnd::write(std::span<unsigned char const> first, std::span<unsigned char const> second) {
  if (!other_ || isWriteEnded_) return IoResult::fromErrno(EPIPE);
  std::size_t count = other_->take(first);
  if (count == first.size()) count += other_->take(second);
  if (count == 0) return IoResult::none(IoResult::Kind::wouldBlock);
  other_->wake();
  return IoResult::moved(count);
}

void PipeEnd::writeEnds() {
  isWriteEnded_ = true;
  if (!other_) return;
  other_->isAtEnd_ = true;
  other_->wake();
}

} // namespace Vyx::NboAttrLog
