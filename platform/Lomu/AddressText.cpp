#include "Lomu/AddressText.h"

#include <algorithm>
#include <charconv>

namespace Lomu {

namespace {

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// A text under construction that is never longer than the longest address.
class Line {
public:
  void put(std::string_view text) { length_ += text.copy(text_ + length_, sizeof text_ - length_); }
  void put(unsigned number, int base) {
    length_ = static_cast<std::size_t>(
        std::to_chars(text_ + length_, text_ + sizeof text_, number, base).ptr - text_);
  }
  Vyx::String8 text() const { return std::string_view(text_, length_); }

private:
  char text_[48];
  std::size_t length_ = 0;
};

void putOctets(Line& line, unsigned char const* bytes) {
  for (int i = 0; i < 4; ++i) {
    if (i) line.put(".");
    line.put(bytes[i], 10);
  }
}

struct Run {
  std::size_t begin = 0;
  std::size_t length = 0;
};

// The first longest run of zero groups among the first `count`; of length 0 when none has two groups.
Run longestZeros(unsigned const* groups, std::size_t count) {
  Run best;
  for (std::size_t begin = 0; begin < count; ++begin) {
    std::size_t end = begin;
    while (end < count && groups[end] == 0) ++end;
    if (end - begin > std::max<std::size_t>(best.length, 1)) best = {begin, end - begin};
    begin = end;
  }
  return best;
}

} // namespace

Vyx::String8 ip4Text(unsigned char const* bytes) {
  Line line;
  putOctets(line, bytes);
  return line.text();
}

Vyx::String8 ip6Text(unsigned char const* bytes) {
  unsigned groups[8];
  for (std::size_t i = 0; i < 8; ++i) groups[i] = static_cast<unsigned>(bytes[2 * i] << 8 | bytes[2 * i + 1]);
  bool const mapped =
      groups[5] == 0xffff && std::all_of(groups, groups + 5, [](unsigned g) { return g == 0; });
  std::size_t const count = mapped ? 6 : 8;
  Run const zeros = longestZeros(groups, count);
  Line line;
  for (std::size_t i = 0; i < count; ++i) {
    if (zeros.length && i == zeros.begin) {
      line.put("::");
      i += zeros.length - 1;
      continue;
    }
    if (i != 0 && i != zeros.begin + zeros.length) line.put(":");
    line.put(groups[i], 16);
  }
  if (mapped) {
    line.put(":");
    putOctets(line, bytes + 12);
  }
  return line.text();
}

std::string_view frontAddress(std::string_view text) {
  return Vyx::frontWhile(text, [](char c) { return isHexDigit(c) || c == ':' || c == '.'; });
}

void AddressReader::fail(std::string const& reason) const { Vyx::throwBadText(type_, shown_, reason); }

void AddressReader::readOctets(std::string_view text, unsigned char* bytes) const {
  for (int i = 0; i < 4; ++i) {
    if (i) {
      if (!text.starts_with('.')) fail("four octets with dots between are needed");
      text.remove_prefix(1);
    }
    Vyx::Decimal const octet = Vyx::readDecimal(text, 255);
    if (octet.digits == 0) fail("four octets with dots between are needed");
    if (!octet.fault.empty()) fail("octet " + octet.fault);
    bytes[i] = static_cast<unsigned char>(octet.value);
    text.remove_prefix(octet.digits);
  }
  if (!text.empty()) fail("more stands behind the fourth octet");
}

void AddressReader::addGroup(unsigned value) {
  if (count_ == kGroups) fail("more than eight groups");
  groups_[count_++] = value;
}

void AddressReader::readGroup(std::string_view& rest) {
  std::string_view const digits = Vyx::frontWhile(rest, isHexDigit);
  if (digits.size() < rest.size() && rest[digits.size()] == '.') {
    unsigned char tail[4];
    readOctets(rest, tail);
    addGroup(static_cast<unsigned>(tail[0] << 8 | tail[1]));
    addGroup(static_cast<unsigned>(tail[2] << 8 | tail[3]));
    rest = {};
    return;
  }
  if (digits.empty()) fail("a group of hexadecimal digits is missing");
  if (digits.size() > 4) fail("group " + std::string(digits.substr(0, 24)) + " has more than four digits");
  unsigned value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  addGroup(value);
  rest.remove_prefix(digits.size());
}

void AddressReader::readColons(std::string_view& rest) {
  if (rest.starts_with("::")) {
    if (gap_ != kGroups) fail("'::' stands twice");
    gap_ = count_;
    if (gap_ == kGroups) fail("more than eight groups");
    rest.remove_prefix(2);
    return;
  }
  if (!rest.starts_with(':')) fail("a byte that no address has");
  rest.remove_prefix(1);
  if (count_ == 0 || rest.empty()) fail("a lone ':' at an end");
}

unsigned AddressReader::readEither(unsigned char* bytes) {
  if (text_.find(':') == std::string_view::npos) {
    readOctets(text_, bytes);
    return 4;
  }
  readIp6(bytes);
  return 6;
}

void AddressReader::readIp6(unsigned char* bytes) {
  std::string_view rest = text_;
  if (rest.starts_with(':')) readColons(rest);
  while (!rest.empty()) {
    readGroup(rest);
    if (!rest.empty()) readColons(rest);
  }
  if (gap_ == kGroups && count_ < kGroups) fail("fewer than eight groups and no '::'");
  if (gap_ != kGroups && count_ == kGroups) fail("'::' with eight groups");
  std::size_t const zeros = kGroups - count_;
  if (zeros) {
    std::copy_backward(groups_ + gap_, groups_ + count_, groups_ + kGroups);
    std::fill(groups_ + gap_, groups_ + gap_ + zeros, 0U);
  }
  for (std::size_t i = 0; i < kGroups; ++i) {
    bytes[2 * i] = static_cast<unsigned char>(groups_[i] >> 8);
    bytes[2 * i + 1] = static_cast<unsigned char>(groups_[i]);
  }
}

} // namespace Lomu
