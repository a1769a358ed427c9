// The words that stand for values, as both the text form and the JSON form write them.

#pragma once

#include "Lomu/IpGenAddr.h"
#include "Lomu/IpGenPrefix.h"
#include "PolicyMap/PortRange.h"

#include <string>
#include <string_view>

namespace Pbrctl {

// Why a word is no such value, in words that show it.
struct FieldError {
  std::string text;
};

// THROWS: FieldError, all of them.
Lomu::IpGenAddr readAddress(std::string_view word);
// "any" or a prefix; host bits are refused.
Lomu::IpGenPrefix readPrefix(std::string_view word);
// The same without "any"; host bits are cleared, as they take no part in the match.
Lomu::IpGenPrefix readPrefixClearingHostBits(std::string_view word);
// A number up to 255 or a name.
unsigned readProtocol(std::string_view word);
// A number up to 63 or a name.
unsigned readDscp(std::string_view word);
PolicyMap::PortRange readPorts(std::string_view word);

std::string addressText(Lomu::IpGenAddr const& address);
std::string prefixText(Lomu::IpGenPrefix const& prefix);
// The name where there is one, else the number.
std::string protocolText(unsigned protocol);
std::string dscpText(unsigned dscp);
std::string portsText(PolicyMap::PortRange const& ports);

} // namespace Pbrctl
