// Reads values in network order off the bytes of one message.
//
// Invariants:
// (1) begin_ <= at_ <= end_; nothing outside is ever read.

#pragma once

#include "Vyx/Connection.h"
#include "Vyx/NboAttrLog/ByteOrder.h"

namespace Vyx {

class ByteConnection {
public:
  class In;
};

// THROWS, all of the readers: ProtocolException when fewer bytes are left than the value takes. The position
// is then where it was.
class ByteConnection::In : public Connection::In {
public:
  std::uint8_t nextU8() { return next<std::uint8_t>(); }
  std::uint16_t nextU16() { return next<std::uint16_t>(); }
  std::uint32_t nextU32() { return next<std::uint32_t>(); }
  unsigned long long nextU64() { return next<std::uint64_t>(); }
  std::int32_t nextint() { return static_cast<std::int32_t>(nextU32()); }
  // THROWS: ProtocolException for another byte than 0 and 1, too.
  bool nextbool() {
    need(1);
    if (__builtin_expect(*at_ > 1, false)) failBool();
    return *at_++ != 0;
  }
  // A length of 32 bits, then so many bytes.
  String8 nextString();

  // Where the next value is read, from the beginning of the payload on.
  std::size_t position() const { return static_cast<std::size_t>(at_ - begin_); }
  // Goes to a place that was seen before, or on to one further behind.
  // THROWS: ProtocolException for a place beyond the end.
  void positionIs(std::size_t position);
  std::size_t remaining() const final { return static_cast<std::size_t>(end_ - at_); }
  // Leaves the rest unread.
  void remainingSkip() { at_ = end_; }
  // THROWS: ProtocolException when something is left.
  void expectEnd() const {
    if (__builtin_expect(at_ != end_, false)) failLeftOver();
  }

  std::size_t bounded(std::size_t size) final;
  void unbounded(std::size_t more) final { end_ += more; }
  void bytesTo(void* to, std::size_t size) final {
    if (size == 0) return;
    need(size);
    std::memcpy(to, at_, size);
    at_ += size;
  }

protected:
  In() = default;

  template <class U> U next() {
    need(sizeof(U));
    U const value = NboAttrLog::loadNetwork<U>(at_);
    at_ += sizeof(U);
    return value;
  }
  void need(std::size_t size) const {
    if (__builtin_expect(remaining() < size, false)) failShort(size);
  }
  [[noreturn]] void failShort(std::size_t size) const;

  // Of the payload that is being read.
  unsigned char* begin_ = nullptr;
  unsigned char* at_ = nullptr;
  unsigned char* end_ = nullptr; // Of what may be read: the payload, a section of it, a bounded part.

private:
  [[noreturn]] void failBool() const;
  [[noreturn]] void failLeftOver() const;

  TextPool texts_;
};

} // namespace Vyx
