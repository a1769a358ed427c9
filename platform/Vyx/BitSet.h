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
  bool operator==(BitSet const& o) const { return word_ == o.word_; }

private:
  Word word_ = 0;
};

} // namespace Vyx

// The flags of a reactor.
using Vyx_BitSet = Vyx::BitSet<29, unsigned>;
