// Shared, immutable texts. A handle is one pointer; a copy counts and copies nothing. The empty text has no
// storage. `String8` is any text, `Name` is a text that names something; they convert into each other freely.
//
// Invariants:
// (1) Bytes, length and hash of a stored text never change while anyone else than a TextBuffer or TextPool
//     holds it.
// (2) The storage ends in a NUL that `length()` doesn't count; a text may hold further NULs.

#pragma once

#include "Vyx/Count.h"

#include <array>
#include <compare>
#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

namespace Vyx {

template <class C> class StringN {
public:
  // The shared storage: share count, length, hash, then the bytes.
  class Data {
  public:
    // `room` is what a later rewrite may need, if that is more than the text.
    static Data* make(std::string_view text, std::size_t room = 0);
    void shareInc() { countRaise(shares_); }
    void shareDec() {
      if (countLower(shares_) == 0) ::operator delete(this);
    }
    std::uint32_t length() const { return length_; }
    std::uint32_t hash() const { return hash_; }
    char const* chars() const { return reinterpret_cast<char const*>(this + 1); }
    std::string_view view() const { return {chars(), length_}; }
    bool operator==(Data const& o) const {
      return length_ == o.length_ && hash_ == o.hash_ && std::memcmp(chars(), o.chars(), length_) == 0;
    }
    bool operator<(Data const& o) const { return view() < o.view(); }
    // Whether there is one handle only. Who has that one may write the text anew.
    bool isSole() const { return __atomic_load_n(&shares_, __ATOMIC_ACQUIRE) == 1; }
    // Puts another text behind the first bytes, whose hash so far is told. REQUIRES: the handle is the only
    // one, and the storage was made for a text at least as long.
    void rewriteBehind(std::size_t front, std::uint32_t frontHash, std::string_view back);

  private:
    Data(std::uint32_t length, std::uint32_t hash) : length_(length), hash_(hash) {}
    std::uint32_t shares_ = 1;
    std::uint32_t length_;
    std::uint32_t hash_;
  };

  class IteratorConst;

  StringN() = default;
  StringN(char const* text) : StringN(std::string_view(text ? text : "")) {}
  StringN(std::string_view text) : data_(text.empty() ? nullptr : Data::make(text)) {}
  StringN(std::string const& text) : StringN(std::string_view(text)) {}
  StringN(StringN const& o) : data_(o.data_) {
    if (data_) data_->shareInc();
  }
  StringN(StringN&& o) noexcept : data_(std::exchange(o.data_, nullptr)) {}
  // The new text is shared before the old one is let go, so that assigning a text to itself is safe.
  StringN& operator=(StringN const& o) {
    StringN(o).swap(*this);
    return *this;
  }
  StringN& operator=(StringN&& o) noexcept {
    StringN(std::move(o)).swap(*this);
    return *this;
  }
  ~StringN() {
    if (data_) data_->shareDec();
  }

  void swap(StringN& o) noexcept { std::swap(data_, o.data_); }

  bool empty() const { return !data_; }
  // The number of bytes.
  std::size_t length() const { return data_ ? data_->length() : 0; }
  std::size_t bytes() const { return length(); }
  // NUL-terminated; valid while any handle on this text lives.
  char const* charPtr() const { return data_ ? data_->chars() : ""; }
  std::string_view view() const { return data_ ? data_->view() : std::string_view(); }
  // The same for equal texts on every machine; 0 for the empty text.
  std::uint32_t hash() const { return data_ ? data_->hash() : 0; }

  IteratorConst begin() const;
  IteratorConst end() const;

  friend bool operator==(StringN const& a, StringN const& b) {
    return a.data_ == b.data_ || (a.data_ && b.data_ && *a.data_ == *b.data_);
  }
  friend bool operator!=(StringN const& a, StringN const& b) { return !(a == b); }
  friend bool operator<(StringN const& a, StringN const& b) { return a.view() < b.view(); }
  friend bool operator>(StringN const& a, StringN const& b) { return b < a; }
  friend bool operator<=(StringN const& a, StringN const& b) { return !(b < a); }
  friend bool operator>=(StringN const& a, StringN const& b) { return !(a < b); }

private:
  friend class TextBuffer;
  friend class TextPool;

  Data* data_ = nullptr;
};

// A position in a text that it keeps alive. A reader gets two, one at each end of its stretch.
template <class C> class StringN<C>::IteratorConst {
public:
  IteratorConst() = default;
  IteratorConst(StringN text, std::size_t position) : text_(std::move(text)), position_(position) {}

  StringN const& text() const { return text_; }
  std::size_t position() const { return position_; }
  // REQUIRES: the position is below the text's length.
  char operator*() const { return text_.charPtr()[position_]; }
  IteratorConst& operator++() {
    ++position_;
    return *this;
  }
  void positionIs(std::size_t position) { position_ = position; }
  bool operator==(IteratorConst const& o) const { return position_ == o.position_; }
  bool operator!=(IteratorConst const& o) const { return position_ != o.position_; }

private:
  StringN text_;
  std::size_t position_ = 0;
};

template <class C> typename StringN<C>::IteratorConst StringN<C>::begin() const { return {*this, 0}; }
template <class C> typename StringN<C>::IteratorConst StringN<C>::end() const { return {*this, length()}; }

extern template class StringN<unsigned char>;

class String8 : public StringN<unsigned char> {
public:
  using StringN::StringN;
  String8() = default;
  String8(StringN const& text) : StringN(text) {}
};

class Name : public StringN<unsigned char> {
public:
  using StringN::StringN;
  Name() = default;
  Name(StringN const& text) : StringN(text) {}
};

// Composes texts that begin alike, one after another in the same storage, which it gives up for a new one
// where it must.
class TextBuffer {
public:
  // REQUIRES: the front isn't empty.
  explicit TextBuffer(std::string_view front);

  // RETURNS the front with that piece behind it. Who copies the handle keeps the text as it is; without a
  // copy, text and bytes hold until the next call. REQUIRES: the piece doesn't lie in the last result.
  String8 const& with(std::string_view back);

private:
  String8 text_;
  std::size_t const front_; // The length of what all texts begin with, and its hash so far.
  std::uint32_t const frontHash_;
  std::size_t room_; // The length that the storage of text_ was made for.
};

// Makes texts of which most are looked at and let go, each in the storage of an earlier one that nobody holds
// any more. Who keeps one keeps it as it is.
class TextPool {
public:
  String8 text(std::string_view text);

private:
  static constexpr std::size_t kSpares = 4; // More than are looked at together.
  static constexpr std::size_t kLongest = 256;

  struct Spare {
    String8 text;
    std::size_t room = 0; // The length that its storage was made for.
  };
  std::array<Spare, kSpares> spares_;
  std::size_t next_ = 0;
};

String8 operator+(String8 const& a, String8 const& b);
std::ostream& operator<<(std::ostream& out, StringN<unsigned char> const& text);

// printf into a text.
[[gnu::format(printf, 1, 2)]] String8 format(char const* form, ...);

} // namespace Vyx
