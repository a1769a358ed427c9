// The whole identity of a set of next hops: addresses, each with a flag, whether they are resolved
// recursively, and the routing instance that they live in.
//
// Invariants:
// (1) Two sets share no record: a copy is deep.
// (2) A walk goes by ascending address.

#pragma once

#include "L3/VrfName.h"
#include "Lomu/IpGenAddr.h"
#include "frame/Iterators.h"
#include "frame/Record.h"

namespace Pbr {

// The record of one entry, known as NexthopSet::VyxNexthop.
class NexthopSetVyxNexthop final : public frame::TreeRecord<Lomu::IpGenAddr, bool> {
  using TreeRecord::TreeRecord;
};

class NexthopSet : public Vyx::RbTreeMap<NexthopSetVyxNexthop, Lomu::IpGenAddr> {
public:
  using VyxNexthop = NexthopSetVyxNexthop;
  using VyxNexthopMap = Vyx::RbTreeMap<VyxNexthop, Lomu::IpGenAddr>;
  using NexthopIteratorConst = frame::MemberIterator<VyxNexthopMap::IteratorConst, VyxNexthop const>;
  using NexthopIterator = frame::MemberIterator<VyxNexthopMap::Iterator, VyxNexthop>;

  NexthopSet();
  NexthopSet(unsigned recursive, L3::VrfName const& vrfName);
  // The hash is computed; what is given for it isn't looked at.
  NexthopSet(unsigned recursive, L3::VrfName const& vrfName, unsigned) : NexthopSet(recursive, vrfName) {}

  // Reads what the operator below writes.
  NexthopSet(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon);

  // RETURNS the entry's flag; false for an absent address.
  bool nexthop(Lomu::IpGenAddr const& key) const;
  std::uint32_t nexthops() const { return count(); }
  // A new record, also in the place of one that is there.
  Vyx::Ptr<VyxNexthop> newNexthop(Lomu::IpGenAddr const& key, bool value);
  // Keeps the record that is there.
  void nexthopIs(Lomu::IpGenAddr const& key, bool value);
  // RETURNS the flag of the removed entry; false for an absent address.
  bool nexthopDel(Lomu::IpGenAddr const& key);
  void nexthopDelAll();
  NexthopIteratorConst nexthopIteratorConst() const { return NexthopIteratorConst(*this); }
  NexthopIteratorConst nexthopIteratorConst(Lomu::IpGenAddr const& key) const { return {*this, key}; }
  NexthopIterator nexthopIterator() { return NexthopIterator(*this); }
  NexthopIterator nexthopIterator(Lomu::IpGenAddr const& key) { return {*this, key}; }

  // Zero for no, anything else for yes; numbers differ all the same.
  unsigned recursive() const { return recursive_; }
  void recursiveIs(unsigned value) { recursive_ = value; }
  L3::VrfName const& vrfName() const { return vrfName_; }
  void vrfNameIs(L3::VrfName const& value) { vrfName_ = value; }

  // Of the addresses' bytes, `recursive` and `vrfName`; neither of the flags nor of the families. The same on
  // every machine, and not to be changed.
  unsigned hash() const;

  // Whether this is a default set.
  bool operator!() const { return *this == NexthopSet(); }
  friend bool operator==(NexthopSet const& a, NexthopSet const& b);
  // ORDER: by size, then by the flags, then by `recursive`, then by `vrfName`. Addresses play no part: two
  // sets that differ in them alone are unequal, and each is `<=` and `>=` the other.
  friend bool operator<(NexthopSet const& a, NexthopSet const& b);
  friend bool operator<=(NexthopSet const& a, NexthopSet const& b) { return !(b < a); }
  friend bool operator>(NexthopSet const& a, NexthopSet const& b) { return !(a <= b); }
  friend bool operator>=(NexthopSet const& a, NexthopSet const& b) { return !(a < b); }

  static Vyx::VyxType const* _fwkType();
  Vyx::VyxType const* fwkType() const { return _fwkType(); }

private:
  unsigned recursive_ = 0;
  L3::VrfName vrfName_;
};

// The addresses, divided by blanks, then " recursive"; "None" without an address. Flags and `vrfName` aren't
// shown, so not every set reads back.
Vyx::String8 valueToStrep(NexthopSet const& set);
// Reads addresses divided by blanks, each with the flag set, into a set of the routing instance "default". A
// byte `r` in front of what is unread makes the set recursive and ends the reading there. "None" is no
// address. THROWS: what IpGenAddr raises.
NexthopSet sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, NexthopSet*);
std::ostream& operator<<(std::ostream& out, NexthopSet const& set);

// On the log: each address with its flag, a default address as the end, `recursive`, `vrfName`. A set that
// holds the default address can't be sent: its reader takes that for the end.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 NexthopSet const& set);

} // namespace Pbr
