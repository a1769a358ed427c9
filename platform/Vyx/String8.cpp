#include "Vyx/String8.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <new>
#include <ostream>
#include <stdexcept>

namespace Vyx {

namespace {

// FNV-1a, then a finishing mix, since the tables take their bucket from the low bits. Not to be changed: the
// order of walks follows it.
constexpr std::uint32_t kNoBytes = 2166136261U;
std::uint32_t hashWith(std::uint32_t h, std::string_view text) {
  for (unsigned char c : text) h = (h ^ c) * 16777619U;
  return h;
}
std::uint32_t finished(std::uint32_t h) {
  h ^= h >> 16;
  h *= 0x85ebca6bU;
  return h ^ (h >> 13);
}

} // namespace

template <class C>
typename StringN<C>::Data* StringN<C>::Data::make(std::string_view text, std::size_t room) {
  if (text.size() > 0xffffffffU - 64) throw std::length_error("Vyx::StringN: text too long");
  void* place = ::operator new(sizeof(Data) + std::max(text.size(), room) + 1);
  auto* data =
      ::new (place) Data(static_cast<std::uint32_t>(text.size()), finished(hashWith(kNoBytes, text)));
  char* chars = reinterpret_cast<char*>(data + 1);
  std::memcpy(chars, text.data(), text.size());
  chars[text.size()] = '\0';
  return data;
}

template <class C>
void StringN<C>::Data::rewriteBehind(std::size_t front, std::uint32_t frontHash, std::string_view back) {
  char* const chars = reinterpret_cast<char*>(this + 1);
  std::memcpy(chars + front, back.data(), back.size());
  length_ = static_cast<std::uint32_t>(front + back.size());
  chars[length_] = '\0';
  hash_ = finished(hashWith(frontHash, back));
}

template class StringN<unsigned char>;

TextBuffer::TextBuffer(std::string_view front)
    : text_(front), front_(front.size()), frontHash_(hashWith(kNoBytes, front)), room_(front.size()) {}

String8 const& TextBuffer::with(std::string_view back) {
  std::size_t const length = front_ + back.size();
  if (room_ < length || !text_.data_->isSole()) {
    room_ = std::max(room_, 2 * length);
    String8 fresh;
    fresh.data_ = String8::Data::make(text_.view().substr(0, front_), room_);
    text_ = std::move(fresh);
  }
  text_.data_->rewriteBehind(front_, frontHash_, back);
  return text_;
}

String8 TextPool::text(std::string_view text) {
  if (text.empty() || text.size() > kLongest) return text;
  Spare& spare = spares_[next_];
  next_ = (next_ + 1) % kSpares;
  String8::Data* const data = spare.text.data_;
  if (data && spare.room >= text.size() && data->isSole()) {
    data->rewriteBehind(0, kNoBytes, text);
  } else {
    spare.text = String8(text);
    spare.room = text.size();
  }
  return spare.text;
}

String8 operator+(String8 const& a, String8 const& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  std::string joined;
  joined.reserve(a.length() + b.length());
  joined.append(a.view()).append(b.view());
  return String8(joined);
}

std::ostream& operator<<(std::ostream& out, StringN<unsigned char> const& text) {
  return out.write(text.charPtr(), static_cast<std::streamsize>(text.length()));
}

String8 format(char const* form, ...) {
  va_list arguments;
  va_start(arguments, form);
  va_list again;
  va_copy(again, arguments);
  int length = std::vsnprintf(nullptr, 0, form, arguments);
  va_end(arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, form, again);
  va_end(again);
  return String8(text);
}

} // namespace Vyx
