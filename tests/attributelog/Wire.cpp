#include "Wire.h"

#include <algorithm>

Bytes Wire::sent() {
  auto const pending = out->pending();
  Bytes bytes(pending.begin(), pending.end());
  out->consumed(bytes.size());
  return bytes;
}

void Wire::receive(std::span<unsigned char const> bytes) {
  while (!bytes.empty()) {
    auto const space = in->space();
    std::size_t const some = std::min(space.size(), bytes.size());
    if (some == 0) return;
    std::copy_n(bytes.begin(), some, space.begin());
    in->received(some);
    bytes = bytes.subspan(some);
  }
}

std::string Wire::readerOf(std::string_view hex) {
  receive(bytesOf(hex));
  return refusal<Vyx::ProtocolException>([this] { in->nextMessage(); });
}
