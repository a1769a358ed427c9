#include "PolicyMap/MatchRule.h"

#include "Vyx/ValueType.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace PolicyMap {

namespace {

constexpr char const* kType = "MatchRule";

struct NamedNumber {
  char const* name;
  unsigned number;
};

constexpr unsigned kTcp = 6;
constexpr unsigned kUdp = 17;
constexpr unsigned kSctp = 132;

// The first of several names of one number is the one that is written.
constexpr NamedNumber kProtocols[] = {{"icmp", 1},  {"igmp", 2},  {"tcp", kTcp},  {"udp", kUdp},
                                      {"gre", 47},  {"esp", 50},  {"ah", 51},     {"icmpv6", 58},
                                      {"ospf", 89}, {"pim", 103}, {"sctp", kSctp}};
constexpr NamedNumber kDscps[] = {{"default", 0}, {"cs0", 0},   {"cs1", 8},   {"af11", 10}, {"af12", 12},
                                  {"af13", 14},   {"cs2", 16},  {"af21", 18}, {"af22", 20}, {"af23", 22},
                                  {"cs3", 24},    {"af31", 26}, {"af32", 28}, {"af33", 30}, {"cs4", 32},
                                  {"af41", 34},   {"af42", 36}, {"af43", 38}, {"cs5", 40},  {"ef", 46},
                                  {"cs6", 48},    {"cs7", 56}};

template <std::size_t N> std::string nameOf(NamedNumber const (&table)[N], unsigned number) {
  auto const* found =
      std::find_if(table, table + N, [=](NamedNumber const& n) { return n.number == number; });
  return found == table + N ? std::to_string(number) : found->name;
}

template <std::size_t N>
unsigned numberOf(NamedNumber const (&table)[N], std::string_view word, unsigned max, char const* option) {
  auto const* found = std::find_if(table, table + N, [=](NamedNumber const& n) { return n.name == word; });
  if (found != table + N) return found->number;
  Vyx::Decimal const number = Vyx::readDecimal(word, max);
  if (number.digits == 0 || number.digits != word.size())
    Vyx::throwBadText(option, word, "neither a number nor a name that is known");
  if (!number.fault.empty()) Vyx::throwBadText(option, word, number.fault);
  return static_cast<unsigned>(number.value);
}

template <class T> T valueOf(std::string_view word, char const* option) {
  try {
    return Vyx::strepToValue<T>(Vyx::String8(word));
  } catch (Vyx::RangeException const& error) {
    Vyx::rethrowFromDeserializeAttr(error, option);
  }
}

// What stands behind one keyword: how it is read into a rule, and its text, empty where any will do.
struct Option {
  char const* keyword;
  void (*read)(MatchRule&, std::string_view word, char const* keyword);
  std::string (*text)(MatchRule const&);
};

std::string portText(PortRange range) {
  return range.isAny() ? std::string() : std::string(valueToStrep(range).view());
}

// In the order of writing.
constexpr Option kOptions[] = {
    {"protocol",
     [](MatchRule& r, std::string_view w, char const* k) { r.protocolIs(numberOf(kProtocols, w, 255, k)); },
     [](MatchRule const& r) {
       return r.protocol() == MatchRule::kAnyProtocol ? std::string() : nameOf(kProtocols, r.protocol());
     }},
    {"source-port",
     [](MatchRule& r, std::string_view w, char const* k) { r.sourcePortIs(valueOf<PortRange>(w, k)); },
     [](MatchRule const& r) { return portText(r.sourcePort()); }},
    {"destination-port",
     [](MatchRule& r, std::string_view w, char const* k) { r.destinationPortIs(valueOf<PortRange>(w, k)); },
     [](MatchRule const& r) { return portText(r.destinationPort()); }},
    {"dscp", [](MatchRule& r, std::string_view w, char const* k) { r.dscpIs(numberOf(kDscps, w, 63, k)); },
     [](MatchRule const& r) {
       return r.dscp() == MatchRule::kAnyDscp ? std::string() : nameOf(kDscps, r.dscp());
     }}};

// The words of a stretch, one after the other.
class Words {
public:
  explicit Words(std::string_view text) : text_(text), rest_(text) {}

  // RETURNS the next word, empty at the end.
  std::string_view next() {
    rest_.remove_prefix(blanks());
    std::string_view const word = Vyx::frontWord(rest_);
    rest_.remove_prefix(word.size());
    return word;
  }
  std::string_view peek() const { return Vyx::frontWord(rest_.substr(blanks())); }
  // The next word, which must be there behind `keyword`.
  std::string_view argument(char const* keyword) {
    std::string_view const word = next();
    if (word.empty()) fail("what belongs behind " + std::string(keyword) + " is missing");
    return word;
  }
  std::string_view taken() const { return text_.substr(0, text_.size() - rest_.size()); }
  [[noreturn]] void fail(std::string const& reason) const { Vyx::throwBadText(kType, taken(), reason); }

private:
  std::size_t blanks() const { return std::min(rest_.find_first_not_of(' '), rest_.size()); }

