// The writing end of an attribute log. Messages are appended; whoever carries the bytes takes them from the
// front.
//
//   out->nextHeaderIs(header); out << Out::kTransactBegin << value << Out::kTransactEnd;
//   n = ::write(fd, out->pending().data(), out->pending().size()); out->consumed(n);
//
// Invariants:
// (1) The bytes lie in one run: those of finished messages from front_ to record_, then those of the message
// that
//     is being written, up to at_. Only finished ones are pending.
// (2) at_ <= limit_. Behind an open message there is still room for the checksum.

#pragma once

#include "Vyx/Connection.h"
#include "Vyx/NboAttrLog/ByteOrder.h"
#include "Vyx/NboAttrLog/Crc32c.h"
#include "Vyx/NboAttrLog/FixedSize.h"
#include "Vyx/NboAttrLog/Frame.h"
#include "Vyx/TypeId.h"

#include <memory>
#include <span>
#include <type_traits>

namespace Vyx::NboAttrLog {

class Out final : public Connection::Out {
public:
  // The parts of an orphan's payload. The numbers are on the wire.
  enum PayloadSection : std::uint8_t { kTypeNames = 1, kConstructorValues = 3, kEntityIdSection = 4 };

  using CommittedHook = void (*)(void* context, Out& out);

  // `capacity` is what `hasSufficientBuffer` goes by; a message that is begun finds room in any case.
  // REQUIRES: maxLength <= kLargestMaxLength.
  explicit Out(std::size_t capacity = kDefaultCapacity, std::uint32_t maxLength = kDefaultMaxLength);
  ~Out() override;

  // Begins a message. THROWS: AttrLogRecordException when one is open, which is dropped; InternalException
  // for a header that has no form.
  void nextHeaderIs(MsgHeader const& header);
  // The token at the end closes the message, which is from then on pending. THROWS: InternalException, and
  // the message is dropped, when its payload hasn't the fixed length of its header; when no message is open.
  void transactTokenIs(TransactToken token) final {
    if (token == kTransactEnd)
      close();
    else
      begin();
  }
  // The same as header, token, values and token, at once. `Values` are FixedSize.
  template <class... Values> void messageIs(MsgHeader const& header, Values const&... values);
  // Begins a section of the payload; it ends with the next one or with the message.
  void currentPayloadSectionIs(PayloadSection section);
  // Drops the open message, if there is one.
  void abandon();
  bool isOpen() const { return at_ != record_; }

  // THROWS, all that append: InternalException when the message becomes longer than the limit; it is dropped.
  template <FixedSize T> void put(T const& value) { encode(next(kEncodedBytes<T>), value); }
  void putText(std::string_view text) {
    put(static_cast<std::uint32_t>(text.size()));
    putBytes(text.data(), text.size());
  }
  void append(void const* bytes, std::size_t size) final { putBytes(bytes, size); }
  // For values of several fields: room for `size` bytes, all of which the caller writes.
  unsigned char* next(std::size_t size) {
    if (__builtin_expect(static_cast<std::size_t>(limit_ - at_) < size + kChecksumBytes, false))
      makeRoom(size);
    unsigned char* const to = at_;
    at_ += size;
    return to;
  }

  // How many were finished so far, dropped ones included.
  std::uint64_t messages() const { return messages_; }

  // What may be sent.
  std::span<unsigned char const> pending() const { return {front_, pendingBytes()}; }
  std::size_t pendingBytes() const { return static_cast<std::size_t>(record_ - front_); }
  // REQUIRES: no more than is pending.
  void consumed(std::size_t bytes);

  std::size_t capacity() const { return capacity_; }
  // What the buffer takes now.
  std::size_t bufferBytes() const { return size_; }
  bool hasSufficientBuffer() const final {
    return pendingBytes() == 0 || pendingBytes() + reserve_ <= capacity_;
  }
  std::size_t room() const final { return pendingBytes() < capacity_ ? capacity_ - pendingBytes() : 0; }

  // While it is not connected, finished messages are dropped. Disconnecting drops all that is pending.
  bool connected() const final { return connected_; }
  void connectedIs(bool connected) final;

  // Called behind each finished message. It may consume, and it may write messages.
  void committedHookIs(CommittedHook hook, void* context);

  // The other end of the same connection; not owned.
  Connection::In* in() const { return in_; }
  void inIs(Connection::In* in) { in_ = in; }

private:
  // Of the payload: what no message has, what a message of variable length has.
  static constexpr std::uint32_t kNoRecord = 1U << 25;
  static constexpr std::uint32_t kAnyLength = ~0U;

