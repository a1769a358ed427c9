#include "Lomu/IpGenPrefix.h"

#include "Lomu/AddressText.h"
#include "Vyx/ValueType.h"

#include <ostream>

namespace Lomu {

namespace {

constexpr char const* kType = "IpGenPrefix";

unsigned widthOf(std::uint32_t family) { return family == 4 ? 32 : family == 6 ? 128 : 0; }

// Whether a bit is set at or past position `length`, counted from the first.
bool anyBitBeyond(unsigned char const* bytes, unsigned length) {
  std::size_t i = length / 8;
  if (length % 8 && bytes[i++] & (0xff >> length % 8)) return true;
  while (i < Ip6Addr::kBytes)
    if (bytes[i++]) return true;
  return false;
}

// What is wrong with the pair; empty when nothing is.
std::string faultOf(IpGenAddr const& address, unsigned length) {
  unsigned const width = widthOf(address.family());
  if (length > width) return "length " + std::to_string(length) + " is above " + std::to_string(width);
  if (anyBitBeyond(address.bytes(), length)) return "bits are set beyond the first " + std::to_string(length);
  return {};
}

// Reads the text as a whole, "any" excepted.
IpGenPrefix read(std::string_view text) {
  std::size_t const slash = text.find('/');
  unsigned char bytes[Ip6Addr::kBytes] = {};
  unsigned const family = AddressReader(kType, text.substr(0, slash), text).readEither(bytes);
  IpGenAddr const address(family, Ip6Addr(bytes));
  if (slash == std::string_view::npos) return IpGenPrefix(address, widthOf(family));
  std::string_view const lengthText = text.substr(slash + 1);
  Vyx::Decimal const length = Vyx::readDecimal(lengthText, widthOf(family));
  if (length.digits == 0 || length.digits != lengthText.size())
    Vyx::throwBadText(kType, text, "the length behind '/' is no number");
  if (!length.fault.empty()) Vyx::throwBadText(kType, text, "length " + length.fault);
  std::string const fault = faultOf(address, static_cast<unsigned>(length.value));
  if (!fault.empty()) Vyx::throwBadText(kType, text, fault);
  return IpGenPrefix(address, static_cast<unsigned>(length.value));
}

} // namespace

IpGenPrefix::IpGenPrefix(Vyx::String8 const& text)
    : IpGenPrefix(text == "any" ? IpGenPrefix() : read(text.view())) {}

IpGenPrefix::IpGenPrefix(IpGenAddr const& address, unsigned length)
    : family_(static_cast<std::uint8_t>(address.family())), length_(static_cast<std::uint8_t>(length)) {
  std::string const fault = faultOf(address, length);
  if (!fault.empty())
    Vyx::throwBadText(kType, std::string(address.stringValue().view()) + '/' + std::to_string(length), fault);
  std::memcpy(bytes_, address.bytes(), sizeof bytes_);
}

// The braces keep the order: the address is read first.
IpGenPrefix::IpGenPrefix(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon)
    : IpGenPrefix{IpGenAddr(in, bogon), in->nextU8()} {}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 IpGenPrefix const& prefix) {
  return out << prefix.address() << static_cast<std::uint8_t>(prefix.length());
}

Vyx::String8 IpGenPrefix::stringValue() const {
  if (isAny()) return "any";
  return address().stringValue() + "/" + Vyx::valueToStrep(length());
}

Vyx::String8 valueToStrep(IpGenPrefix const& prefix) { return prefix.stringValue(); }

IpGenPrefix sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IpGenPrefix*) {
  std::string_view const text = Vyx::stretch(at, end);
  if (text.starts_with("any")) {
    Vyx::advance(at, 3);
    return {};
  }
  std::size_t taken = frontAddress(text).size();
  if (taken < text.size() && text[taken] == '/')
    taken += 1 + Vyx::frontWhile(text.substr(taken + 1), [](char c) { return c >= '0' && c <= '9'; }).size();
  IpGenPrefix const value = read(taken ? text.substr(0, taken) : Vyx::frontWord(text));
  Vyx::advance(at, taken);
  return value;
}

std::ostream& operator<<(std::ostream& out, IpGenPrefix const& prefix) { return out << prefix.stringValue(); }

Vyx::VyxType const* IpGenPrefix::_fwkType() { return Vyx::valueTypeRecord<IpGenPrefix>("Lomu::IpGenPrefix"); }

} // namespace Lomu
