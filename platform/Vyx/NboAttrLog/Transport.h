// A stream of bytes to one peer, whatever carries it: a Unix-domain or TCP socket (SocketTransport.h), or
// memory (Pipe.h). A link drives it; nothing here waits but `await`.

#pragma once

#include "Vyx/NboAttrLog/PeerCredentials.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace Vyx::NboAttrLog {

// What one read or write came to.
struct IoResult {
  enum class Kind : unsigned char {
    bytes,      // `count` bytes went over; at least one
    wouldBlock, // nothing to read, or no room to write, for now
    closed,     // the peer has ended its side
    failed,     // the stream is of no further use; `error` says why
  };

  static IoResult moved(std::size_t count) { return {Kind::bytes, 0, count}; }
  static IoResult none(Kind kind) { return {kind, 0, 0}; }
  // From errno, after a call on a socket.
  static IoResult fromErrno(int error);

  bool is(Kind k) const { return kind == k; }
  std::string words() const;

  Kind kind;
  int error; // An errno value; 0 unless failed, or closed by a reset.
  std::size_t count;
};

// Is told that the peer may have changed what a transport without descriptor answers.
class Waker {
public:
  virtual void wake() = 0;

protected:
  ~Waker() = default;
};

class Transport {
public:
  Transport() = default;
  Transport(Transport const&) = delete;
  Transport& operator=(Transport const&) = delete;
  virtual ~Transport() = default;

  // REQUIRES: `room` is not empty.
  virtual IoResult read(std::span<unsigned char> room) = 0;
  // The same, but waits until a byte or the end has come, or a signal. REQUIRES: `canAwait`.
  virtual IoResult await(std::span<unsigned char> room) { return read(room); }
  virtual bool canAwait() const { return false; }
  // Writes from `first`, then from `second`, in one system call. May write less than is given.
  // REQUIRES: one of them is not empty.
  virtual IoResult write(std::span<unsigned char const> first,
                         std::span<unsigned char const> second = {}) = 0;
  // Tells the peer that nothing more comes. What the peer still sends can be read.
  virtual void writeEnds() = 0;

  // For pollers, level-triggered; -1 when there is none. Then `isReadable` and `isWritable` say what a poller
  // would, and the waker is called whenever the peer may have changed their answers. It may end the
  // transport.
  virtual int fd() const = 0;
  virtual bool isReadable() const { return false; }
  virtual bool isWritable() const { return false; }
  virtual void wakerIs(Waker*) {}

  // For messages about the peer: "pid 4711, uid 1000" or "127.0.0.1:4711".
  virtual std::string peerName() const = 0;
  // Who the peer is; nothing is known of a peer that comes over TCP.
  virtual std::optional<PeerCredentials> peer() const { return {}; }
  // Whether the peer is on this host.
  virtual bool isLocal() const = 0;
};

} // namespace Vyx::NboAttrLog
