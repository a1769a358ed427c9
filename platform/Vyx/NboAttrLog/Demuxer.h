// The adapters of one log by entity id, and what is owed to that log.
//
// Invariants:
// (1) The demuxer keeps the adapters, not their entities' parents.
// (2) The two sides of a log give ids of disjoint halves: the accepting side's have the highest bit set.
//     All ids are odd.
// (3) A flow out is in one of three states: queued to run, waiting for an entity that it refers to, or gone.

#pragma once

#include "Vyx/HashMap.h"
#include "Vyx/NboAttrLog/FlowIn.h"
#include "Vyx/NboAttrLog/FlowOut.h"
#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"

#include <deque>
#include <span>
#include <vector>

namespace Vyx::NboAttrLog {

// The control message that tells how many messages of the other side had been applied; see Peer.h for others.
inline constexpr AttributeId kHeardCode = 7; // number

class Demuxer final : public PtrInterface {
public:
  // Which half of the ids this side gives.
  enum Side { connecting, accepting };
  // How far the log is; below `live` a fresh adapter takes part in the resync.
  enum Phase : unsigned { connected = 0, syncing = 1, live = 2 };

  using ReactorMap = HashMap<StreamAdapter, EntityId>;
  using FlowInMap = HashMap<FlowIn, EntityId>;

  Demuxer(Ptr<Out> const& out, Ptr<In> const& in, Side side);
  ~Demuxer() override;

  Ptr<Out> const& out() const { return out_; }
  Ptr<In> const& in() const { return in_; }

  // Adapters.
  ReactorMap const& reactors() const { return reactors_; }
  StreamAdapter* reactor(EntityId const& id) const { return reactors_.find(id); }
  // Messages for these entities come next. Asks for the memory that applying them reads, for all of them at
  // the same time: in a large tree each message would otherwise wait for its own. An id may be unknown.
  // REQUIRES: no more than kExpected.
  void expect(std::span<EntityId const> ids) const;
  static constexpr std::size_t kExpected = 16;
  // RETURNS null when no adapter has the id.
  Ptr<StreamAdapter> reactorDel(EntityId const& id);
  // REQUIRES: no other adapter has its id.
  void reactorIs(Ptr<StreamAdapter> const& adapter);
  EntityId newEntityId();
  // Whether that id was given by either side before, so that a message for it may just be late.
  bool wasGiven(EntityId const& id) const;
  // The other side has announced an entity under that id, be it one that this side gave.
  void peerGave(EntityId const& id);
  // When both sides announce one child to each other, the id of the accepting side stays.
  static bool outranks(EntityId const& standing, EntityId const& coming);

  // Transactions in progress.
  FlowIn* flowIn(EntityId const& id) const { return flowIns_.count() ? flowIns_.find(id) : nullptr; }
  Ptr<FlowIn> flowInIs(EntityId const& id);
  void flowInDel(EntityId const& id);

  // RETURNS the adapter's flow out; a new one has the attributes from `firstAid` on dirty and will be run.
  Ptr<FlowOut> createFlowOut(Ptr<StreamAdapter> const& adapter, ConnectDesc const& desc, bool isResync,
                             AttributeId firstAid);
  // Something that flow outs wait for has happened: they are tried again.
  void waitingIsOver() { retryWaiting_ = true; }
  // Gives up what the adapter owes.
  void flowOutDel(StreamAdapter& adapter);
  // Owes everything that the adapter's entity holds, and writes of it what there is room for.
  void writeAll(StreamAdapter& adapter);
  // Writes what is owed for as long as there is room. RETURNS whether nothing is owed any more.
  bool runFlowOuts();
  bool hasQueued() const { return !queue_.empty(); }
  // How many flow outs wait for an entity that this log doesn't know yet.
  std::size_t waitingFlowOuts() const { return waiting_.size(); }

  Phase phase() const { return phase_; }
  void phaseIs(Phase phase) { phase_ = phase; }

  // What each side knew of the other's messages when it wrote its own.