  std::string_view text_;
  std::string_view rest_;
};

void readOptions(Words& words, MatchRule& rule) {
  bool seen[std::size(kOptions)] = {};
  for (;;) {
    auto const* option = std::find_if(std::begin(kOptions), std::end(kOptions),
                                      [word = words.peek()](Option const& o) { return o.keyword == word; });
    if (option == std::end(kOptions)) return;
    words.next();
    if (std::exchange(seen[option - kOptions], true))
      words.fail(option->keyword + std::string(" stands twice"));
    option->read(rule, words.argument(option->keyword), option->keyword);
  }
}

MatchRule readRule(Words& words) {
  MatchRule rule;
  words.next();
  if (words.taken() == "access-list") {
    rule.aclIs(words.argument("access-list"));
  } else if (words.taken() == "ip") {
    rule.sourceIs(valueOf<Lomu::IpGenPrefix>(words.argument("ip"), "source"));
    rule.destinationIs(valueOf<Lomu::IpGenPrefix>(words.argument("the source"), "destination"));
    readOptions(words, rule);
  } else {
    words.fail("neither 'ip' nor 'access-list'");
  }
  Vyx::String8 const fault = rule.fault();
  if (!fault.empty()) words.fail(fault.charPtr());
  return rule;
}

bool hasPorts(unsigned protocol) { return protocol == kTcp || protocol == kUdp || protocol == kSctp; }

std::string criteriaText(MatchRule const& rule) {
  std::string text = "ip ";
  text.append(valueToStrep(rule.source()).view()).append(" ").append(valueToStrep(rule.destination()).view());
  for (Option const& option : kOptions) {
    std::string const value = option.text(rule);
    if (!value.empty()) text.append(" ").append(option.keyword).append(" ").append(value);
  }
  return text;
}

bool hasCriteria(MatchRule rule) {
  rule.aclIs({});
  return rule != MatchRule();
}

} // namespace

void MatchRule::protocolIs(unsigned protocol) {
  if (protocol > kAnyProtocol) Vyx::throwRangeException("MatchRule::protocol > 256 not allowed");
  protocol_ = static_cast<std::uint16_t>(protocol);
}

void MatchRule::dscpIs(unsigned dscp) {
  if (dscp > kAnyDscp) Vyx::throwRangeException("MatchRule::dscp > 64 not allowed");
  dscp_ = static_cast<std::uint8_t>(dscp);
}

Vyx::String8 MatchRule::fault() const {
  if (!acl_.empty()) {
    auto const prints = [](char c) { return static_cast<unsigned char>(c) > 0x20 && c != 0x7f; };
    if (Vyx::frontWhile(acl_.view(), prints) != acl_.view()) return "the name of an ACL is one word";
    return hasCriteria(*this) ? "a rule is either the name of an ACL or criteria" : "";
  }
  if (!source_.isAny() && !destination_.isAny() && source_.family() != destination_.family())
    return "source and destination are of two families";
  if (!(sourcePort_.isAny() && destinationPort_.isAny()) && !hasPorts(protocol_))
    return "ports need protocol tcp, udp or sctp";
  return {};
}

Vyx::String8 valueToStrep(MatchRule const& rule) {
  if (rule.acl().empty()) return criteriaText(rule);
  Vyx::String8 const acl = Vyx::String8("access-list ") + rule.acl();
  return hasCriteria(rule) ? acl + " " + criteriaText(rule) : acl;
}

MatchRule sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, MatchRule*) {
  Words words(Vyx::stretch(at, end));
  MatchRule rule = readRule(words);
  Vyx::advance(at, words.taken().size());
  return rule;
}

std::ostream& operator<<(std::ostream& out, MatchRule const& rule) { return out << valueToStrep(rule); }

MatchRule::MatchRule(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon) {
  aclIs(in->nextString());
  sourceIs(Lomu::IpGenPrefix(in, bogon));
  destinationIs(Lomu::IpGenPrefix(in, bogon));
  sourcePortIs(PortRange(in, bogon));
  destinationPortIs(PortRange(in, bogon));
  protocolIs(in->nextU16());
  dscpIs(in->nextU8());
}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 MatchRule const& rule) {
  return out << rule.acl() << rule.source() << rule.destination() << rule.sourcePort()
             << rule.destinationPort() << static_cast<std::uint16_t>(rule.protocol())
             << static_cast<std::uint8_t>(rule.dscp());
}

Vyx::VyxType const* MatchRule::_fwkType() { return Vyx::valueTypeRecord<MatchRule>("PolicyMap::MatchRule"); }

} // namespace PolicyMap
