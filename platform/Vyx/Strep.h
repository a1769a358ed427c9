// The text forms of the built-in values, and the frame of reading any value from a text: `sequenceToValue`
// reads from a stretch and moves the position, `strepToValue` reads a whole text and refuses what is left.

#pragma once

#include "Vyx/Exception.h"

namespace Vyx {

String8 valueToStrep(bool value);
String8 valueToStrep(unsigned char value);
String8 valueToStrep(unsigned short value);
String8 valueToStrep(unsigned value);
String8 valueToStrep(unsigned long value);
String8 valueToStrep(unsigned long long value);
String8 valueToStrep(double value); // Shortest text that reads back to the same number; "nan", "inf".
inline String8 valueToStrep(StringN<unsigned char> const& value) { return value; }
String8 valueToStrep(void const*) = delete; // A pointer, a literal text too, is not a bool.

using StrepIterator8 = String8::IteratorConst;

// THROWS: RangeException when the stretch doesn't begin with such a value or it doesn't fit. Numbers are
// plain decimal without sign and leading zeros; a bool is "true" or "false"; a double may have a minus and an
// exponent.
bool sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, bool*);
unsigned char sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned char*);
unsigned short sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned short*);
unsigned sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned*);
unsigned long sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned long*);
unsigned long long sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned long long*);
double sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, double*);

// Takes the whole stretch. One pair of single quotes around it is taken off, so that the quoted form of an
// enumerator reads back.
String8 sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, String8*);
Name sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, Name*);

// The bytes between two positions.
inline std::string_view stretch(StrepIterator8 const& at, StrepIterator8 const& end) {
  return at.text().view().substr(at.position(), end.position() - at.position());
}

// Takes `bytes` bytes off the front of a stretch.
inline void advance(StrepIterator8& at, std::size_t bytes) { at.positionIs(at.position() + bytes); }

// The longest front of the text whose bytes `belongs` accepts.
template <class Belongs> std::string_view frontWhile(std::string_view text, Belongs belongs) {
  std::size_t bytes = 0;
  while (bytes < text.size() && belongs(text[bytes])) ++bytes;
  return text.substr(0, bytes);
}

// The front of the text up to its first blank.
inline std::string_view frontWord(std::string_view text) { return text.substr(0, text.find(' ')); }

// A plain decimal number at the front of a text.
struct Decimal {
  unsigned long long value = 0;
  std::size_t digits = 0; // 0 when the text doesn't begin with a digit.
  std::string fault;      // Why the digits don't make a number, "300 is above 255"; empty when they do.
};
Decimal readDecimal(std::string_view text, unsigned long long max);

// What every reader says of a text that it refuses: `IpGenAddr: "10.0.0.300": octet 300 is above 255`. A long
// text is cut, a byte that doesn't print is spelled.
// THROWS: RangeException, always.
[[noreturn]] void throwBadText(char const* type, std::string_view text, std::string const& reason);

// REQUIRES: the reader stopped before the end of its text. THROWS: RangeException, always.
[[noreturn]] void throwJunk(std::size_t position, String8 const& text);

template <class T, class Iterator = StrepIterator8> T sequenceToValue(Iterator& at, Iterator const& end) {
  if constexpr (requires { sequenceToValue(at, end, static_cast<T*>(nullptr)); })
    return sequenceToValue(at, end, static_cast<T*>(nullptr));
  else
    return T(at, end);
}

// RETURNS the value that the whole text stands for.
// THROWS: what the value's reader raises; RangeException "junk at column …" for what is left over.
template <class T> T strepToValue(String8 const& text, T* = nullptr) {
  StrepIterator8 at(text, 0);
  StrepIterator8 const end(text, text.length());
  T value = Vyx::sequenceToValue<T>(at, end);
  if (at.position() != text.length()) throwJunk(at.position(), text);
  return value;
}

} // namespace Vyx
