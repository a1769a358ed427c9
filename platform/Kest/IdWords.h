// What identifiers of eight bytes have in common. `Id` is the class that derives from it.
//
// Invariants:
// (1) The fields stand in memory in the order a, b, c, without padding; aligned to four bytes.
// (2) The default has all bits set.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/Strep.h"

#include <compare>
#include <cstdint>
#include <cstring>

namespace Kest {

template <class Id> class IdWords {
public:
  IdWords() { doInit(); }
  IdWords(std::uint32_t a, std::uint16_t b, std::uint16_t c) : a_(a), b_(b), c_(c) {}

  IdWords(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : IdWords(in->nextU64()) {}

  // Makes it the default again.
  void doInit() {
    a_ = 0xffffffffU;
    b_ = c_ = 0xffffU;
  }

  std::uint32_t a() const { return a_; }
  std::uint16_t b() const { return b_; }
  std::uint16_t c() const { return c_; }

  // Not to be changed: the order of walks follows it.
  std::uint32_t hash() const { return a_ ^ c_ ^ (static_cast<std::uint32_t>(b_) << 16); }

  friend bool operator==(IdWords const& x, IdWords const& y) {
    return std::memcmp(&x, &y, sizeof(IdWords)) == 0;
  }
  friend std::strong_ordering operator<=>(IdWords const& x, IdWords const& y) {
    return x.ordinal() <=> y.ordinal();
  }

  // On the log: the fields in their order.
  static constexpr std::size_t kLogBytes = 8;
  void toLog(unsigned char* to) const { Vyx::NboAttrLog::storeNetwork(to, ordinal()); }

private:
  explicit IdWords(std::uint64_t ordinal)
      : a_(static_cast<std::uint32_t>(ordinal >> 32)), b_(static_cast<std::uint16_t>(ordinal >> 16)),
        c_(static_cast<std::uint16_t>(ordinal)) {}
  std::uint64_t ordinal() const {
    return static_cast<std::uint64_t>(a_) << 32 | static_cast<std::uint32_t>(b_) << 16 | c_;
  }

  std::uint32_t a_;
  std::uint16_t b_;
  std::uint16_t c_;
};

// The text form is "%08x-%04x-%04x"; the reader takes exactly so many hexadecimal digits, of either case.
struct IdFields {
  std::uint32_t a;
  std::uint16_t b;
  std::uint16_t c;
};
Vyx::String8 idText(IdFields const& fields);
// THROWS: RangeException, which calls the value `type`.
IdFields readId(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, char const* type);

template <class Id> Vyx::String8 idText(IdWords<Id> const& id) { return idText({id.a(), id.b(), id.c()}); }
template <class Id> Id readId(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, char const* type) {
  IdFields const fields = readId(at, end, type);
  return Id(fields.a, fields.b, fields.c);
}

} // namespace Kest
