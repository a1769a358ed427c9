// A transport that breaks after so many bytes, as the death of a process breaks one: no farewell, and in the
// middle of whatever was going over.

#pragma once

#include "Vyx/NboAttrLog/Transport.h"

#include <algorithm>
#include <memory>

namespace replication_test {

using Vyx::NboAttrLog::IoResult;
using Vyx::NboAttrLog::Transport;
using Vyx::NboAttrLog::Waker;

class CutTransport final : public Transport {
public:
  // Of the bytes that come in, `left` are seen.
  CutTransport(std::unique_ptr<Transport> inner, std::size_t left) : inner_(std::move(inner)), left_(left) {}

  IoResult read(std::span<unsigned char> room) override {
    if (left_ == 0) return IoResult::none(IoResult::Kind::closed);
    IoResult const result = inner_->read(room.first(std::min(room.size(), left_)));
    left_ -= result.count;
    return result;
  }
  IoResult write(std::span<unsigned char const> first, std::span<unsigned char const> second) override {
    return left_ == 0 ? IoResult::none(IoResult::Kind::closed) : inner_->write(first, second);
  }
  void writeEnds() override { inner_->writeEnds(); }
  int fd() const override { return inner_->fd(); }
  bool isReadable() const override { return left_ == 0 || inner_->isReadable(); }
  bool isWritable() const override { return left_ == 0 || inner_->isWritable(); }
  void wakerIs(Waker* waker) override { inner_->wakerIs(waker); }
  std::string peerName() const override { return inner_->peerName(); }
  bool isLocal() const override { return true; }

private:
  std::unique_ptr<Transport> inner_;
  std::size_t left_;
};

} // namespace replication_test
