// The number by which one attribute log knows an entity.

#pragma once

#include <compare>
#include <cstdint>

namespace Vyx {

// Two words in memory, the low one first. Whoever announces an entity gives it an odd number.
class EntityId {
public:
  constexpr EntityId() = default;
  constexpr EntityId(std::uint32_t low, std::uint32_t high) : low_(low), high_(high) {}

  static constexpr EntityId fromValue(unsigned long long value) {
    return {static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)};
  }
  constexpr unsigned long long value() const { return static_cast<unsigned long long>(high_) << 32 | low_; }

  constexpr std::uint32_t low() const { return low_; }
  constexpr std::uint32_t high() const { return high_; }

  constexpr bool isAssigned() const { return low_ & 1; }
  constexpr bool isNull() const { return (low_ | high_) == 0; }

  // The lowest bit, which all assigned numbers share, is left out.
  constexpr std::uint32_t hash() const { return static_cast<std::uint32_t>(value() >> 1); }

  friend constexpr bool operator==(EntityId const&, EntityId const&) = default;
  friend constexpr std::strong_ordering operator<=>(EntityId const& x, EntityId const& y) {
    return x.value() <=> y.value();
  }

private:
  std::uint32_t low_ = 0;
  std::uint32_t high_ = 0;
};
static_assert(sizeof(EntityId) == 8 && EntityId(1, 0).value() == 1);

// An entity that is announced without a parent is addressed by this number.
inline constexpr EntityId kOrphanEntityId{1, 0};

} // namespace Vyx
