#include "Kest/IdWords.h"

#include <charconv>
#include <system_error>

namespace Kest {

namespace {

constexpr std::size_t kTextBytes = 18;

// The digits, which are hexadecimal all of them, or nothing.
template <class Number> bool readHex(std::string_view digits, Number& value) {
  char const* const end = digits.data() + digits.size();
  auto const read = std::from_chars(digits.data(), end, value, 16);
  return read.ec == std::errc() && read.ptr == end;
}

} // namespace

Vyx::String8 idText(IdFields const& fields) {
  return Vyx::format("%08x-%04x-%04x", static_cast<unsigned>(fields.a), static_cast<unsigned>(fields.b),
                     static_cast<unsigned>(fields.c));
}

IdFields readId(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, char const* type) {
  std::string_view const text = Vyx::stretch(at, end).substr(0, kTextBytes);
  IdFields fields{};
  bool const good = text.size() == kTextBytes && text[8] == '-' && text[13] == '-' &&
                    readHex(text.substr(0, 8), fields.a) && readHex(text.substr(9, 4), fields.b) &&
                    readHex(text.substr(14), fields.c);
  if (!good) Vyx::throwBadText(type, text, "not of the form 01234567-89ab-cdef");
  Vyx::advance(at, kTextBytes);
  return fields;
}

} // namespace Kest
