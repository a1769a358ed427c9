// A range of addresses that share their first bits. The default is any address of either family.
//
// Invariants:
// (1) No bit beyond the first `length()` is set; the length is at most 32 for family 4, 128 for family 6.
// (2) Of family 0 there is only the default.

#pragma once

#include "Lomu/IpGenAddr.h"

namespace Lomu {

class IpGenPrefix {
public:
  IpGenPrefix() = default;
  // "10.0.0.0/8", "2001:db8::/32"; an address alone is the prefix of that one host; "any" is the default.
  // THROWS: RangeException.
  IpGenPrefix(Vyx::String8 const& text);
  IpGenPrefix(char const* text) : IpGenPrefix(Vyx::String8(text)) {}
  // THROWS: RangeException for a length beyond the family's, or bits set beyond the length.
  IpGenPrefix(IpGenAddr const& address, unsigned length);
  // Sees to it in the same way.
  IpGenPrefix(Vyx::NboAttrLog::In* in, Vyx::StreamBogon);

  bool isAny() const { return family_ == 0; }
  std::uint32_t family() const { return family_; }
  unsigned length() const { return length_; }
  IpGenAddr address() const { return IpGenAddr(family_, Ip6Addr(bytes_)); }

  // Always with the length: "10.0.0.1/32".
  Vyx::String8 stringValue() const;

  friend bool operator==(IpGenPrefix const& x, IpGenPrefix const& y) {
    return std::memcmp(&x, &y, sizeof(IpGenPrefix)) == 0;
  }
  // ORDER: by family, then by bytes, the shorter before the longer.
  friend std::strong_ordering operator<=>(IpGenPrefix const& x, IpGenPrefix const& y) {
    return std::memcmp(&x, &y, sizeof(IpGenPrefix)) <=> 0;
  }

  static Vyx::VyxType const* _fwkType();

private:
  // The comparisons look at the three as one run of bytes.
  std::uint8_t family_ = 0;
  unsigned char bytes_[Ip6Addr::kBytes] = {};
  std::uint8_t length_ = 0;
};
static_assert(sizeof(IpGenPrefix) == 18);

// The reader takes "any", or the longest front that has only bytes of prefixes.
Vyx::String8 valueToStrep(IpGenPrefix const& prefix);
IpGenPrefix sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IpGenPrefix*);
std::ostream& operator<<(std::ostream& out, IpGenPrefix const& prefix);

// The address, then the length in one byte.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 IpGenPrefix const& prefix);

} // namespace Lomu
