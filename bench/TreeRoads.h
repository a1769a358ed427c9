// Trees of entities on their way over the attribute log: what ReplicationBench measures beside the others.

#pragma once

#include "Road.h"

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "Vyx/NboAttrLog/Pipe.h"
#include "Vyx/NboAttrLog/SocketTransport.h"

#include <memory>
#include <string>
#include <vector>

namespace Bench {

namespace Log = Vyx::NboAttrLog;
using Vyx::Ptr;

inline constexpr char kPath[] = "pbr/tree";
inline constexpr Log::Duration kPatience = std::chrono::seconds(50);

// One side of a connection.
class TreeEnd : private Log::Peer::Watcher {
public:
  ~TreeEnd() {
    if (peer) peer->watcherDel();
  }

  void connect(std::unique_ptr<Log::Transport> transport, Log::Demuxer::Side side) {
    if (peer) peer->watcherDel();
    hasSynced = false;
    // The other side may be building its tree before it comes to its first turn.
    Log::LinkOptions options;
    options.helloLimit = kPatience;
    peer = Vyx::ptrFromNew(new Log::Peer(std::move(transport), side, roots, this, options));
    peer->loopIs(loop);
  }
  template <class Condition> void until(Condition const& condition) {
    require(loop.runUntil([&] { return condition() || peer->hasEnded(); }, kPatience), "it takes too long");
    require(!peer->hasEnded(), ended.c_str());
  }
  // Asks for the tree and waits for all of it.
  void mount(Log::MountMode mode) {
    peer->mount(kPath, mode);
    until([this] { return hasSynced; });
  }
  // Until the other side has got the tree.
  void serve() {
    until([this] { return peer->demuxer()->phase() == Log::Demuxer::live && isEmpty(); });
  }
  bool isEmpty() const { return peer->link()->out()->pendingBytes() == 0 && !peer->demuxer()->hasQueued(); }
  template <class X> Ptr<X> mounted() const {
    return Vyx::dynamicPtrCast<X>(roots->dir()->find(kPath)->entity());
  }

