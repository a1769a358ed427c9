#include "Vyx/NboAttrLog/Out.h"

#include "Vyx/Assert.h"
#include "Vyx/NboAttrLog/Exceptions.h"

#include <algorithm>

namespace Vyx::NboAttrLog {

namespace {

constexpr std::size_t kLargestReserve = 4096;

// Twice the capacity, so that what is moved to the front is at most as long as what was taken from there.
std::size_t usualSize(std::size_t capacity) { return 2 * capacity + kFrameBytes; }

} // namespace

Out::Out(std::size_t capacity, std::uint32_t maxLength)
    : maxLength_(maxLength), capacity_(capacity), reserve_(std::min(kLargestReserve, capacity / 4)) {
  require(maxLength >= kSmallestMaxLength && maxLength <= kLargestMaxLength,
          "maxLength >= kSmallestMaxLength && maxLength <= kLargestMaxLength", "Vyx/NboAttrLog/Out",
          __LINE__);
}

Out::~Out() = default;

void Out::currentPayloadSectionIs(PayloadSection section) {
  begin();
  if (sectionAt_ != 0) closeSection();
  unsigned char* const head = next(kSectionHeadBytes);
  storeNetwork(head, static_cast<std::uint32_t>(section) << 24);
  sectionAt_ = static_cast<std::uint32_t>(head - record_);
}

void Out::closeSection() {
  unsigned char* const head = record_ + sectionAt_;
  storeNetwork24(head + 1, static_cast<std::uint32_t>(at_ - head - kSectionHeadBytes));
  sectionAt_ = 0;
}

void Out::abandon() {
  at_ = record_;
  expectedLength_ = kNoRecord;
  sectionAt_ = 0;
  settle();
}

void Out::consumed(std::size_t bytes) {
  require(bytes <= pendingBytes(), "bytes <= pendingBytes()", "Vyx/NboAttrLog/Out", __LINE__);
  front_ += bytes;
  settle();
}

// Once everything is taken the next bytes go to the front again, and a buffer that had grown is given back.
void Out::settle() {
  if (pendingBytes() != 0 || isOpen()) return;
  if (size_ > usualSize(capacity_)) {
    data_.reset();
    size_ = 0;
  }
  pointersAre(0, 0);
}

void Out::pointersAre(std::size_t pending, std::size_t recordBytes) {
  front_ = data_.get();
  record_ = front_ + pending;
  at_ = record_ + recordBytes;
  limit_ = front_ + size_;
}

// Makes room behind at_, by moving everything to the front where that pays, else in a larger buffer.
void Out::makeRoom(std::size_t size) {
  std::size_t const pending = pendingBytes();
  std::size_t const record = static_cast<std::size_t>(at_ - record_);
  std::size_t const limit = kLengthBytes + maxLength_;
  if (size > limit || record > limit - size) {
    abandon();
    throwInternalException(
        format("message of %zu bytes is longer than %u", record + size - kLengthBytes, maxLength_));
  }
  std::size_t const kept = pending + record;
  std::size_t const needed = kept + size + kChecksumBytes;
  if (static_cast<std::size_t>(front_ - data_.get()) >= kept && needed <= size_) {
    if (kept) std::memmove(data_.get(), front_, kept);
  } else {
    std::size_t const grown = std::max({usualSize(capacity_), 2 * size_, needed});
    std::unique_ptr<unsigned char[]> fresh(new unsigned char[grown]);
    if (kept) std::memcpy(fresh.get(), front_, kept);
    data_ = std::move(fresh);
    size_ = grown;
  }
  pointersAre(pending, record);
}

void Out::connectedIs(bool connected) {
  connected_ = connected;
  watched_ = !connected || committedHook_;
  if (connected) return;
  abandon();
  consumed(pendingBytes());
}

void Out::committedHookIs(CommittedHook hook, void* context) {
  committedHook_ = hook;
  hookContext_ = context;
  watched_ = !connected_ || hook;
}

void Out::handleCommitted(std::size_t bytes) {
  if (connected_)
    committedHook_(hookContext_, *this);
  else
    consumed(bytes);
}

void Out::failHeader(int form) {
  if (form < 0) throwInternalException("header has no form");
  abandon();
  throwAttrLogRecordException("message was begun while another one is open");
}

void Out::failClose(std::size_t length) {
  bool const open = expectedLength_ != kNoRecord;
  std::uint32_t const expected = expectedLength_;
  abandon();
  if (!open) throwInternalException("no message is open");
  if (length > maxLength_)
    throwInternalException(format("message of %zu bytes is longer than %u", length, maxLength_));
  failFixedLength(length - kHeaderBytes, expected);
}

void Out::failFixedLength(std::size_t payload, std::uint32_t expected) {
  throwInternalException(format("payload of %zu bytes in a message of fixed length %u", payload, expected));
}

void Out::failToken() const { throwInternalException("no message is open"); }

} // namespace Vyx::NboAttrLog
