#include "Vyx/NboAttrLog/TextPiece.h"

#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/NboAttrLog/TextPieceFlags.h"

#include <algorithm>

namespace Vyx {

using NboAttrLog::kFirstPiece;
using NboAttrLog::kMoreFollow;

namespace {

// What a piece costs beside its run.
constexpr std::size_t kAround = 64;
// Where there is no room, which a text that was begun at once doesn't wait for.
constexpr std::size_t kShortestRun = 4096;

} // namespace

void TextIterator::restart() {
  text_.clear();
  position_ = 0;
}

void TextIterator::add(std::string_view run, bool moreFollows) {
  text_.append(run);
  position_ = moreFollows ? text_.size() : 0;
}

Ptr<Connection::Out> const& operator<<(Ptr<Connection::Out> const& out, String8::IteratorConst& at) {
  std::string_view const text = at.text().view();
  if (text.empty()) return out;
  std::size_t const room = std::max(out->room(), kAround + kShortestRun) - kAround;
  std::size_t const run = std::min({text.size() - at.position(), room, kLongestTextPiece});
  unsigned char const flags = static_cast<unsigned char>(
      (at.position() == 0 ? kFirstPiece : 0) | (at.position() + run < text.size() ? kMoreFollow : 0));
  out->append(&flags, 1);
  out->append(text.data() + at.position(), run);
  at.positionIs(at.position() + run);
  return out;
}

Ptr<Connection::In> const& operator>>(Ptr<Connection::In> const& in, TextIterator& at) {
  unsigned char flags = 0;
  in->bytesTo(&flags, 1);
  if (flags > (kFirstPiece | kMoreFollow))
    throwProtocolException(format("flags 0x%02x of a piece of text are unknown", flags));
  if (flags & kFirstPiece)
    at.restart();
  else if (at.position() == 0)
    throwProtocolException("a piece of text continues none");
  std::string run(in->remaining(), '\0');
  in->bytesTo(run.data(), run.size());
  at.add(run, flags & kMoreFollow);
  return in;
}

} // namespace Vyx
