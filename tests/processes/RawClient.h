// The client's end of a connection to a server, as bare bytes.

#pragma once

#include "Vyx/NboAttrLog/Connector.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <poll.h>
#include <string>

namespace processes_test {

class RawClient {
public:
  using Transport = Vyx::NboAttrLog::Transport;
  static constexpr auto kPatience = std::chrono::seconds(20);

  // `wait` is called between two looks at what has come; a server in this process has its turn there.
  explicit RawClient(Vyx::NboAttrLog::Address const& address, std::function<void()> wait = {})
      : transport_(Vyx::NboAttrLog::connectWithin(address, kPatience)), wait_(std::move(wait)) {}

  // Sends as much as the server takes, while it doesn't end the connection.
  void send(std::string const& bytes) {
    for (std::size_t sent = 0; sent < bytes.size() && !isClosed_;) {
      std::span const all(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size());
      auto const result = transport_->write(all.subspan(sent), {});
      if (result.is(Kind::closed) || result.is(Kind::failed)) return;
      sent += result.count;
      if (result.count == 0) pause(POLLOUT);
    }
  }
  void endsSending() { transport_->writeEnds(); }

  // RETURNS all that has come before the server has ended the connection.
  std::string const& untilClosed() {
    EXPECT_TRUE(until([this] { return isClosed_; })) << "the server has not ended the connection";
    return received_;
  }
  std::string const& untilHolds(std::string const& text) {
    EXPECT_TRUE(until([&] { return received_.find(text) != std::string::npos; })) << text << " has not come";
    return received_;
  }

private:
  using Kind = Vyx::NboAttrLog::IoResult::Kind;

  template <class Condition> bool until(Condition condition) {
    auto const limit = Vyx::NboAttrLog::Clock::now() + kPatience;
    for (; !condition(); pause(POLLIN)) {
      if (isClosed_ || Vyx::NboAttrLog::Clock::now() > limit) return false;
      receive();
    }
    return true;
  }
  void receive() {
    unsigned char room[4096];
    for (;;) {
      auto const result = transport_->read(room);
      isClosed_ = result.is(Kind::closed) || result.is(Kind::failed);
      if (!result.is(Kind::bytes)) return;
      received_.append(room, room + result.count);
    }
  }
  void pause(short what) {
    if (wait_) return wait_();
    pollfd waiting{transport_->fd(), what, 0};
    ::poll(&waiting, 1, 100);
  }

  std::unique_ptr<Transport> transport_;
  std::function<void()> wait_;
  std::string received_;
  bool isClosed_ = false;
};

} // namespace processes_test
