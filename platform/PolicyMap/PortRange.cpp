#include "PolicyMap/PortRange.h"

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"

#include <ostream>

namespace PolicyMap {

namespace {

constexpr char const* kType = "PortRange";

// Takes one port off the front of `rest`, which is the end of `text`.
std::uint16_t takePort(std::string_view text, std::string_view& rest) {
  Vyx::Decimal const port = Vyx::readDecimal(rest, 0xffff);
  if (port.digits == 0) Vyx::throwBadText(kType, text, "a port is missing");
  if (!port.fault.empty()) Vyx::throwBadText(kType, text, "port " + port.fault);
  rest.remove_prefix(port.digits);
  return static_cast<std::uint16_t>(port.value);
}

} // namespace

PortRange::PortRange(std::uint16_t low, std::uint16_t high) : low_(low), high_(high) {
  if (low > high)
    Vyx::throwBadText(kType, std::to_string(low) + '-' + std::to_string(high),
                      "the low end is above the high end");
}

// The braces keep the order: the low end is read first.
PortRange::PortRange(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : PortRange{in->nextU16(), in->nextU16()} {}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 PortRange const& range) {
  return out << range.low() << range.high();
}

Vyx::String8 valueToStrep(PortRange const& range) {
  if (range.isAny()) return "any";
  Vyx::String8 const low = Vyx::valueToStrep(range.low());
  return range.low() == range.high() ? low : low + "-" + Vyx::valueToStrep(range.high());
}

PortRange sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, PortRange*) {
  std::string_view const text = Vyx::stretch(at, end);
  std::string_view const word = Vyx::frontWord(text);
  std::string_view rest = text;
  PortRange range;
  if (rest.starts_with("any")) {
    rest.remove_prefix(3);
  } else {
    std::uint16_t const low = takePort(word, rest);
    std::uint16_t high = low;
    if (rest.starts_with('-')) {
      rest.remove_prefix(1);
      high = takePort(word, rest);
    }
    range = PortRange(low, high);
  }
  Vyx::advance(at, text.size() - rest.size());
  return range;
}

std::ostream& operator<<(std::ostream& out, PortRange const& range) { return out << valueToStrep(range); }

} // namespace PolicyMap
