// A transport that counts, keeps what it has carried, and carries no more than it is allowed to.

#pragma once

#include "Vyx/NboAttrLog/Transport.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

namespace processes_test {

// Outlives its transport.
struct Meter {
  static constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

  bool isSpent() const { return read.size() >= toRead || written.size() >= toWrite; }

  std::size_t toRead = kNoLimit;
  std::size_t toWrite = kNoLimit;
  std::size_t atOnce = kNoLimit; // In one call.
  std::string read;
  std::string written;
};

class MeteredTransport final : public Vyx::NboAttrLog::Transport {
public:
  using IoResult = Vyx::NboAttrLog::IoResult;
  using Bytes = std::span<unsigned char const>;

  MeteredTransport(std::unique_ptr<Transport> inner, std::shared_ptr<Meter> meter)
      : inner_(std::move(inner)), meter_(std::move(meter)) {}

  IoResult read(std::span<unsigned char> room) override {
    std::size_t const left = std::min(meter_->atOnce, meter_->toRead - meter_->read.size());
    if (left == 0) return IoResult::none(IoResult::Kind::wouldBlock);
    IoResult const result = inner_->read(room.first(std::min(room.size(), left)));
    append(meter_->read, Bytes(room).first(result.count));
    return result;
  }
  IoResult write(Bytes first, Bytes second) override {
    std::size_t const left = std::min(meter_->atOnce, meter_->toWrite - meter_->written.size());
    if (left == 0) return IoResult::none(IoResult::Kind::wouldBlock);
    first = first.first(std::min(first.size(), left));
    second = second.first(std::min(second.size(), left - first.size()));
    IoResult const result = inner_->write(first, second);
    append(meter_->written, first.first(std::min(first.size(), result.count)));
    append(meter_->written, second.first(result.count - std::min(first.size(), result.count)));
    return result;
  }
  void writeEnds() override { inner_->writeEnds(); }
  int fd() const override { return inner_->fd(); }
  std::string peerName() const override { return inner_->peerName(); }
  std::optional<Vyx::NboAttrLog::PeerCredentials> peer() const override { return inner_->peer(); }
  bool isLocal() const override { return inner_->isLocal(); }

private:
  static void append(std::string& to, Bytes bytes) { to.append(bytes.begin(), bytes.end()); }

  std::unique_ptr<Transport> inner_;
  std::shared_ptr<Meter> meter_;
};

} // namespace processes_test
