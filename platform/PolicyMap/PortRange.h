// A range of transport ports, both ends included. The default is every port.

#pragma once

#include "Vyx/Fwd.h"
#include "Vyx/Strep.h"

#include <compare>
#include <cstdint>

namespace PolicyMap {

class PortRange {
public:
  PortRange() = default;
  // THROWS: RangeException when `low` is above `high`.
  PortRange(std::uint16_t low, std::uint16_t high);
  // Sees to it in the same way.
  PortRange(Vyx::NboAttrLog::In* in, Vyx::StreamBogon);

  bool isAny() const { return *this == PortRange(); }
  std::uint16_t low() const { return low_; }
  std::uint16_t high() const { return high_; }

  friend bool operator==(PortRange const& x, PortRange const& y) { return x.ordinal() == y.ordinal(); }
  friend std::strong_ordering operator<=>(PortRange const& x, PortRange const& y) {
    return x.ordinal() <=> y.ordinal();
  }

private:
  std::uint32_t ordinal() const { return static_cast<std::uint32_t>(low_) << 16 | high_; }

  std::uint16_t low_ = 0;
  std::uint16_t high_ = 0xffff;
};

// "any", "80", "80-443".
Vyx::String8 valueToStrep(PortRange const& range);
PortRange sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, PortRange*);
std::ostream& operator<<(std::ostream& out, PortRange const& range);

// The low end, then the high one, two bytes each.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 PortRange const& range);

} // namespace PolicyMap
