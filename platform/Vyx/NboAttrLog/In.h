// The reading end of an attribute log: takes bytes as they come, in pieces of any size, and gives out
// messages.
//
//   while (in.nextMessage()) { ... in.header() ... in.nextU32() ... in.expectEnd(); }
//   std::span<unsigned char> to = in.space(); n = ::read(fd, to.data(), to.size()); in.received(n);
//
// Invariants:
// (1) The bytes lie in one run: the frame of the current message, if there is one; from next_ to back_ those
// of
//     further messages.
// (2) A message that is given out has passed every check that needs no knowledge of its entity.
// (3) The buffer is at most as large as the largest frame, or as it was asked for.

#pragma once

#include "Vyx/ByteConnection.h"
#include "Vyx/NboAttrLog/Crc32c.h"
#include "Vyx/NboAttrLog/Frame.h"

#include <memory>
#include <span>

namespace Vyx::NboAttrLog {

class In final : public ByteConnection::In {
public:
  // REQUIRES: maxLength <= kLargestMaxLength.
  explicit In(std::size_t capacity = kDefaultCapacity, std::uint32_t maxLength = kDefaultMaxLength);
  ~In() override;

  std::uint32_t maxLength() const { return maxLength_; }

  // Where bytes may be received to. Empty only while whole messages wait to be read. The current message
  // stays what it is.
  std::span<unsigned char> space();
  // REQUIRES: no more than there was space for.
  void received(std::size_t bytes);
  // How many bytes are there behind the current message. Where the stream ends: those of a message that was
  // cut short.
  std::size_t waiting() const { return static_cast<std::size_t>(back_ - next_); }

  // Ends the current message, read or not, and goes on to the next. RETURNS false while it isn't all there.
  // THROWS: ProtocolException for bytes that are no message, now and whenever it is called again.
  bool nextMessage();
  // Looks at the next messages, `entities.size()` of them at most and no further than they are all there.
  // Nothing of them is checked yet. Stores whom they are for, once where several in a row are for the same.
  // RETURNS how many were stored.
  std::size_t upcoming(std::span<EntityId> entities) const;
  // REQUIRES: a current message, here and with all readers.
  MsgHeader header() const;
  // The same as header().messageClass.
  std::uint32_t messageClass() const { return messageClassOf(form()); }
  // Of the current message, not of the section or bounded part that is being read.
  std::size_t payloadBytes() const { return static_cast<std::size_t>(next_ - begin_) - kChecksumBytes; }

  double nextSeconds() { return std::bit_cast<double>(next<std::uint64_t>()); }
  EntityId nextEntityId() { return EntityId::fromValue(nextU64()); }
  // The entity of the number that stands next, null for 0. THROWS: ProtocolException when this log has none.
  Ptr<Entity> nextEntity();

  // Enters a section, which then bounds the reading. REQUIRES: outside of a section.
  // THROWS: ProtocolException when another section stands here.
  void sectionIs(std::uint8_t expected);
  // Leaves the section and what is unread of it.
  void sectionEnd();

  // Changes bytes of the current message. REQUIRES: they lie within its payload.
  void overwrite(std::size_t position, std::span<unsigned char const> bytes);
  void overwrite(std::size_t position, EntityId const& id);

  // Drops everything, as before the first byte.
  void reset();

  // Whether entities may be looked up by this log's numbers.
  std::uint8_t inReadyFlag() const { return inReadyFlag_; }
  void inReadyFlagIs(std::uint8_t ready) { inReadyFlag_ = ready; }

  // Who gives the messages to their entities; not owned.
  Demuxer* demuxer() const { return demuxer_; }
  void demuxerIs(Demuxer* demuxer) { demuxer_ = demuxer; }

private:
  unsigned char* front() const { return begin_ ? begin_ - kPayloadOffset : next_; }
  std::uint8_t form() const { return *(begin_ - 1); }
  void noMessage();
  std::uint32_t earlyLength() const;
  [[noreturn]] void failLength(std::uint32_t length) const;
  [[noreturn]] void failChecksum(std::uint32_t is, std::uint32_t expected) const;
  [[noreturn]] void failForm(std::uint8_t form, std::uint32_t payload) const;
  void bufferIs(std::size_t size);

  std::unique_ptr<unsigned char[]> data_; // Null until it is needed.
  std::size_t size_ = 0;
  unsigned char* next_ = nullptr; // The frame behind the current message.
  unsigned char* back_ = nullptr; // The end of what was received.

  std::size_t beyondSection_ = 0; // How many bytes of the payload stand behind the section.
  bool inSection_ = false;

  std::uint8_t inReadyFlag_ = 0;
  std::uint32_t maxLength_;
  std::size_t capacity_;
  Demuxer* demuxer_ = nullptr;
};

[[gnu::always_inline]] inline bool In::nextMessage() {
  unsigned char* const frame = next_;
  std::size_t const there = waiting();
  // A length that is out of bounds is told as soon as it is there.
  std::uint32_t const length = there >= kFrameBytes ? loadNetwork<std::uint32_t>(frame) >> 8 : earlyLength();
  std::uint32_t const payload = length - kHeaderBytes;
  if (__builtin_expect(payload > maxLength_ - kHeaderBytes, false)) failLength(length);
  std::size_t const checked = kLengthBytes + std::size_t{length};
  if (there < checked + kChecksumBytes) {
    noMessage();
    return false;
  }
  std::uint32_t const checksum = loadNetwork<std::uint32_t>(frame + checked);
  std::uint32_t const expected = Crc32c::ofSlack(frame, checked);
  if (__builtin_expect(checksum != expected, false)) failChecksum(checksum, expected);
  std::uint8_t const form = frame[kPayloadOffset - 1];
  if (__builtin_expect(!fitsForm(form, payload), false)) failForm(form, payload);
  begin_ = at_ = frame + kPayloadOffset;
  end_ = frame + checked;
  next_ = frame + checked + kChecksumBytes;
  inSection_ = false;
  return true;
}

inline MsgHeader In::header() const {
  return {EntityId::fromValue(loadNetwork<std::uint64_t>(begin_ - kHeaderBytes)),
          static_cast<AttributeId>(loadNetwork<std::uint32_t>(begin_ - 5)),
          variableLengthOf(form()),
          fixedLengthOf(form()),
          messageClassOf(form()),
          0};
}

} // namespace Vyx::NboAttrLog
