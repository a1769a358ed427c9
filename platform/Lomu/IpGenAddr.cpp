#include "Lomu/IpGenAddr.h"

#include "Lomu/AddressText.h"
#include "Vyx/ValueType.h"

#include <algorithm>
#include <ostream>

namespace Lomu {

namespace {

IpGenAddr read(std::string_view text) {
  unsigned char bytes[Ip6Addr::kBytes] = {};
  unsigned const family = AddressReader("IpGenAddr", text).readEither(bytes);
  return IpGenAddr(family, Ip6Addr(bytes));
}

// How many of the sixteen bytes a family uses.
std::size_t usedBytes(std::uint32_t family) {
  switch (family) {
  case 0:
    return 0;
  case 4:
    return 4;
  case 6:
    return Ip6Addr::kBytes;
  default:
    Vyx::throwRangeException("IpGenAddr::family other than 0, 4 and 6 not allowed");
  }
}

} // namespace

IpGenAddr::IpGenAddr(Vyx::String8 const& text) : IpGenAddr(read(text.view())) {}

void IpGenAddr::checkUnused() const {
  if (!std::all_of(bytes() + usedBytes(family_), bytes() + Ip6Addr::kBytes,
                   [](unsigned char b) { return b == 0; }))
    Vyx::throwRangeException("IpGenAddr::bytes beyond the family's not allowed");
}

IpGenAddr IpGenAddr::handleInitialized(Vyx::String8 const& text) {
  return read(text.view().substr(text.view().starts_with(' ') ? 1 : 0));
}

Vyx::String8 IpGenAddr::stringValue() const {
  switch (family_) {
  case 4:
    return ip4Text(bytes());
  case 6:
    return ip6Text(bytes());
  default:
    return {};
  }
}

Vyx::String8 valueToStrep(IpGenAddr const& address) { return address.stringValue(); }

IpGenAddr sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IpGenAddr*) {
  std::string_view const text = Vyx::stretch(at, end);
  if (text.empty()) return {};
  std::string_view const address = frontAddress(text);
  // A text that begins with none of an address's bytes is shown as it stands.
  IpGenAddr const value = read(address.empty() ? Vyx::frontWord(text) : address);
  Vyx::advance(at, address.size());
  return value;
}

std::ostream& operator<<(std::ostream& out, IpGenAddr const& address) { return out << address.stringValue(); }

Vyx::VyxType const* IpGenAddr::_fwkType() { return Vyx::valueTypeRecord<IpGenAddr>("Lomu::IpGenAddr"); }

} // namespace Lomu
