// An address of either IP version. An IPv4 address stands in the first four bytes.
//
// Invariants:
// (1) The family is 4, 6, or 0 for no address; bytes that the family doesn't use are zero.
// (2) In memory: the family word, then the sixteen bytes, without padding; aligned to four bytes.

#pragma once

#include "Lomu/Ip6Addr.h"
#include "Vyx/Fwd.h"

namespace Lomu {

class IpGenAddr {
public:
  IpGenAddr() = default;
  // THROWS: RangeException for what is not an address of either family; the empty text is none.
  IpGenAddr(Vyx::String8 const& text);
  IpGenAddr(char const* text) : IpGenAddr(Vyx::String8(text)) {}
  // THROWS: RangeException for another family than 0, 4 and 6, or bytes set that the family doesn't use.
  IpGenAddr(std::uint32_t family, Ip6Addr const& address);

  // Reads one word of a list: as the constructor does, but over one blank that may stand in front.
  static IpGenAddr handleInitialized(Vyx::String8 const& text);

  std::uint32_t family() const { return family_; }
  Ip6Addr const& address() const { return address_; }
  unsigned char const* bytes() const { return address_.bytes(); }

  // The canonical text form; empty for family 0.
  Vyx::String8 stringValue() const;

  // Of the bytes alone: equal bytes of different families share it.
  std::uint32_t hash() const { return address_.hash(); }

  friend bool operator==(IpGenAddr const& x, IpGenAddr const& y) {
    return std::memcmp(&x, &y, sizeof(IpGenAddr)) == 0;
  }
  // ORDER: by family, then by bytes.
  friend std::strong_ordering operator<=>(IpGenAddr const& x, IpGenAddr const& y) {
    return x.family_ == y.family_ ? x.address_ <=> y.address_ : x.family_ <=> y.family_;
  }

  static Vyx::VyxType const* _fwkType();

private:
  std::uint32_t family_ = 0;
  Ip6Addr address_;
};
static_assert(sizeof(IpGenAddr) == 20 && alignof(IpGenAddr) == 4);

// The reader takes the longest front that has only bytes of addresses; an empty stretch is the default.
Vyx::String8 valueToStrep(IpGenAddr const& address);
IpGenAddr sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IpGenAddr*);
std::ostream& operator<<(std::ostream& out, IpGenAddr const& address);

} // namespace Lomu
