// A differentiated-services code point. 64 is a legal content and stands for none; it is the default and the
// false value.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/Strep.h"

#include <compare>

namespace Pbr {

class Dscp {
public:
  static constexpr unsigned char min = 0;
  static constexpr unsigned char max = 63; // Bounds nothing; `invalid` does.
  static constexpr unsigned char invalid = 64;

  Dscp() = default;
  // THROWS: RangeException for a value above 64.
  Dscp(unsigned char value) { store(value); }
  // Reads a plain decimal number off the front of a stretch.
  // THROWS: RangeException, the number reader's own with the attribute's name in front, or that of the value.
  Dscp(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end);
  // Takes any byte: whoever makes something of it tests it.
  Dscp(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : value_(in->nextU8()) {}

  unsigned char value() const { return value_; }
  // Reflection's write: an equal value does nothing, whatever it is; another is stored and then tested, so
  // that a refused one stays. THROWS: RangeException for a value above 64.
  void valueIs(unsigned char value) {
    if (value != value_) store(value);
  }

  // Whoever takes a value that may have come by a refused write tests it again.
  // THROWS: RangeException for a value above 64.
  void check() const {
    if (value_ > invalid) throwOutOfRange();
  }

  bool operator!() const { return value_ == invalid; }
  friend bool operator==(Dscp const&, Dscp const&) = default;
  friend std::strong_ordering operator<=>(Dscp const&, Dscp const&) = default;

  // On the log: the number.
  static constexpr std::size_t kLogBytes = 1;
  void toLog(unsigned char* to) const { *to = value_; }

  static Vyx::VyxType const* _fwkType();
  Vyx::VyxType const* fwkType() const { return _fwkType(); }

private:
  void store(unsigned char value) {
    value_ = value;
    check();
  }
  [[noreturn]] static void throwOutOfRange();

  unsigned char value_ = invalid;
};

Vyx::String8 valueToStrep(Dscp const& dscp);
std::ostream& operator<<(std::ostream& out, Dscp const& dscp);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        Dscp dscp) {
  out->put(dscp);
  return out;
}

} // namespace Pbr