  // One more message of the other side has come.
  void heardInc() { ++heard_; }
  // Says how many have come, unless the other side was told so before.
  void tellHeard();
  // How many of this side's the other one had applied when it wrote what comes next. Until one is told, each
  // counts as applied.
  void peerHeardIs(std::uint64_t messages) { peerHeard_ = messages; }
  bool hasPeerHeard(std::uint64_t message) const { return message <= peerHeard_; }
  bool knowsWhatPeerHeard() const { return peerHeard_ != UINT64_MAX; }
  Side side() const { return side_; }

  // Enumerators that this process doesn't know.
  unsigned unknownEnums() const { return unknownEnums_; }
  void unknownEnumsInc(unsigned by) { unknownEnums_ += by; }

  // What an adapter has met that this log can't get over; the link ends with it at the next occasion.
  void failureIs(String8 const& words);
  String8 const& failure() const { return failure_; }

  // Takes every entity off this log. What the entities hold stays as it is.
  void close();

  // Asked before each of many messages; for those who want to write less than there is room for.
  using Throttle = bool (*)(void* context);
  void throttleIs(Throttle mayGoOn, void* context) {
    throttle_ = mayGoOn;
    throttleContext_ = context;
  }
  bool mayGoOn() const { return !throttle_ || throttle_(throttleContext_); }

  Demuxer* vyxNextDemuxer() const { return next_; } // Of the manager's list.

private:
  friend class DemuxerManager;

  Ptr<FlowOut> newFlowOut(StreamAdapter& adapter, ConnectDesc const& desc, bool isResync,
                          AttributeId firstAid);
  bool isOfOwnHalf(EntityId const& id) const;
  void queue(Ptr<FlowOut> const& flowOut);
  // Runs it once, then drops it, sets it waiting or queues it anew.
  void run(Ptr<FlowOut> const& flowOut);
  void drop(FlowOut& flowOut);
  void retryWaiting();

  Ptr<Out> out_;
  Ptr<In> in_;
  Side side_;
  Phase phase_ = connected;
  unsigned unknownEnums_ = 0;
  std::uint64_t heard_ = 0;
  std::uint64_t toldHeard_ = 0;
  std::uint64_t peerHeard_ = UINT64_MAX;
  unsigned long long given_ = 0;
  unsigned long long peerGave_ = 0;
  bool running_ = false;
  bool retryWaiting_ = false; // An entity has come or gone since the waiting ones were asked last.
  ReactorMap reactors_;
  FlowInMap flowIns_;
  std::deque<Ptr<FlowOut>> queue_;
  std::vector<Ptr<FlowOut>> waiting_;
  String8 failure_;
  Throttle throttle_ = nullptr;
  void* throttleContext_ = nullptr;
  Demuxer* next_ = nullptr;
};

// All demuxers of the process.
class DemuxerManager final : public PtrInterface {
public:
  class Iterator {
  public:
    explicit Iterator(Demuxer* first) : at_(first) {}
    explicit operator bool() const { return static_cast<bool>(at_); }
    Demuxer& operator*() const { return *at_; }
    Demuxer* operator->() const { return at_.ptr(); }
    Ptr<Demuxer> const& demuxer() const { return at_; }
    Iterator& operator++() {
      at_ = Ptr<Demuxer>(at_->vyxNextDemuxer());
      return *this;
    }

  private:
    Ptr<Demuxer> at_;
  };

  // ORDER: the newest first. REQUIRES: no demuxer ends during the walk.
  Iterator nboDemuxerIterator() const { return Iterator(head_); }

  void enter(Demuxer* demuxer);
  void leave(Demuxer* demuxer);

private:
  Demuxer* head_ = nullptr; // Not counted: a demuxer leaves before it ends.
};

// THROWS: ProtocolException that names both types.
[[noreturn]] void throwWrongEntity(Entity const& entity, VyxType const& wanted);

} // namespace Vyx::NboAttrLog

namespace Vyx {

Ptr<NboAttrLog::DemuxerManager> const& globalNboAttrLogDemuxerManager();
// RETURNS the demuxer of that log, or null when it has none.
Ptr<NboAttrLog::Demuxer> demuxFor(Ptr<NboAttrLog::In> const& in);

} // namespace Vyx
