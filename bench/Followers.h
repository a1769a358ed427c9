// A writer whose changes one reader follows, alone or beside another one that has stopped reading.

#pragma once

#include "Heap.h"
#include "Processor.h"
#include "TreeRoads.h"

namespace Bench {

// All in this process, over sockets, in turns of one thousand changes: one for each counter.
class Followers {
public:
  static constexpr std::size_t kCounters = 1000;

  explicit Followers(bool besideSlow) {
    writer_.roots->offerIs(kPath, root_);
    join(follower_);
    if (!besideSlow) return;
    slow_ = std::make_unique<Reader>();
    join(*slow_);
    slow_->end.peer->link()->readingIs(false);
  }

  void change(std::size_t changes) {
    for (std::size_t i = 0; i < changes; ++i) {
      counters_[i % kCounters]->pktMatchIs(++value_);
      if (i % kCounters == kCounters - 1) turn();
    }
    turnUntil([&] { return isEqual(follower_); });
  }
  // What the one that follows has used of the processor, in seconds.
  double byFollower() const { return byFollower_; }
  // Lets the slow one read on. Fails if it doesn't end with what the writer has.
  void readOn() {
    slow_->end.peer->link()->readingIs(true);
    turnUntil([&] { return isEqual(*slow_); });
  }

private:
  struct Reader {
    Ptr<Log::Peer> served; // The writer's side of the connection.
    TreeEnd end;
    std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> copies;
  };

  void join(Reader& reader) {
    Log::SocketPair ends = Log::socketPair();
    reader.served =
        Vyx::ptrFromNew(new Log::Peer(std::move(ends.first), Log::Demuxer::accepting, writer_.roots));
    reader.served->loopIs(writer_.loop);
    reader.end.connect(std::move(ends.second), Log::Demuxer::connecting);
    reader.end.peer->mount(kPath, Log::MountMode::read);
    turnUntil([&] { return reader.end.hasSynced; });
    reader.copies = Counters::of(*reader.end.mounted<Pbr::CheckpointStatus>(), kCounters);
  }
  bool isEqual(Reader const& reader) const {
    for (std::size_t i = kCounters; i-- > 0;)
      if (reader.copies[i]->pktMatch() != counters_[i]->pktMatch()) return false;
    return true;
  }
  void turn() {
    writer_.loop.turn(Log::Duration::zero());
    double const begun = processorTime();
    follower_.end.loop.turn(Log::Duration::zero());
    byFollower_ += processorTime() - begun;
    if (slow_) slow_->end.loop.turn(Log::Duration::zero());
  }
  template <class Condition> void turnUntil(Condition const& condition) {
    Log::Instant const until = Log::after(Log::Clock::now(), kPatience);
    while (!condition()) {
      turn();
      require(Log::Clock::now() < until, "it takes too long");
    }
  }

  Ptr<Pbr::CheckpointStatus> root_ = Counters::make(kCounters);
  std::vector<Ptr<Pbr::ClassMapCheckpointStatus>> counters_ = Counters::of(*root_, kCounters);
  TreeEnd writer_;
  Reader follower_;
  std::unique_ptr<Reader> slow_;
  unsigned long long value_ = 0;
  double byFollower_ = 0;
};

} // namespace Bench
