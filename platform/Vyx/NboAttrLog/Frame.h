// The frame of a message. Reader and writer share all of it.
//
//   frame   := length:u24 header payload checksum:u32
//   header  := entityId:u64 attributeId:i32 form:u8
//   form    := bit 0 variableLength, bits 1-3 code of fixedLength, bits 4-6 code of messageClass, bit 7 zero
//
// `length` counts header and payload; the checksum is the CRC-32C of all bytes before it, `length` included.
//
// Invariants:
// (1) A header has one form at most, and a form stands for one header's three fields at most.

#pragma once

#include "Vyx/NboAttrLog/MsgHeader.h"

#include <array>
#include <cstddef>

namespace Vyx::NboAttrLog {

inline constexpr std::size_t kLengthBytes = 3;
inline constexpr std::size_t kHeaderBytes = 13;
inline constexpr std::size_t kChecksumBytes = 4;
// What stands before the payload.
inline constexpr std::size_t kPayloadOffset = kLengthBytes + kHeaderBytes;
inline constexpr std::size_t kFrameBytes = kPayloadOffset + kChecksumBytes;
static_assert(kFrameBytes == 20);

// Of a section: its number, and the length of what follows.
inline constexpr std::size_t kSectionHeadBytes = 4;

// The limit of `length`.
inline constexpr std::uint32_t kDefaultMaxLength = 1U << 20;
inline constexpr std::uint32_t kSmallestMaxLength = 256;
inline constexpr std::uint32_t kLargestMaxLength = (1U << 24) - 1;

inline constexpr std::size_t kDefaultCapacity = 256U << 10;

inline constexpr int kNoForm = -1;

// The sizes and classes by their codes.
inline constexpr std::uint32_t kFixedLengths[] = {0, 1, 4, 8};
inline constexpr std::uint32_t kClasses[] = {kPlain, kChildAnnouncement, kTransactionMarker, kControl};

template <std::size_t N> constexpr int codeOf(std::uint32_t const (&values)[N], std::uint32_t value) {
  for (std::size_t i = 0; i < N; ++i)
    if (values[i] == value) return static_cast<int>(i);
  return kNoForm;
}

// RETURNS kNoForm for a header that has none.
constexpr int formOf(MsgHeader const& header) {
  int const length = codeOf(kFixedLengths, header.fixedLength);
  int const messageClass = codeOf(kClasses, header.messageClass);
  if (length < 0 || messageClass < 0 || header.reserved != 0 || (header.variableLength && length))
    return kNoForm;
  return (header.variableLength ? 1 : 0) | length << 1 | messageClass << 4;
}

// The lower halves that a form may have, a bit each: a code of fixedLength, or variableLength.
inline constexpr unsigned kLowerHalves = 1U << 0 | 1U << 2 | 1U << 4 | 1U << 6 | 1U << 1;

constexpr bool isForm(std::uint8_t form) { return form < 0x40 && (kLowerHalves >> (form & 15U) & 1U); }

// REQUIRES, all three: isForm(form).
constexpr bool variableLengthOf(std::uint8_t form) { return form & 1U; }
constexpr std::uint32_t fixedLengthOf(std::uint8_t form) { return kFixedLengths[form >> 1 & 3U]; }
constexpr std::uint32_t messageClassOf(std::uint8_t form) { return kClasses[form >> 4]; }

// By the form: the fixed length, or kUnknownForm.
inline constexpr std::uint8_t kUnknownForm = 0x80;
inline constexpr std::array<std::uint8_t, 256> kFormLengths = [] {
  std::array<std::uint8_t, 256> lengths{};
  for (unsigned form = 0; form < lengths.size(); ++form)
    lengths[form] = isForm(static_cast<std::uint8_t>(form))
                        ? static_cast<std::uint8_t>(fixedLengthOf(static_cast<std::uint8_t>(form)))
                        : kUnknownForm;
  return lengths;
}();

// Whether it is a form, and a payload of that size may stand behind it. Without jumps, since which kinds of
// messages come is nothing that a processor could foresee.
constexpr bool fitsForm(std::uint8_t form, std::uint32_t payload) {
  std::uint32_t const length = kFormLengths[form];
  std::uint32_t const whenFixed = (form & 1U) - 1U;
  return (((payload ^ length) & whenFixed) | (length & kUnknownForm)) == 0;
}

} // namespace Vyx::NboAttrLog
