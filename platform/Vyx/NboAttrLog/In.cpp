#include "Vyx/NboAttrLog/In.h"

#include "Vyx/Assert.h"
#include "Vyx/NboAttrLog/Exceptions.h"

#include <algorithm>

namespace Vyx::NboAttrLog {

In::In(std::size_t capacity, std::uint32_t maxLength)
    : maxLength_(maxLength), capacity_(std::max(capacity, kFrameBytes)) {
  require(maxLength >= kSmallestMaxLength && maxLength <= kLargestMaxLength,
          "maxLength >= kSmallestMaxLength && maxLength <= kLargestMaxLength", "Vyx/NboAttrLog/In", __LINE__);
}

In::~In() = default;

std::span<unsigned char> In::space() {
  if (!data_) bufferIs(capacity_);
  auto const gone = static_cast<std::size_t>(front() - data_.get());
  auto const kept = static_cast<std::size_t>(back_ - front());
  // What is moved is at most as long as what was read since the last time.
  if (gone != 0 && (gone >= kept || gone + kept == size_)) bufferIs(size_);
  // A message that is longer than the buffer.
  if (back_ == data_.get() + size_ && waiting() >= kLengthBytes) {
    std::size_t const length = loadNetwork24(next_);
    std::size_t const frame = kLengthBytes + length + kChecksumBytes;
    if (frame > waiting() && length <= maxLength_)
      bufferIs(static_cast<std::size_t>(next_ - data_.get()) + frame);
  }
  return {back_, static_cast<std::size_t>(data_.get() + size_ - back_)};
}

// Moves what is kept to the front of a buffer of that size, and the current message with it.
void In::bufferIs(std::size_t size) {
  unsigned char* const from = front();
  std::unique_ptr<unsigned char[]> fresh;
  if (size != size_) fresh.reset(new unsigned char[size + Crc32c::kSlack]);
  unsigned char* const to = fresh ? fresh.get() : data_.get();
  if (back_ != from) std::memmove(to, from, static_cast<std::size_t>(back_ - from));
  auto const move = [from, to](unsigned char*& pointer) { pointer = to + (pointer - from); };
  if (begin_)
    for (unsigned char** pointer : {&begin_, &at_, &end_}) move(*pointer);
  move(next_);
  move(back_);
  if (fresh) data_ = std::move(fresh);
  size_ = size;
}

// The length of less than the shortest frame, or one that is in bounds and not there yet.
std::uint32_t In::earlyLength() const {
  return waiting() < kLengthBytes ? kHeaderBytes : loadNetwork24(next_);
}

std::size_t In::upcoming(std::span<EntityId> entities) const {
  std::size_t count = 0;
  unsigned char const* at = next_;
  for (std::size_t i = 0; i < entities.size(); ++i) {
    auto const there = static_cast<std::size_t>(back_ - at);
    if (there < kFrameBytes) break;
    std::size_t const frame = kLengthBytes + std::size_t{loadNetwork24(at)} + kChecksumBytes;
    if (frame < kFrameBytes || frame > there) break;
    auto const entity = EntityId::fromValue(loadNetwork<std::uint64_t>(at + kLengthBytes));
    if (count == 0 || !(entities[count - 1] == entity)) entities[count++] = entity;
    at += frame;
  }
  return count;
}

void In::received(std::size_t bytes) {
  require(bytes <= static_cast<std::size_t>(data_.get() + size_ - back_), "bytes <= space().size()",
          "Vyx/NboAttrLog/In", __LINE__);
  back_ += bytes;
}

// Once everything is read the next bytes go to the front again, and a buffer that had grown is given back.
void In::noMessage() {
  begin_ = at_ = end_ = nullptr;
  inSection_ = false;
  if (next_ != back_) return;
  if (size_ > capacity_) {
    data_.reset();
    size_ = 0;
  }
  next_ = back_ = data_.get();
}

void In::sectionIs(std::uint8_t expected) {
  require(!inSection_, "!inSection_", "Vyx/NboAttrLog/In", __LINE__);
  need(kSectionHeadBytes);
  unsigned const section = *at_;
  std::uint32_t const length = loadNetwork24(at_ + 1);
  std::size_t const left = remaining() - kSectionHeadBytes;
  if (section != expected) throwProtocolException(format("section %u instead of %u", section, expected));
  if (length > left)
    throwProtocolException(format("section of %u bytes in %zu bytes of message", length, left));
  at_ += kSectionHeadBytes;
  beyondSection_ = bounded(length);
  inSection_ = true;
}

void In::sectionEnd() {
  require(inSection_, "inSection_", "Vyx/NboAttrLog/In", __LINE__);
  remainingSkip();
  unbounded(beyondSection_);
  inSection_ = false;
}

void In::overwrite(std::size_t position, std::span<unsigned char const> bytes) {
  require(position <= payloadBytes() && bytes.size() <= payloadBytes() - position,
          "position <= payloadBytes() && bytes.size() <= payloadBytes() - position", "Vyx/NboAttrLog/In",
          __LINE__);
  std::copy(bytes.begin(), bytes.end(), begin_ + position);
}

void In::overwrite(std::size_t position, EntityId const& id) {
  unsigned char bytes[sizeof(std::uint64_t)];
  storeNetwork<std::uint64_t>(bytes, id.value());
  overwrite(position, bytes);
}

void In::reset() {
  next_ = back_;
  noMessage();
}

void In::failLength(std::uint32_t length) const {
  throwProtocolException(
      length < kHeaderBytes
          ? format("message of %u bytes is shorter than its header of %zu", length, kHeaderBytes)
          : format("message of %u bytes is longer than %u", length, maxLength_));
}

void In::failChecksum(std::uint32_t is, std::uint32_t expected) const {
  throwProtocolException(format("checksum 0x%08x instead of 0x%08x", is, expected));
}

void In::failForm(std::uint8_t form, std::uint32_t payload) const {
  if (!isForm(form)) throwProtocolException(format("form 0x%02x is unknown", form));
  throwProtocolException(
      format("payload of %u bytes in a message of fixed length %u", payload, fixedLengthOf(form)));
}

} // namespace Vyx::NboAttrLog
