// A small set of numbered flags.

#pragma once

#include "Vyx/Assert.h"

namespace Vyx {

template <int bits, class Word> class BitSet {
public:
  bool bit(int pos) const { return (word_ >> pos) & 1U; }
  void bitIs(int pos, bool value) {
    if (value) {
      require(pos >= 0 && pos < bits, "pos>=0 && pos<bits", "Vyx/BitSet", 37);
      word_ |= Word(1) << pos;
    } else {
      require(pos >= 0 && pos < bits, "pos>=0 && pos<bits", "Vyx/BitSet", 43);
      word_ &= ~(Word(1) << pos);
    }
  }
  Word word() const { return word_; }
  void wordIs(Word word) { word_ = word; }

  // Of a reactor's flags, those that the stream adapter of a parent hands on to its children's; see
  // StreamAdapter::Flag.
  static constexpr BitSet notificationBitMask() {
    BitSet mask;
    mask.word_ = 1U << 2 | 1U << 3 | 1U << 20 | 1U << 26 | 1U << 27;
    return mask;
  }
  // Takes those bits of `from` that are in the mask and keeps the others.
  void masked(BitSet from, BitSet mask) { word_ = (word_ & ~mask.word_) | (from.word_ & mask.word_); }

  bool operator==(BitSet const& o) const { return word_ == o.word_; }

private:
  Word word_ = 0;
};

} // namespace Vyx

// The flags of a reactor.
using Vyx_BitSet = Vyx::BitSet<29, unsigned>;
