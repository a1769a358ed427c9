#include "pbrctl/Ids.h"

#include <cstdint>

namespace Pbrctl {

namespace {

class Hash {
public:
  void byte(unsigned char b) { state_ = (state_ ^ b) * 0x100000001b3u; }
  void part(std::string_view text) {
    auto const length = static_cast<std::uint32_t>(text.size());
    for (unsigned shift = 0; shift < 32; shift += 8) byte(static_cast<unsigned char>(length >> shift));
    for (char c : text) byte(static_cast<unsigned char>(c));
  }
  // FNV alone leaves the last bytes in the low bits; the mix lets every byte reach every bit.
  std::uint64_t value() const {
    std::uint64_t x = state_;
    x = (x ^ (x >> 33)) * 0xff51afd7ed558ccdu;
    x = (x ^ (x >> 33)) * 0xc4ceb9fe1a85ec53u;
    return x ^ (x >> 33);
  }

private:
  std::uint64_t state_ = 0xcbf29ce484222325u;
};

} // namespace

Kest::UniqueId idOf(std::initializer_list<std::string_view> parts) {
  Hash hash;
  for (std::string_view part : parts) hash.part(part);
  std::uint64_t const value = hash.value();
  return Kest::UniqueId(static_cast<std::uint32_t>(value >> 32), static_cast<std::uint16_t>(value >> 16),
                        static_cast<std::uint16_t>(value));
}

} // namespace Pbrctl
