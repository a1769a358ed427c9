// Who hears what comes over a link.

#pragma once

#include <string>

namespace Vyx::NboAttrLog {

class In;
class Link;

// Why a link has ended.
struct Closing {
  enum class Cause : unsigned char {
    ended,     // this side wanted it
    peerEnded, // the stream was closed by the peer, or the peer died
    peerSaid,  // the peer said bye; the words are its own
    hello,     // garbage, or another version
    timeLimit, // no hello in time
    protocol,  // bytes that are no messages
    receiver,  // the receiver has thrown
    transport, // the stream failed
  };
  Cause cause;
  // Name the peer, the place in the stream where there is one, and what was wrong.
  std::string words;
};

// An exception that one of the first three throws ends the link, and nothing else.
class Receiver {
public:
  // The peer is there and speaks this version. Comes before any message.
  virtual void onHello(Link& link) = 0;
  // REQUIRES of the receiver: the payload is read to its end, or skipped; what is left over ends the link.
  virtual void onMessage(Link& link, In& in) = 0;
  // There is room again, after a writer has found too little of it. Comes from the loop, never within a
  // write.
  virtual void onRoom(Link& link) { static_cast<void>(link); }
  // Whether the loop is not to wait before it comes to the end of its turn.
  virtual bool wantsTurn() const { return false; }
  // The last call. Never comes within a write either.
  virtual void onClosed(Link& link, Closing const& closing) = 0;

protected:
  ~Receiver() = default;
};

} // namespace Vyx::NboAttrLog
