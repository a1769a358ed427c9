#include "pbrctl/Fields.h"

#include "PolicyMap/MatchRule.h"
#include "pbrctl/Diagnostics.h"

#include <cstdint>

namespace Pbrctl {

namespace {

template <class T> T valueOf(std::string_view word) {
  try {
    return Vyx::strepToValue<T>(Vyx::String8(word));
  } catch (Vyx::Exception const& e) {
    throw FieldError{e.what()};
  }
}

bool isOneWord(std::string_view word) {
  return !word.empty() && word.find_first_of(" \t\r\n") == std::string_view::npos;
}

// The tables of protocol and code point names are the rule's; a criterion is read and written as part of one.
PolicyMap::MatchRule ruleWith(char const* option, std::string_view word) {
  if (!isOneWord(word)) throw FieldError{inQuotes(word) + " is no " + option};
  return valueOf<PolicyMap::MatchRule>("ip any any " + std::string(option) + " " + std::string(word));
}

std::string lastWord(PolicyMap::MatchRule const& rule) {
  std::string const text(valueToStrep(rule).view());
  return text.substr(text.rfind(' ') + 1);
}

} // namespace

Lomu::IpGenAddr readAddress(std::string_view word) {
  if (!isOneWord(word)) throw FieldError{inQuotes(word) + " is no address"};
  return valueOf<Lomu::IpGenAddr>(word);
}

Lomu::IpGenPrefix readPrefix(std::string_view word) {
  if (!isOneWord(word)) throw FieldError{inQuotes(word) + " is no prefix"};
  return valueOf<Lomu::IpGenPrefix>(word);
}

Lomu::IpGenPrefix readPrefixClearingHostBits(std::string_view word) {
  std::size_t const slash = word.find('/');
  if (slash == std::string_view::npos) return readPrefix(readAddress(word).stringValue().view());
  Lomu::IpGenAddr const address = readAddress(word.substr(0, slash));
  // The same length on the all-zero address has no host bits: what is wrong with it is the length.
  std::string const zero = address.family() == 4 ? "0.0.0.0" : "::";
  unsigned const length = readPrefix(zero + std::string(word.substr(slash))).length();
  unsigned char bytes[Lomu::Ip6Addr::kBytes] = {};
  for (unsigned bit = 0; bit < length; ++bit) bytes[bit / 8] |= address.bytes()[bit / 8] & (0x80u >> bit % 8);
  return Lomu::IpGenPrefix(Lomu::IpGenAddr(address.family(), Lomu::Ip6Addr(bytes)), length);
}

unsigned readProtocol(std::string_view word) { return ruleWith("protocol", word).protocol(); }

unsigned readDscp(std::string_view word) { return ruleWith("dscp", word).dscp(); }

PolicyMap::PortRange readPorts(std::string_view word) {
  if (!isOneWord(word)) throw FieldError{inQuotes(word) + " is no port"};
  return valueOf<PolicyMap::PortRange>(word);
}

std::string addressText(Lomu::IpGenAddr const& address) { return address.stringValue().charPtr(); }

std::string prefixText(Lomu::IpGenPrefix const& prefix) { return prefix.stringValue().charPtr(); }

std::string protocolText(unsigned protocol) {
  PolicyMap::MatchRule rule;
  rule.protocolIs(protocol);
  return lastWord(rule);
}

std::string dscpText(unsigned dscp) {
  PolicyMap::MatchRule rule;
  rule.dscpIs(dscp);
  return lastWord(rule);
}

std::string portsText(PolicyMap::PortRange const& ports) { return valueToStrep(ports).charPtr(); }

} // namespace Pbrctl