  Log::Loop loop{Log::Loop::Waking::never};
  Ptr<Log::Roots> roots = Vyx::ptrFromNew(new Log::Roots);
  Ptr<Log::Peer> peer;
  bool hasSynced = false;
  std::string ended;

private:
  void onSynced(Log::Peer&, Vyx::Name const&) override { hasSynced = true; }
  void onEnded(Log::Peer&, Log::Closing const& closing) override { ended = closing.words; }
};

class CountingCounter final : public Pbr::ClassMapCheckpointStatus::Notifiee {
public:
  explicit CountingCounter(std::size_t& heard) : heard_(heard) {}
  void onPktMatch() override { ++heard_; }

private:
  std::size_t& heard_;
};

template <class R, class X> void attach(Ptr<R> const& reactor, Ptr<X> const& to) {
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(to);
}

// A checkpoint with that many class maps, each of which counts its packets.
class Counters {
public:
  static Ptr<Pbr::CheckpointStatus> make(std::size_t count) {
    auto const root = Pbr::checkpointStatusFactory("pbr");
    auto const map = root->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("map");
    for (std::size_t i = 0; i < count; ++i) map->cmapCkptStatusIs(Vyx::Name(std::to_string(i)));
    return root;
  }
  static std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> of(Pbr::CheckpointStatus const& root,
                                                            std::size_t count) {
    auto const map = root.checkpointAgentStatus("agent")->pmapCkptStatus("map");
    std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> all;
    for (std::size_t i = 0; i < count; ++i) all.push_back(map->cmapCkptStatus(Vyx::Name(std::to_string(i))));
    return all;
  }
};

class TreeRoad : public Road {
protected:
  std::unique_ptr<Log::Transport> writerTransport() { return std::move(ends_.first); }
  std::unique_ptr<Log::Transport> readerTransport() { return std::move(ends_.second); }
  // The ends that this process doesn't use stay open in it, as nobody waits for their end.
  Log::SocketPair ends_ = Log::socketPair();
};

// Changes that the other process hears of, one by one.
class ChangesRoad final : public TreeRoad {
public:
  void openWriter() override {
    auto const root = Counters::make(kEntities);
    counters_ = Counters::of(*root, kEntities);
    end_ = std::make_unique<TreeEnd>();
    end_->roots->offerIs(kPath, root);
    end_->connect(writerTransport(), Log::Demuxer::accepting);
    end_->serve();
  }
  void openReader() override {
    end_ = std::make_unique<TreeEnd>();
    end_->connect(readerTransport(), Log::Demuxer::connecting);
    end_->mount(Log::MountMode::read);
    for (auto const& counter : Counters::of(*end_->mounted<Pbr::CheckpointStatus>(), kEntities)) {
      reactors_.push_back(Vyx::ptrFromNew(new CountingCounter(heard_)));
      attach(reactors_.back(), counter);
    }
  }
  // Waits when there is no room, so that no two changes become one.
  void write(std::size_t changes) override {
    auto const out = end_->peer->link()->out();
    for (std::size_t i = 0; i < changes; ++i) {
      if (!out->hasSufficientBuffer()) end_->until([&] { return out->hasSufficientBuffer(); });
      counters_[i % kEntities]->pktMatchIs(i + 1);
    }
    end_->until([this] { return end_->isEmpty(); });
  }
  void read(std::size_t changes) override {
    end_->until([&] { return heard_ >= changes; });
    require(heard_ == changes, "more has come than was sent");
  }

private:
  std::unique_ptr<TreeEnd> end_;
  std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> counters_;
  std::vector<Ptr<CountingCounter>> reactors_;
  std::size_t heard_ = 0;
};

// Actions of five attributes each: three next hops, a flag, a text.
inline Ptr<Pbr::Config> newActions(std::size_t attributes) {
  auto const root = Pbr::configFactory("pbr");
  auto const actions = root->pbrActions();
  for (std::size_t i = 0; i < attributes / kAttributes; ++i) {
    auto const number = static_cast<std::uint32_t>(i);
    auto const action = actions->fwdActionIs("class", {number, 1, 1}, Pbr::nexthopAction);
    for (char const* hop : {"10.0.0.1", "10.0.0.2", "10.0.0.3"})
      action->nexthopIs(Lomu::IpGenAddr(hop), true);
    action->recursiveIs(true);
    action->nexthopGroupIs("group");
  }
  return root;
}

// The whole of a tree to a reader that has nothing of it.
class WholeTreeRoad : public TreeRoad {
public:
  void openWriter() override {
    end_ = std::make_unique<TreeEnd>();
    end_->roots->offerIs(kPath, newActions(1000000));
    end_->connect(writerTransport(), Log::Demuxer::accepting);
  }
  void openReader() override {
    end_ = std::make_unique<TreeEnd>();
    end_->connect(readerTransport(), Log::Demuxer::connecting);
  }
  void write(std::size_t) override { end_->serve(); }
  void read(std::size_t changes) override {
    end_->mount(Log::MountMode::read);
    require(end_->mounted<Pbr::Config>()->pbrActions()->fwdActions() == changes / kAttributes,
            "not all has come");
  }

protected:
  std::unique_ptr<TreeEnd> end_;
};

class ActionReactor final : public Pbr::PbrFwdAction::Notifiee {
public:
  explicit ActionReactor(std::size_t& heard) : heard_(heard) {}
  void onNexthop(Lomu::IpGenAddr const&) override { ++heard_; }
  void onRecursive() override { ++heard_; }
  void onNexthopGroup() override { ++heard_; }

private:
  std::size_t& heard_;
};

// The same after a lost connection, to a reader that has all of it; fails if that one hears anything.
class EqualTreeRoad final : public WholeTreeRoad {
public:
  void openWriter() override {
    WholeTreeRoad::openWriter();
    end_->serve();
    end_->connect(std::move(again_.first), Log::Demuxer::accepting);
  }
  void openReader() override {
    WholeTreeRoad::openReader();
    end_->mount(Log::MountMode::read);
    for (auto at = end_->mounted<Pbr::Config>()->pbrActions()->fwdActionIterator(); at; ++at) {
      reactors_.push_back(Vyx::ptrFromNew(new ActionReactor(heard_)));
      attach(reactors_.back(), Ptr<Pbr::PbrFwdAction>(at.member()));
    }
    end_->connect(std::move(again_.second), Log::Demuxer::connecting);
  }
  void read(std::size_t changes) override {
    WholeTreeRoad::read(changes);
    require(heard_ == 0, "an equal tree has told of changes");
  }

private:
  Log::SocketPair again_ = Log::socketPair();
  std::vector<Ptr<ActionReactor>> reactors_;
  std::size_t heard_ = 0;
};

// Answers a change of one counter with one of another.
class Echo final : public Pbr::ClassMapCheckpointStatus::Notifiee {
public:
  explicit Echo(Ptr<Pbr::ClassMapCheckpointStatus> const& answer) : answer_(answer) {}
  void onPktMatch() override { answer_->pktMatchIs(this->notifier()->pktMatch()); }

private:
  Ptr<Pbr::ClassMapCheckpointStatus> answer_;
};

// One change there, the answer back.
class TreePing : public TreeRoad {
public:
  explicit TreePing(bool sleeps) : sleeps_(sleeps) {}

