// A handle of the hardware's. The value with all bits set stands for none; it is the default and the false
// value. Nothing here knows what the others designate.

#pragma once

#include "Vyx/Fwd.h"
#include "Vyx/Strep.h"

#include <compare>

namespace Pbr {

class NexthopIndex {
public:
  static constexpr unsigned long long nexthopIndexNone = ~0ULL;

  NexthopIndex() = default;
  NexthopIndex(unsigned long long value) : value_(value) {}
  // Reads a plain decimal number off the front of a stretch.
  // THROWS: RangeException, the number reader's own with the attribute's name in front.
  NexthopIndex(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end);

  NexthopIndex(Vyx::NboAttrLog::In* in, Vyx::StreamBogon);

  unsigned long long value() const { return value_; }

  bool operator!() const { return value_ == nexthopIndexNone; }
  friend bool operator==(NexthopIndex const&, NexthopIndex const&) = default;
  friend std::strong_ordering operator<=>(NexthopIndex const&, NexthopIndex const&) = default;

  static Vyx::VyxType const* _fwkType();
  Vyx::VyxType const* fwkType() const { return _fwkType(); }

private:
  unsigned long long value_ = nexthopIndexNone;
};

Vyx::String8 valueToStrep(NexthopIndex const& index);
std::ostream& operator<<(std::ostream& out, NexthopIndex const& index);

// On the log: the 64 bits.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 NexthopIndex const& index);

} // namespace Pbr
