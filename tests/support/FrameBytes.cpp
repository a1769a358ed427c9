#include "support/FrameBytes.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>

namespace {

// Bit by bit.
std::uint32_t slowChecksum(Bytes const& bytes) {
  std::uint32_t state = ~0U;
  for (unsigned char byte : bytes) {
    state ^= byte;
    for (int bit = 0; bit < 8; ++bit) state = state >> 1 ^ (state & 1 ? 0x82f63b78U : 0);
  }
  return ~state;
}

void append(Bytes& bytes, std::uint32_t value, int count) {
  while (count-- > 0) bytes.push_back(static_cast<unsigned char>(value >> 8 * count));
}

} // namespace

std::string hexOf(std::span<unsigned char const> bytes) {
  std::string text;
  for (unsigned char byte : bytes) {
    char pair[4];
    std::snprintf(pair, sizeof pair, " %02x", byte);
    text += pair;
  }
  return text.empty() ? text : text.substr(1);
}

Bytes bytesOf(std::string_view hex) {
  std::string digits;
  std::copy_if(hex.begin(), hex.end(), std::back_inserter(digits),
               [](unsigned char c) { return std::isxdigit(c); });
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

Bytes frameOf(std::string_view hexOfHeaderAndPayload) {
  Bytes const content = bytesOf(hexOfHeaderAndPayload);
  Bytes frame;
  append(frame, static_cast<std::uint32_t>(content.size()), 3);
  frame.insert(frame.end(), content.begin(), content.end());
  append(frame, slowChecksum(frame), 4);
  return frame;
}
