// One fault of one interface: which interface, and why no policy map can be applied to it. The default has an
// empty interface.

#pragma once

#include "Lomu/IntfId.h"
#include "PolicyMap/IntfError.h"

#include <compare>

namespace PolicyMap {

class IntfErrorKey {
public:
  IntfErrorKey() = default;
  IntfErrorKey(Lomu::IntfId const& intf, IntfError error);
  IntfErrorKey(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon);

  Lomu::IntfId const& intf() const { return intf_; }
  IntfError error() const { return error_; }

  friend bool operator==(IntfErrorKey const&, IntfErrorKey const&) = default;
  // ORDER: by interface, then by the number of the error.
  friend std::strong_ordering operator<=>(IntfErrorKey const&, IntfErrorKey const&) = default;

  static Vyx::VyxType const* _fwkType();

private:
  Lomu::IntfId intf_;
  IntfError error_ = noIntfError;
};

// "Ethernet1:intfNotRouted". The reader takes all, and divides at the last colon.
// THROWS: RangeException for a text without a colon, and what the two parts' readers raise.
Vyx::String8 valueToStrep(IntfErrorKey const& key);
IntfErrorKey sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IntfErrorKey*);
std::ostream& operator<<(std::ostream& out, IntfErrorKey const& key);

// On the log: the interface, then the error's number, which may be an unknown one.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 IntfErrorKey const& key);

} // namespace PolicyMap
