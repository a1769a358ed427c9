// A text that crosses the log in pieces: each piece is one message.
//
// A piece is a byte of flags and a run of the text: bit 0, it is the first; bit 1, more follow. A message
// without any payload is a whole empty text.

#pragma once

#include "Vyx/Connection.h"
#include "Vyx/String8.h"

#include <string>

namespace Vyx {

// Where the assembling of a text stands.
class TextIterator {
public:
  // How many bytes there are while more is to come; 0 when the text is whole.
  std::size_t position() const { return position_; }
  String8 text() const { return String8(text_); }

  void restart();
  void add(std::string_view run, bool moreFollows);

private:
  std::string text_;
  std::size_t position_ = 0;
};

// Writes a run of the text, as long as the log takes it in one message, and goes on behind it.
Ptr<Connection::Out> const& operator<<(Ptr<Connection::Out> const& out, String8::IteratorConst& at);
// Takes the rest of the message as a piece.
// THROWS: ProtocolException for a piece that continues nothing, for unknown flags.
Ptr<Connection::In> const& operator>>(Ptr<Connection::In> const& in, TextIterator& at);

// The longest run that one message takes.
inline constexpr std::size_t kLongestTextPiece = 32768;
// The room without which a text isn't begun outside of a flow out.
inline constexpr std::size_t kTextStartRoom = 49152;

} // namespace Vyx