  void putBytes(void const* bytes, std::size_t size) {
    unsigned char* const to = next(size);
    if (size) std::memcpy(to, bytes, size);
  }
  // RETURNS the form, for the header of a message that may begin now.
  std::uint64_t checked(MsgHeader const& header) {
    int const form = formOf(header);
    if (__builtin_expect(isOpen() || form < 0, false)) failHeader(form);
    return static_cast<std::uint64_t>(form);
  }
  // The two words before the payload.
  static void storeHead(unsigned char* to, std::size_t length, MsgHeader const& header, std::uint64_t form) {
    std::uint64_t const entity = header.entityId.value();
    std::uint64_t const attribute = static_cast<std::uint32_t>(header.attrId);
    storeNetwork<std::uint64_t>(to, static_cast<std::uint64_t>(length) << 40 | entity >> 24);
    storeNetwork<std::uint64_t>(to + 8, entity << 40 | attribute << 8 | form);
  }
  void commit(std::size_t bytes) {
    record_ += bytes;
    at_ = record_;
    ++messages_;
    if (__builtin_expect(watched_, false)) handleCommitted(bytes);
  }
  void begin() const {
    if (__builtin_expect(expectedLength_ == kNoRecord, false)) failToken();
  }
  void close();
  void closeSection();
  void makeRoom(std::size_t size);
  void settle();
  void handleCommitted(std::size_t bytes);
  void pointersAre(std::size_t pending, std::size_t recordBytes);
  [[noreturn]] void failHeader(int form);
  [[noreturn]] static void failFixedLength(std::size_t payload, std::uint32_t expected);
  [[noreturn]] void failClose(std::size_t length);
  [[noreturn]] void failToken() const;

  // record_ and at_ don't stand side by side: a compiler would write both at once by way of a vector
  // register, and the next message would have to wait for that.
  unsigned char* front_ = nullptr;
  unsigned char* record_ = nullptr;
  unsigned char* limit_ = nullptr; // The end of the buffer.
  unsigned char* at_ = nullptr;
  std::unique_ptr<unsigned char[]> data_; // Null until it is needed.
  std::uint32_t expectedLength_ = kNoRecord;
  std::uint32_t sectionAt_ = 0; // From the record's start; 0 outside of a section.
  std::uint32_t maxLength_;
  bool watched_ = false; // Whether a finished message asks for more: a hook, or nobody is connected.
  bool connected_ = true;

  std::uint64_t messages_ = 0;
  std::size_t size_ = 0;
  std::size_t capacity_;
  std::size_t reserve_; // What a message is expected to take at most.
  CommittedHook committedHook_ = nullptr;
  void* hookContext_ = nullptr;
  Connection::In* in_ = nullptr;
};

inline void Out::nextHeaderIs(MsgHeader const& header) {
  std::uint64_t const form = checked(header);
  storeHead(next(kPayloadOffset), 0, header, form);
  expectedLength_ = header.variableLength ? kAnyLength : header.fixedLength;
}

inline void Out::close() {
  if (__builtin_expect(sectionAt_ != 0, false)) closeSection();
  unsigned char* const start = record_;
  std::size_t const bytes = static_cast<std::size_t>(at_ - start);
  std::size_t const length = bytes - kLengthBytes;
  bool const fits = expectedLength_ == kAnyLength || expectedLength_ == bytes - kPayloadOffset;
  if (__builtin_expect(!fits || length > maxLength_, false)) failClose(length);
  // As a whole word, which the checksum then finds without waiting for the store.
  storeNetwork(start, loadNetwork<std::uint64_t>(start) | static_cast<std::uint64_t>(length) << 40);
  storeNetwork(at_, Crc32c::of(start, bytes));
  expectedLength_ = kNoRecord;
  commit(bytes + kChecksumBytes);
}

template <class... Values>
[[gnu::always_inline]] inline void Out::messageIs(MsgHeader const& header, Values const&... values) {
  constexpr std::size_t kPayload = (kEncodedBytes<Values> + ... + 0);
  constexpr std::size_t kBytes = kPayloadOffset + kPayload;
  std::uint64_t const form = checked(header);
  static_assert(kBytes <= kSmallestMaxLength);
  if (!header.variableLength && header.fixedLength != kPayload) failFixedLength(kPayload, header.fixedLength);
  unsigned char* const start = next(kBytes);
  storeHead(start, kBytes - kLengthBytes, header, form);
  unsigned char* to = start + kPayloadOffset;
  ((encode(to, values), to += kEncodedBytes<Values>), ...);
  storeNetwork(to, Crc32c::of<kBytes>(start));
  commit(kBytes + kChecksumBytes);
}

// The stream operators, which chain.

template <class T>
requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) Ptr<Out>
const& operator<<(Ptr<Out> const& out, T value) {
  out->put(value);
  return out;
}

inline Ptr<Out> const& operator<<(Ptr<Out> const& out, Connection::Out::TransactToken token) {
  out->transactTokenIs(token);
  return out;
}

inline Ptr<Out> const& operator<<(Ptr<Out> const& out, StringN<unsigned char> const& text) {
  out->putText(text.view());
  return out;
}

inline Ptr<Out> const& operator<<(Ptr<Out> const& out, EntityId const& id) {
  out->put(id);
  return out;
}

inline Ptr<Out> const& operator<<(Ptr<Out> const& out, TypeId const& id) { return out << id.name(); }

} // namespace Vyx::NboAttrLog
