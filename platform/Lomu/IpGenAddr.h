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
  IpGenAddr(std::uint32_t family, Ip6Addr const& address) : family_(family), address_(address) { check(); }
  // Sees to it in the same way.
  IpGenAddr(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon) : family_(in->nextU32()), address_(in, bogon) {
    check();
  }

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

  // On the log: the family in four bytes, then the sixteen. They are stored in the words by which the
  // checksum loads them, which then needn't wait for the stores.
  static constexpr std::size_t kLogBytes = 4 + Ip6Addr::kBytes;
  void toLog(unsigned char* to) const {
    using namespace Vyx::NboAttrLog;
    std::uint64_t const family = family_;
    storeNetwork<std::uint64_t>(to, family << 32 | loadNetwork<std::uint32_t>(bytes()));
    storeNetwork(to + 8, loadNetwork<std::uint64_t>(bytes() + 4));
    storeNetwork(to + 16, loadNetwork<std::uint32_t>(bytes() + 12));
  }

  static Vyx::VyxType const* _fwkType();

private:
  void check() const {
    if (family_ != 6) checkUnused();
  }
  void checkUnused() const;

  std::uint32_t family_ = 0;
  Ip6Addr address_;
};
static_assert(sizeof(IpGenAddr) == 20 && alignof(IpGenAddr) == 4);

// The reader takes the longest front that has only bytes of addresses; an empty stretch is the default.
Vyx::String8 valueToStrep(IpGenAddr const& address);
IpGenAddr sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IpGenAddr*);
std::ostream& operator<<(std::ostream& out, IpGenAddr const& address);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        IpGenAddr const& address) {
  out->put(address);
  return out;
}

} // namespace Lomu
