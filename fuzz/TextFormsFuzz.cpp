// Gives one text to the reader of every value. A reader may refuse it by a range exception and in no other
// way; what it accepts must print, and read back to an equal value that prints the same.

#include "Acl/Acl.h"
#include "Kest/UniqueId.h"
#include "L3/VrfName.h"
#include "Lomu/IntfId.h"
#include "Lomu/IpGenPrefix.h"
#include "Pbr/Dscp.h"
#include "PolicyMap/MatchRule.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

using Vyx::String8;

template <class T> std::optional<T> readIf(String8 const& text) {
  try {
    return Vyx::strepToValue<T>(text);
  } catch (Vyx::RangeException const&) {
    return std::nullopt;
  }
}

[[noreturn]] void fail(char const* what, String8 const& printed) {
  std::fprintf(stderr, "%s: '%s'\n", what, printed.charPtr());
  std::abort();
}

template <class T> void tryValue(String8 const& text) {
  using Vyx::valueToStrep;
  std::optional<T> const value = readIf<T>(text);
  if (!value) return;
  String8 const printed = valueToStrep(*value);
  std::optional<T> const again = readIf<T>(printed);
  if (!again) fail("doesn't read back", printed);
  if (valueToStrep(*again) != printed) fail("prints otherwise the second time", printed);
  bool const unordered = *value != *value; // Not a number.
  if (!unordered && !(*again == *value)) fail("reads back to another value", printed);
}

// Texts print without quotes, so that one that is in quotes itself reads back without them.
template <class Text> void tryText(String8 const& text) {
  Text const value = Vyx::strepToValue<Text>(text);
  std::string_view const view = value.view();
  bool const quoted = view.size() >= 2 && view.front() == '\'' && view.back() == '\'';
  if (!quoted && Vyx::strepToValue<Text>(value) != value) fail("reads back to another text", value);
}

template <class... Values> void tryAll(String8 const& text) { (tryValue<Values>(text), ...); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  String8 const text(std::string_view(reinterpret_cast<char const*>(data), size));
  tryAll<bool, unsigned char, unsigned short, unsigned, unsigned long, unsigned long long, double>(text);
  tryAll<Kest::UniqueId, Acl::UniqueId, Acl::AclType, Acl::RuleCheckpointStatus, L3::VrfName>(text);
  tryAll<Lomu::Ip6Addr, Lomu::IpGenAddr, Lomu::IpGenPrefix, Lomu::IntfId>(text);
  tryAll<PolicyMap::PortRange, PolicyMap::MatchRule, Pbr::Dscp>(text);
  tryText<String8>(text);
  tryText<Vyx::Name>(text);
  return 0;
}
