// The encodings of values that always take the same number of bytes. Each rule stands here or with its class.

#pragma once

#include "Vyx/EntityId.h"
#include "Vyx/NboAttrLog/ByteOrder.h"

#include <cstddef>
#include <type_traits>

namespace Vyx::NboAttrLog {

// A class that writes itself: `kLogBytes` bytes, from `to` on.
template <class T>
concept FixedSizeClass = requires(T const& value, unsigned char* to) {
  {value.toLog(to)};
  {T::kLogBytes};
};

template <class T>
concept FixedSize = std::is_integral_v<T> || std::is_enum_v<T> || std::is_same_v<T, double> ||
    std::is_same_v<T, EntityId> || FixedSizeClass<T>;

// Enumerations are written as int, whatever their underlying type is.
template <FixedSize T> constexpr std::size_t encodedBytes() {
  if constexpr (FixedSizeClass<T>)
    return T::kLogBytes;
  else
    return std::is_same_v<T, bool> ? 1 : std::is_enum_v<T> ? 4 : sizeof(T);
}

template <FixedSize T> inline constexpr std::size_t kEncodedBytes = encodedBytes<T>();

template <FixedSize T> void encode(unsigned char* to, T const& value) {
  if constexpr (FixedSizeClass<T>)
    value.toLog(to);
  else if constexpr (std::is_same_v<T, bool>)
    storeNetwork<std::uint8_t>(to, value ? 1 : 0);
  else if constexpr (std::is_enum_v<T>)
    storeNetwork(to, static_cast<std::uint32_t>(value));
  else if constexpr (std::is_same_v<T, double>)
    storeNetwork(to, std::bit_cast<std::uint64_t>(value));
  else if constexpr (std::is_same_v<T, EntityId>)
    storeNetwork<std::uint64_t>(to, value.value());
  else
    storeNetwork(to, static_cast<std::make_unsigned_t<T>>(value));
}

} // namespace Vyx::NboAttrLog
