// Sixteen address bytes in network order, without a family.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/Strep.h"

#include <bit>
#include <compare>
#include <cstdint>
#include <cstring>

namespace Lomu {

class alignas(4) Ip6Addr {
public:
  static constexpr std::size_t kBytes = 16;

  Ip6Addr() = default;
  // REQUIRES: sixteen bytes.
  explicit Ip6Addr(unsigned char const* bytes) { std::memcpy(bytes_, bytes, kBytes); }
  Ip6Addr(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) { in->bytesTo(bytes_, kBytes); }

  unsigned char const* bytes() const { return bytes_; }

  // On the log: the bytes.
  static constexpr std::size_t kLogBytes = kBytes;
  void toLog(unsigned char* to) const { std::memcpy(to, bytes_, kBytes); }

  // The same on every machine. Not to be changed: the order of walks follows it. Addresses that differ in one
  // word only never share a hash, and the low bits are good ones, since the tables take their bucket from
  // them.
  std::uint32_t hash() const {
    std::uint32_t h =
        word(0) * 0x9e3779b1U + word(1) * 0x85ebca77U + word(2) * 0xc2b2ae3dU + word(3) * 0x27d4eb2fU;
    h ^= h >> 16;
    h *= 0x7feb352dU;
    return h ^ (h >> 15);
  }

  friend bool operator==(Ip6Addr const& x, Ip6Addr const& y) {
    return std::memcmp(x.bytes_, y.bytes_, kBytes) == 0;
  }
  friend std::strong_ordering operator<=>(Ip6Addr const& x, Ip6Addr const& y) {
    std::uint64_t const left = x.half(0);
    std::uint64_t const right = y.half(0);
    return left == right ? x.half(1) <=> y.half(1) : left <=> right;
  }

private:
  std::uint32_t word(std::size_t i) const {
    std::uint32_t w;
    std::memcpy(&w, bytes_ + 4 * i, sizeof w);
    // Network order.
    return std::endian::native == std::endian::little ? __builtin_bswap32(w) : w;
  }

  std::uint64_t half(std::size_t i) const {
    return static_cast<std::uint64_t>(word(2 * i)) << 32 | word(2 * i + 1);
  }

  unsigned char bytes_[kBytes] = {};
};
static_assert(sizeof(Ip6Addr) == Ip6Addr::kBytes);

// The recommended text form of RFC 5952. The reader takes every well-formed one.
Vyx::String8 valueToStrep(Ip6Addr const& address);
Ip6Addr sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, Ip6Addr*);
std::ostream& operator<<(std::ostream& out, Ip6Addr const& address);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        Ip6Addr const& address) {
  out->put(address);
  return out;
}

} // namespace Lomu
