// The two ends of a stream of values. What all streams share is virtual and stands here; the attribute log's
// own ends (NboAttrLog/Out.h, NboAttrLog/In.h) have inline writers and readers beside it.

#pragma once

#include "Vyx/Ptr.h"
#include "Vyx/String8.h"

#include <cstdint>

namespace Vyx {

class Connection {
public:
  class In;
  class Out;
};

class Connection::Out : public PtrInterface {
public:
  // What encloses the payload of a message. The numbers are known outside of the runtime.
  enum TransactToken : std::uint32_t { kTransactBegin = 1, kTransactEnd = 3 };

  // Writers ask before each message. What is written in spite of a "no" is taken all the same.
  virtual bool hasSufficientBuffer() const = 0;
  // How many bytes fit until `hasSufficientBuffer` turns false for good.
  virtual std::size_t room() const = 0;
  virtual bool connected() const = 0;
  virtual void connectedIs(bool connected) = 0;
  virtual void transactTokenIs(TransactToken token) = 0;
  // Appends to the payload of the open message.
  virtual void append(void const* bytes, std::size_t size) = 0;

protected:
  Out() = default;
};

class Connection::In : public PtrInterface {
public:
  // How many bytes of the message, or of the bounded part of it, are left.
  virtual std::size_t remaining() const = 0;
  // Bounds the reading to the next `size` bytes. RETURNS how many bytes more the former bound allowed.
  // THROWS: ProtocolException when there are not so many.
  virtual std::size_t bounded(std::size_t size) = 0;
  // Takes a bound away again: moves it by what `bounded` has returned.
  virtual void unbounded(std::size_t more) = 0;
  // THROWS: ProtocolException when there are not so many bytes.
  virtual void bytesTo(void* to, std::size_t size) = 0;

protected:
  In() = default;
};

inline Ptr<Connection::Out> const& operator<<(Ptr<Connection::Out> const& out,
                                              Connection::Out::TransactToken token) {
  out->transactTokenIs(token);
  return out;
}

// While it lives, no more than `size` bytes can be read.
class ConnectionInSizeAnchor {
public:
  ConnectionInSizeAnchor(Ptr<Connection::In> in, unsigned size)
      : in_(std::move(in)), more_(in_->bounded(size)) {}
  ConnectionInSizeAnchor(ConnectionInSizeAnchor const&) = delete;
  ConnectionInSizeAnchor& operator=(ConnectionInSizeAnchor const&) = delete;
  ~ConnectionInSizeAnchor() { in_->unbounded(more_); }

private:
  Ptr<Connection::In> in_;
  std::size_t more_;
};

// The path of an entity below the root that a connection serves.
class EntityUriPath {
public:
  EntityUriPath() = default;
  explicit EntityUriPath(String8 text) : text_(std::move(text)) {}

  String8 const& text() const { return text_; }

  friend bool operator==(EntityUriPath const& x, EntityUriPath const& y) { return x.text_ == y.text_; }

private:
  String8 text_;
};

// What is joined: the path at the other side, and the one here.
class ConnectDesc {
public:
  ConnectDesc() = default;
  ConnectDesc(EntityUriPath remote, EntityUriPath local)
      : remote_(std::move(remote)), local_(std::move(local)) {}

  EntityUriPath const& remote() const { return remote_; }
  EntityUriPath const& local() const { return local_; }

private:
  EntityUriPath remote_;
  EntityUriPath local_;
};

} // namespace Vyx