  void openWriter() override {
    auto const root = Counters::make(2);
    auto const counters = Counters::of(*root, 2);
    reactor_ = Vyx::ptrFromNew(new Echo(counters[1]));
    attach(reactor_, counters[0]);
    end_ = std::make_unique<TreeEnd>();
    end_->roots->offerIs(kPath, root);
    end_->connect(writerTransport(), Log::Demuxer::accepting);
    end_->serve();
    end_->peer->link()->immediateIs(true);
  }
  void openReader() override {
    end_ = std::make_unique<TreeEnd>();
    end_->connect(readerTransport(), Log::Demuxer::connecting);
    end_->mount(Log::MountMode::write);
    counters_ = Counters::of(*end_->mounted<Pbr::CheckpointStatus>(), 2);
    heardBy_ = Vyx::ptrFromNew(new CountingCounter(heard_));
    attach(heardBy_, counters_[1]);
    end_->peer->link()->immediateIs(true);
  }
  void write(std::size_t times) override {
    auto const& answer =
        *Counters::of(*Vyx::dynamicPtrCast<Pbr::CheckpointStatus>(end_->roots->offered(kPath)), 2)[1];
    turnUntil([&] { return answer.pktMatch() == times; });
  }
  void read(std::size_t times) override {
    for (std::size_t i = 1; i <= times; ++i) {
      counters_[0]->pktMatchIs(i);
      turnUntil([&] { return heard_ == i; });
    }
  }

private:
  template <class Condition> void turnUntil(Condition const& condition) {
    while (!condition()) {
      if (sleeps_)
        end_->loop.turn(Log::Duration::max());
      else
        end_->peer->link()->readable();
      require(!end_->peer->hasEnded(), "the connection has ended");
    }
  }

  bool const sleeps_;
  std::unique_ptr<TreeEnd> end_;
  Ptr<Echo> reactor_;
  Ptr<CountingCounter> heardBy_;
  std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> counters_;
  std::size_t heard_ = 0;
};

class SleepingPing final : public TreePing {
public:
  SleepingPing() : TreePing(true) {}
};
class PollingPing final : public TreePing {
public:
  PollingPing() : TreePing(false) {}
};

// The same with both sides in this process, over memory.
class PipePing {
public:
  PipePing() {
    Log::PipePair ends = Log::pipePair();
    auto const root = Counters::make(2);
    auto const counters = Counters::of(*root, 2);
    first_ = counters[0];
    server_.roots->offerIs(kPath, root);
    server_.connect(std::move(ends.first), Log::Demuxer::accepting);
    client_.connect(std::move(ends.second), Log::Demuxer::connecting);
    client_.peer->mount(kPath, Log::MountMode::write);
    while (!client_.hasSynced) {
      server_.loop.turn(Log::Duration::zero());
      client_.loop.turn(Log::Duration::zero());
    }
    auto const copies = Counters::of(*client_.mounted<Pbr::CheckpointStatus>(), 2);
    echo_ = Vyx::ptrFromNew(new Echo(copies[1]));
    attach(echo_, copies[0]);
    reactor_ = Vyx::ptrFromNew(new CountingCounter(heard_));
    attach(reactor_, counters[1]);
    for (TreeEnd* end : {&server_, &client_}) {
      end->peer->link()->immediateIs(true);
      end->peer->link()->directIs(true);
    }
  }

  void once() {
    first_->pktMatchIs(++value_);
    require(heard_ == value_, "no answer");
  }

private:
  TreeEnd server_;
  TreeEnd client_;
  Ptr<Pbr::ClassMapCheckpointStatus> first_;
  Ptr<Echo> echo_;
  Ptr<CountingCounter> reactor_;
  std::size_t heard_ = 0;
  std::size_t value_ = 0;
};

} // namespace Bench
