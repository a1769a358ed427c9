// What each side says first, before any frame.
//
//   hello := magic major:u16 minor:u16 features:u32
//   magic := "VyxLog" 0x0d 0x0a
//
// Sides of one major version understand each other; of features, those that both name are used.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Vyx::NboAttrLog {

struct Version {
  std::uint16_t major;
  std::uint16_t minor;

  std::string text() const { return std::to_string(major) + "." + std::to_string(minor); }
};

inline constexpr Version kVersion{1, 0};

struct Hello {
  static constexpr std::size_t kBytes = 16;
  using Bytes = std::array<unsigned char, kBytes>;

  Bytes bytes() const;
  // REQUIRES: kBytes of them, as `refusal` has none of its words for.
  static Hello fromBytes(std::span<unsigned char const> bytes);
  // RETURNS what is wrong with the first bytes of a hello, as far as they have come; empty if nothing is.
  static std::string refusal(std::span<unsigned char const> bytes);

  Version version = kVersion;
  std::uint32_t features = 0;
};

} // namespace Vyx::NboAttrLog
