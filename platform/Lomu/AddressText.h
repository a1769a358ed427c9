// The text forms of addresses, over plain bytes in network order. Reading is strict: four octets without
// leading zeros; at most four digits a group, one "::" that stands for at least one group, an IPv4 tail only
// in the place of the last two groups.

#pragma once

#include "Vyx/Strep.h"

namespace Lomu {

// Dotted quad of four bytes.
Vyx::String8 ip4Text(unsigned char const* bytes);
// RFC 5952 of sixteen bytes: lower case, the first longest run of two or more zero groups as "::",
// IPv4-mapped addresses with a dotted tail.
Vyx::String8 ip6Text(unsigned char const* bytes);

// The front of the text that has only bytes which addresses have.
std::string_view frontAddress(std::string_view text);

// Reads one text as a whole. THROWS: RangeException that calls the value `type` and shows the text, or
// `shown`, of which the text is a part.
class AddressReader {
public:
  AddressReader(char const* type, std::string_view text) : AddressReader(type, text, text) {}
  AddressReader(char const* type, std::string_view text, std::string_view shown)
      : type_(type), text_(text), shown_(shown) {}

  void readIp6(unsigned char* bytes);
  // RETURNS the family, which a colon decides: 6, or 4 with the first four bytes written.
  unsigned readEither(unsigned char* bytes);

private:
  static constexpr std::size_t kGroups = 8;

  [[noreturn]] void fail(std::string const& reason) const;
  void readOctets(std::string_view text, unsigned char* bytes) const;
  // Each takes what it reads off the front of `rest`.
  void readGroup(std::string_view& rest);
  void readColons(std::string_view& rest);
  void addGroup(unsigned value);

  char const* type_;
  std::string_view text_;
  std::string_view shown_;
  unsigned groups_[kGroups] = {};
  std::size_t count_ = 0;
  std::size_t gap_ = kGroups; // How many groups stand before the "::"; kGroups when there is none.
};

} // namespace Lomu
