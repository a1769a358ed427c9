// What identifiers that are texts of a bounded length have in common. A handle is one pointer. `Id` is the
// class that derives from it; its `kTooLong` is the message for a longer text. The default is the empty text.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/Strep.h"

#include <compare>

namespace Kest {

template <class Id> class TextId {
public:
  static constexpr std::size_t kMaxBytes = 100;

  TextId() = default;
  // THROWS: RangeException for more than `kMaxBytes` bytes.
  TextId(Vyx::String8 const& text) : text_(text) {
    if (text_.bytes() > kMaxBytes) Vyx::throwRangeException(Id::kTooLong);
  }
  TextId(char const* text) : TextId(Vyx::String8(text)) {}
  // THROWS: RangeException for more than `kMaxBytes` bytes.
  TextId(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : TextId(in->nextString()) {}

  Vyx::String8 stringValue() const { return text_; }
  std::uint32_t hash() const { return text_.hash(); }

  friend bool operator==(TextId const& x, TextId const& y) { return x.text_ == y.text_; }
  friend std::strong_ordering operator<=>(TextId const& x, TextId const& y) {
    return x.text_.view() <=> y.text_.view();
  }

private:
  Vyx::Name text_;
};

// Takes the whole stretch as it stands, quotes and blanks too.
template <class Id> Id readTextId(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end) {
  Id id{Vyx::String8(Vyx::stretch(at, end))};
  at.positionIs(end.position());
  return id;
}

} // namespace Kest
