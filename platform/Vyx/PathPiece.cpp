#include "Vyx/PathPiece.h"

#include <charconv>

namespace Vyx {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

bool standsForItself(unsigned char c) { return c > ' ' && c != 0x7f && c != '/' && c != '%'; }

// RETURNS whether the text begins with an escaped byte.
bool readEscape(std::string_view text, unsigned char& byte) {
  if (text.size() < 3 || text.front() != '%') return false;
  char const* const end = text.data() + 3;
  return std::from_chars(text.data() + 1, end, byte, 16).ptr == end;
}

} // namespace

std::string escapedPiece(std::string_view piece) {
  std::string text;
  for (unsigned char c : piece)
    if (standsForItself(c))
      text += static_cast<char>(c);
    else
      text.append({'%', kHex[c >> 4], kHex[c & 15]});
  return text;
}

std::string unescapedPiece(std::string_view piece) {
  std::string text;
  while (!piece.empty()) {
    unsigned char byte = 0;
    bool const isEscape = readEscape(piece, byte);
    text += isEscape ? static_cast<char>(byte) : piece.front();
    piece.remove_prefix(isEscape ? 3 : 1);
  }
  return text;
}

} // namespace Vyx
