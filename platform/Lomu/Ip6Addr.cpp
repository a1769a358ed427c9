#include "Lomu/Ip6Addr.h"

#include "Lomu/AddressText.h"

#include <ostream>

namespace Lomu {

Vyx::String8 valueToStrep(Ip6Addr const& address) { return ip6Text(address.bytes()); }

Ip6Addr sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, Ip6Addr*) {
  std::string_view const text = frontAddress(Vyx::stretch(at, end));
  unsigned char bytes[Ip6Addr::kBytes];
  AddressReader("Ip6Addr", text).readIp6(bytes);
  Vyx::advance(at, text.size());
  return Ip6Addr(bytes);
}

std::ostream& operator<<(std::ostream& out, Ip6Addr const& address) { return out << valueToStrep(address); }

} // namespace Lomu
