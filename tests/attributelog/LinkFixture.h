// Two ends of a connection, over each kind of stream, and what their receivers have heard.

#pragma once

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Link.h"
#include "Vyx/NboAttrLog/Listener.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Pipe.h"
#include "Vyx/NboAttrLog/SocketTransport.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace attributelog {

using namespace Vyx::NboAttrLog;

using Bytes = std::vector<unsigned char>;

// No test waits longer.
constexpr Duration kLimit = std::chrono::seconds(20);

class TemporaryFolder {
public:
  TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "vyxXXXXXX").string()) {
    if (!::mkdtemp(path_.data())) throw std::runtime_error("no temporary folder");
  }
  TemporaryFolder(TemporaryFolder const&) = delete;
  TemporaryFolder& operator=(TemporaryFolder const&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  std::string operator/(std::string const& name) const { return path_ + "/" + name; }

private:
  std::string path_;
};

enum class Carrier { unixSocket, tcp, pipe };

inline std::string carrierName(testing::TestParamInfo<Carrier> const& carrier) {
  constexpr char const* kNames[] = {"UnixSocket", "Tcp", "Pipe"};
  return kNames[static_cast<int>(carrier.param)];
}

struct Ends {
  std::unique_ptr<Transport> near;
  std::unique_ptr<Transport> far;
};

// A connection that was taken by a listener, or a pipe.
inline Ends connectedEnds(Carrier carrier, TemporaryFolder const& folder) {
  if (carrier == Carrier::pipe) {
    PipePair pair = pipePair();
    return {std::move(pair.first), std::move(pair.second)};
  }
  Ends ends;
  Address const place =
      carrier == Carrier::tcp ? Address(TcpAddress{}) : Address(UnixAddress{folder / "log"});
  auto const listener = Vyx::ptrFromNew(
      new Listener(place, [&](std::unique_ptr<Transport> taken) { ends.near = std::move(taken); }));
  ends.far = connectWithin(listener->address(), kLimit);
  listener->readable();
  return ends;
}

// Notes everything; the payload of a message is taken for one text.
class Notes : public Receiver {
public:
  virtual ~Notes() = default;
  void onHello(Link&) override { heard.push_back("hello"); }
  void onMessage(Link& link, In& in) override {
    heard.push_back(std::to_string(in.header().attrId) + " " + in.nextString().charPtr());
    if (afterMessage) afterMessage(link);
  }
  void onRoom(Link& link) override {
    heard.push_back("room");
    if (atRoom) atRoom(link);
  }
  void onClosed(Link& link, Closing const& closing) override {
    last = closing;
    heard.push_back("closed");
    if (atClose) atClose(link);
  }

  bool isClosed() const { return last.has_value(); }
  std::string closingWords() const { return last ? last->words : "not closed"; }

  std::vector<std::string> heard;
  std::optional<Closing> last;
  std::function<void(Link&)> afterMessage;
  std::function<void(Link&)> atRoom;
  std::function<void(Link&)> atClose;
};

inline void say(Link& link, std::string const& text, Vyx::AttributeId attribute = 7) {
  MsgHeader header;
  header.entityId = Vyx::EntityId(3, 0);
  header.attrId = attribute;
  header.variableLength = 1;
  link.out()->nextHeaderIs(header);
  link.out() << Out::kTransactBegin << Vyx::String8(text) << Out::kTransactEnd;
}

inline Bytes helloBytes(Version version = kVersion, std::uint32_t features = 0) {
  auto const bytes = Hello{version, features}.bytes();
  return Bytes(bytes.begin(), bytes.end());
}

// What `say` puts on the wire.
inline Bytes messageBytes(std::string const& text, Vyx::AttributeId attribute = 7,
                          std::uint32_t messageClass = kPlain, Vyx::EntityId id = Vyx::EntityId(3, 0)) {
  auto const out = Vyx::ptrFromNew(new Out());
  MsgHeader header;
  header.entityId = id;
  header.attrId = attribute;
  header.variableLength = 1;
  header.messageClass = messageClass;
  out->nextHeaderIs(header);
  out << Out::kTransactBegin << Vyx::String8(text) << Out::kTransactEnd;
  return Bytes(out->pending().begin(), out->pending().end());
}

inline Bytes byeBytes(std::string const& text) {
  return messageBytes(text, kByeCode, kControl, Vyx::EntityId());
}

inline Bytes operator+(Bytes first, Bytes const& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// A peer of bare bytes at the other end of a link.
class RawPeer {
public:
  explicit RawPeer(std::unique_ptr<Transport> transport) : transport_(std::move(transport)) {}

  void send(Bytes const& bytes) { ASSERT_TRUE(transport_->write(bytes).is(IoResult::Kind::bytes)); }
  // Takes what is there.
  Bytes const& received() {
    unsigned char room[4096];
    while (transport_) {
      IoResult const result = transport_->read(room);
      if (!result.is(IoResult::Kind::bytes)) break;
      received_.insert(received_.end(), room, room + result.count);
    }
    return received_;
  }
  bool hasReceived(std::string const& text) {
    Bytes const& all = received();
    return std::search(all.begin(), all.end(), text.begin(), text.end()) != all.end();
  }
  void close() { transport_.reset(); }

private:
  std::unique_ptr<Transport> transport_;
  Bytes received_;
};

class LinkFixture : public testing::TestWithParam<Carrier> {
protected:
  // Both ends are links, driven by the loop.
  void join(LinkOptions const& nearOptions = {}, LinkOptions const& farOptions = {}) {
    joinEnds(connectedEnds(GetParam(), folder), nearOptions, farOptions);
  }
  void joinEnds(Ends ends, LinkOptions const& nearOptions = {}, LinkOptions const& farOptions = {}) {
    near = Vyx::ptrFromNew(new Link(std::move(ends.near), nearNotes, nearOptions));
    far = Vyx::ptrFromNew(new Link(std::move(ends.far), farNotes, farOptions));
    loop.sourceIs(near);
    loop.sourceIs(far);
  }
  // The near end is a link, the far one is bytes.
  void joinRaw(LinkOptions const& options = {}) {
    Ends ends = connectedEnds(GetParam(), folder);
    near = Vyx::ptrFromNew(new Link(std::move(ends.near), nearNotes, options));
    raw.emplace(std::move(ends.far));
    loop.sourceIs(near);
  }
  void meet() {
    until([&] { return !nearNotes.heard.empty() && !farNotes.heard.empty(); });
    nearNotes.heard.clear();
    farNotes.heard.clear();
  }

  void until(std::function<bool()> const& condition) { ASSERT_TRUE(loop.runUntil(condition, kLimit)); }
  void untilNearCloses() {
    until([&] { return nearNotes.isClosed(); });
  }

  TemporaryFolder folder;
  Loop loop;
  Notes nearNotes;
  Notes farNotes;
  Vyx::Ptr<Link> near;
  Vyx::Ptr<Link> far;
  std::optional<RawPeer> raw;
};

} // namespace attributelog
