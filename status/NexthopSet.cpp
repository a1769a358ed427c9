#include "Pbr/NexthopSet.h"

#include "Vyx/NboAttrLog/ValueCodec.h"

#include <ostream>

namespace Pbr {

namespace {

// Mixes bytes one at a time.
class Mix {
public:
  // The four bytes, the least significant first.
  void add(std::uint32_t word) {
    for (int shift = 0; shift < 32; shift += 8) {
      h_ = (h_ + (word >> shift & 0xffU)) * 1025U;
      h_ ^= h_ >> 6;
    }
  }
  std::uint32_t finished() {
    h_ *= 9U;
    h_ ^= h_ >> 11;
    return h_ * 32769U;
  }

private:
  std::uint32_t h_ = 0;
};

} // namespace

NexthopSet::NexthopSet() : vrfName_("default") {}
NexthopSet::NexthopSet(unsigned recursive, L3::VrfName const& vrfName)
    : recursive_(recursive), vrfName_(vrfName) {}

bool NexthopSet::nexthop(Lomu::IpGenAddr const& key) const {
  auto const* record = find(key);
  return record && record->value();
}

Vyx::Ptr<NexthopSet::VyxNexthop> NexthopSet::newNexthop(Lomu::IpGenAddr const& key, bool value) {
  auto record = Vyx::ptrFromNew(new VyxNexthop(key, value));
  memberIs(record);
  return record;
}

void NexthopSet::nexthopIs(Lomu::IpGenAddr const& key, bool value) {
  if (auto* record = find(key))
    record->valueIs(value);
  else
    newNexthop(key, value);
}

bool NexthopSet::nexthopDel(Lomu::IpGenAddr const& key) {
  auto const record = _memberDel(key);
  return record && record->value();
}

void NexthopSet::nexthopDelAll() {
  for (auto at = nexthopIterator(); at; ++at) memberDel(at.member());
}

unsigned NexthopSet::hash() const {
  Mix mix;
  for (Walk at(*this); at; ++at) mix.add(at->fwkKey().address().hash());
  mix.add(recursive_);
  mix.add(vrfName_.hash());
  return mix.finished();
}

bool operator==(NexthopSet const& a, NexthopSet const& b) {
  if (a.count() != b.count()) return false;
  NexthopSet::Walk other(b);
  for (NexthopSet::Walk one(a); one; ++one, ++other)
    if (one->value() != other->value() || !(one->fwkKey() == other->fwkKey())) return false;
  return a.recursive_ == b.recursive_ && a.vrfName_ == b.vrfName_;
}

bool operator<(NexthopSet const& a, NexthopSet const& b) {
  if (a.count() != b.count()) return a.count() < b.count();
  NexthopSet::Walk other(b);
  for (NexthopSet::Walk one(a); one; ++one, ++other)
    if (one->value() != other->value()) return other->value();
  if (a.recursive_ != b.recursive_) return a.recursive_ < b.recursive_;
  return a.vrfName_ < b.vrfName_;
}

Vyx::String8 valueToStrep(NexthopSet const& set) {
  if (!set.nexthops()) return "None";
  std::string text;
  for (auto at = set.nexthopIteratorConst(); at; ++at)
    text.append(text.empty() ? "" : " ").append(at.key().stringValue().view());
  return text + (set.recursive() ? " recursive" : "");
}

NexthopSet sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, NexthopSet*) {
  NexthopSet set;
  std::string word;
  while (at != end) {
    word += *at;
    ++at;
    if (at == end || *at == ' ') {
      set.nexthopIs(Lomu::IpGenAddr::handleInitialized(word), true);
      word.clear();
      if (at != end) ++at;
    }
    if (at != end && *at == 'r') {
      set.recursiveIs(1);
      break;
    }
  }
  return set;
}

std::ostream& operator<<(std::ostream& out, NexthopSet const& set) { return out << valueToStrep(set); }

NexthopSet::NexthopSet(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon) {
  for (Lomu::IpGenAddr key(in, bogon); key != Lomu::IpGenAddr(); key = Lomu::IpGenAddr(in, bogon))
    nexthopIs(key, in->nextbool());
  recursive_ = in->nextU32();
  vrfName_ = L3::VrfName(in, bogon);
}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 NexthopSet const& set) {
  for (auto at = set.nexthopIteratorConst(); at; ++at) out << at.key() << at.value();
  return out << Lomu::IpGenAddr() << set.recursive() << set.vrfName();
}

} // namespace Pbr
