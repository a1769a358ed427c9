#include "Vyx/Strep.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace Vyx {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

template <class Number> String8 numberText(Number value) {
  char text[32];
  auto const written = std::to_chars(text, text + sizeof text, value);
  return String8(std::string_view(text, static_cast<std::size_t>(written.ptr - text)));
}

template <class Number> constexpr char const* typeName() {
  switch (sizeof(Number)) {
  case 1:
    return "U8";
  case 2:
    return "U16";
  case 4:
    return "U32";
  default:
    return "U64";
  }
}

template <class Number> Number readNumber(StrepIterator8& at, StrepIterator8 const& end) {
  std::string_view const text = stretch(at, end);
  Decimal const number = readDecimal(text, std::numeric_limits<Number>::max());
  if (number.digits == 0) throwBadText(typeName<Number>(), frontWord(text), "no number");
  if (!number.fault.empty()) throwBadText(typeName<Number>(), text.substr(0, number.digits), number.fault);
  advance(at, number.digits);
  return static_cast<Number>(number.value);
}

template <class Text> Text readText(StrepIterator8& at, StrepIterator8 const& end) {
  std::string_view text = stretch(at, end);
  if (text.size() >= 2 && text.front() == '\'' && text.back() == '\'') text = text.substr(1, text.size() - 2);
  Text value(text);
  at.positionIs(end.position());
  return value;
}

// The texts of numbers that have no digits; the number reader of the library takes more spellings than these.
constexpr struct {
  std::string_view text;
  double value;
} kSpecialDoubles[] = {{"nan", std::numeric_limits<double>::quiet_NaN()},
                       {"inf", std::numeric_limits<double>::infinity()},
                       {"-inf", -std::numeric_limits<double>::infinity()}};

void appendShown(std::string& out, unsigned char c) {
  if (c == '"' || c == '\\') {
    out += '\\';
    out += static_cast<char>(c);
  } else if (c >= 0x20 && c < 0x7f) {
    out += static_cast<char>(c);
  } else {
    constexpr char kHex[] = "0123456789abcdef";
    out += "\\x";
    out += kHex[c >> 4];
    out += kHex[c & 15];
  }
}

} // namespace

String8 valueToStrep(bool value) { return value ? "true" : "false"; }
String8 valueToStrep(unsigned char value) { return numberText(static_cast<unsigned>(value)); }
String8 valueToStrep(unsigned short value) { return numberText(value); }
String8 valueToStrep(unsigned value) { return numberText(value); }
String8 valueToStrep(unsigned long value) { return numberText(value); }
String8 valueToStrep(unsigned long long value) { return numberText(value); }
String8 valueToStrep(double value) { return std::isnan(value) ? String8("nan") : numberText(value); }

bool sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, bool*) {
  std::string_view const text = stretch(at, end);
  bool const value = text.starts_with("true");
  if (!value && !text.starts_with("false")) throwBadText("bool", frontWord(text), "neither true nor false");
  advance(at, value ? 4 : 5);
  return value;
}

unsigned char sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned char*) {
  return readNumber<unsigned char>(at, end);
}

unsigned short sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned short*) {
  return readNumber<unsigned short>(at, end);
}

unsigned sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned*) {
  return readNumber<unsigned>(at, end);
}

unsigned long sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned long*) {
  return readNumber<unsigned long>(at, end);
}

unsigned long long sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, unsigned long long*) {
  return readNumber<unsigned long long>(at, end);
}

double sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, double*) {
  std::string_view const text = stretch(at, end);
  for (auto const& special : kSpecialDoubles) {
    if (!text.starts_with(special.text)) continue;
    advance(at, special.text.size());
    return special.value;
  }
  std::string_view const digits = text.substr(text.starts_with('-') ? 1 : 0);
  if (digits.empty() || !isDigit(digits.front())) throwBadText("double", frontWord(text), "no number");
  double value = 0;
  auto const read = std::from_chars(text.data(), text.data() + text.size(), value);
  auto const taken = static_cast<std::size_t>(read.ptr - text.data());
  if (read.ec == std::errc::result_out_of_range)
    throwBadText("double", text.substr(0, taken), "too large or too near to zero");
  advance(at, taken);
  return value;
}

String8 sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, String8*) {
  return readText<String8>(at, end);
}

Name sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, Name*) { return readText<Name>(at, end); }

Decimal readDecimal(std::string_view text, unsigned long long max) {
  Decimal number;
  std::string_view const digits = frontWhile(text, isDigit);
  number.digits = digits.size();
  if (digits.empty()) return number;
  auto const read = std::from_chars(digits.data(), digits.data() + digits.size(), number.value);
  if (digits.size() > 1 && digits.front() == '0')
    number.fault = std::string(digits.substr(0, 24)) + " has a leading zero";
  else if (read.ec != std::errc() || number.value > max)
    number.fault = std::string(digits.substr(0, 24)) + " is above " + std::to_string(max);
  return number;
}

void throwBadText(char const* type, std::string_view text, std::string const& reason) {
  constexpr std::size_t kShownBytes = 80;
  std::string message = std::string(type) + ": \"";
  for (char c : text.substr(0, kShownBytes)) appendShown(message, static_cast<unsigned char>(c));
  if (text.size() > kShownBytes) message += "...";
  message += "\": ";
  message += reason;
  throwRangeException(message.c_str());
}

void throwJunk(std::size_t position, String8 const& text) {
  Exception::IdBitArray ids;
  ids.set(Exception::kRange);
  throw RangeException(
      format("junk at column %lld deserializing %s", static_cast<long long>(position), text.charPtr()), ids,
      true);
}

} // namespace Vyx
