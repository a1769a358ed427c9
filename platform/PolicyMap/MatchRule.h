// One rule of a class map: criteria that a packet must meet all of, or the name of an ACL that says it
// instead. The default meets every packet.
//
// The setters look at one criterion at a time and may be called in any order; whether the criteria go
// together is asked of the finished rule. A valid rule reads back from its text form.

#pragma once

#include "Lomu/IpGenPrefix.h"
#include "PolicyMap/PortRange.h"

namespace PolicyMap {

class MatchRule {
public:
  static constexpr unsigned kAnyProtocol = 256;
  static constexpr unsigned kAnyDscp = 64;

  MatchRule() = default;
  // As the setters do, it looks at one criterion at a time. THROWS: RangeException.
  MatchRule(Vyx::NboAttrLog::In* in, Vyx::StreamBogon);

  Lomu::IpGenPrefix const& source() const { return source_; }
  Lomu::IpGenPrefix const& destination() const { return destination_; }
  unsigned protocol() const { return protocol_; }
  PortRange sourcePort() const { return sourcePort_; }
  PortRange destinationPort() const { return destinationPort_; }
  unsigned dscp() const { return dscp_; }
  // Empty when the rule has criteria.
  Vyx::Name const& acl() const { return acl_; }

  void sourceIs(Lomu::IpGenPrefix const& source) { source_ = source; }
  void destinationIs(Lomu::IpGenPrefix const& destination) { destination_ = destination; }
  // THROWS: RangeException above kAnyProtocol.
  void protocolIs(unsigned protocol);
  void sourcePortIs(PortRange range) { sourcePort_ = range; }
  void destinationPortIs(PortRange range) { destinationPort_ = range; }
  // THROWS: RangeException above kAnyDscp.
  void dscpIs(unsigned dscp);
  void aclIs(Vyx::Name const& acl) { acl_ = acl; }

  bool valid() const { return fault().empty(); }
  // What doesn't go together in the rule; empty when all does.
  Vyx::String8 fault() const;

  friend bool operator==(MatchRule const&, MatchRule const&) = default;
  // ORDER: that of the members below.
  friend std::strong_ordering operator<=>(MatchRule const&, MatchRule const&) = default;

  static Vyx::VyxType const* _fwkType();

private:
  Vyx::Name acl_;
  Lomu::IpGenPrefix source_;
  Lomu::IpGenPrefix destination_;
  PortRange sourcePort_;
  PortRange destinationPort_;
  std::uint16_t protocol_ = kAnyProtocol;
  std::uint8_t dscp_ = kAnyDscp;
};
static_assert(sizeof(MatchRule) <= 64);

// rule     := "ip" SRC DST option* | "access-list" NAME
// option   := "protocol" P | "source-port" R | "destination-port" R | "dscp" D
// Words are divided by blanks. Options stand in any order, each once, and are written in the order above;
// protocols and code points are written as names where they have one. An invalid rule is written with all
// that it holds. The reader stops before a word that it doesn't know in the place of an option.
Vyx::String8 valueToStrep(MatchRule const& rule);
MatchRule sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, MatchRule*);
std::ostream& operator<<(std::ostream& out, MatchRule const& rule);

// All members in the order of their declaration: a text, prefixes, ports, two bytes of protocol, one of dscp.
Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 MatchRule const& rule);

} // namespace PolicyMap
