#include "Vyx/NboAttrLog/Demuxer.h"

#include "Vyx/AskFor.h"
#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/ReactorList.h"
#include "Vyx/VyxType.h"

#include <algorithm>
#include <array>

namespace Vyx::NboAttrLog {

namespace {

constexpr unsigned long long kAcceptingHalf = 1ULL << 63;

// What is read of an entity when one of its first attributes is set.
constexpr std::size_t kEntityBytes = 3 * kCacheLine;

} // namespace

Demuxer::Demuxer(Ptr<Out> const& out, Ptr<In> const& in, Side side) : out_(out), in_(in), side_(side) {
  out_->inIs(in_.ptr());
  in_->demuxerIs(this);
  globalNboAttrLogDemuxerManager()->enter(this);
}

Demuxer::~Demuxer() {
  close();
  in_->demuxerIs(nullptr);
  out_->inIs(nullptr);
  globalNboAttrLogDemuxerManager()->leave(this);
}

void Demuxer::reactorIs(Ptr<StreamAdapter> const& adapter) {
  reactors_.newMember(adapter);
  retryWaiting_ = true;
}

// Each step reads what the step before has asked for: the bucket and the adapter in it, then the entity and
// the first of its reactors, which is the adapter's own, then the one behind that.
void Demuxer::expect(std::span<EntityId const> ids) const {
  std::array<StreamAdapter const*, kExpected> adapters;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    PtrInterface const* const first = reactors_.head(reactors_.bucketOf(reversedHash(ids[i])));
    adapters[i] = static_cast<StreamAdapter const*>(first);
    askFor(first, sizeof(StreamAdapter));
  }
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (adapters[i] && !(adapters[i]->fwkKey() == ids[i])) adapters[i] = reactor(ids[i]);
    if (!adapters[i]) continue;
    askFor(adapters[i]->vyxNotifier(), kEntityBytes);
    askFor(adapters[i]->vyxListed(), sizeof(Entity::NotifieeConst));
  }
  for (std::size_t i = 0; i < ids.size(); ++i)
    if (adapters[i] && adapters[i]->vyxListed())
      askFor(ReactorList::next(adapters[i]->vyxListed()), sizeof(Entity::NotifieeConst));
}

Ptr<StreamAdapter> Demuxer::reactorDel(EntityId const& id) {
  retryWaiting_ = true;
  return reactors_._memberDel(id);
}

EntityId Demuxer::newEntityId() {
  ++given_;
  return EntityId::fromValue((given_ << 1) | 1 | (side_ == accepting ? kAcceptingHalf : 0));
}

bool Demuxer::isOfOwnHalf(EntityId const& id) const {
  return ((id.value() & kAcceptingHalf) != 0) == (side_ == accepting);
}

bool Demuxer::wasGiven(EntityId const& id) const {
  unsigned long long const number = (id.value() & ~kAcceptingHalf) >> 1;
  return id.isAssigned() && number != 0 && number <= (isOfOwnHalf(id) ? given_ : peerGave_);
}

bool Demuxer::outranks(EntityId const& standing, EntityId const& coming) {
  return standing.isAssigned() && standing.value() & kAcceptingHalf && !(coming.value() & kAcceptingHalf);
}

void Demuxer::peerGave(EntityId const& id) {
  if (!isOfOwnHalf(id)) peerGave_ = std::max(peerGave_, (id.value() & ~kAcceptingHalf) >> 1);
}

Ptr<FlowIn> Demuxer::flowInIs(EntityId const& id) {
  if (FlowIn* there = flowIn(id)) return there;
  auto fresh = ptrFromNew(new FlowIn(id));
  flowIns_.newMember(fresh);
  if (StreamAdapter* adapter = reactor(id)) adapter->vyxFlowInIs(true);
  return fresh;
}

void Demuxer::flowInDel(EntityId const& id) {
  flowIns_._memberDel(id);
  if (StreamAdapter* adapter = reactor(id)) adapter->vyxFlowInIs(false);
  retryWaiting_ = true;
}

Ptr<FlowOut> Demuxer::newFlowOut(StreamAdapter& adapter, ConnectDesc const& desc, bool isResync,
                                 AttributeId firstAid) {
  adapter.flowOut_ = adapter.flowOutIs(out_, desc, isResync, firstAid);
  return adapter.flowOut_;
}

Ptr<FlowOut> Demuxer::createFlowOut(Ptr<StreamAdapter> const& adapter, ConnectDesc const& desc, bool isResync,
                                    AttributeId firstAid) {
  if (adapter->flowOut_) return adapter->flowOut_;
  Ptr<FlowOut> const fresh = newFlowOut(*adapter, desc, isResync, firstAid);
  if (fresh) queue(fresh);
  return fresh;
}

// A walk that stands in the middle is given up for the new one.
void Demuxer::writeAll(StreamAdapter& adapter) {
  AttributeId const givenUp = adapter.flowOut_ ? adapter.flowOut_->bookmarkAttrId() : 0;
  flowOutDel(adapter);
  Ptr<FlowOut> const flowOut = newFlowOut(adapter, ConnectDesc(), true, 0);
  if (!flowOut) return;
  if (givenUp) flowOut->pendingAbortIs(givenUp, true);
  if (adapter.continueFlowOut())
    run(flowOut);
  else
    queue(flowOut);
}

void Demuxer::queue(Ptr<FlowOut> const& flowOut) { queue_.push_back(flowOut); }

void Demuxer::flowOutDel(StreamAdapter& adapter) {
  if (Ptr<FlowOut> const flowOut = adapter.flowOut_) drop(*flowOut);
}

// What stands in the queue or waits stays there until its turn, and is passed over then.
void Demuxer::drop(FlowOut& flowOut) {
  Ptr<StreamAdapter> const adapter = flowOut.streamAdapter();
  if (flowOut.bookmark()) {
    flowOut.attrIdIs(flowOut.bookmarkAttrId());
    adapter->freeResyncState(Ptr<FlowOut>(&flowOut));
  }
  adapter->vyxFlowOutGone();
}

// A run begins at the lowest attribute that is owed. A walk that has stopped is finished first, though, since
// what it has saved is of its own type of key; what was marked up to its place since then has another run.
// What the other side is in the middle of a transaction about isn't begun before that has ended; a walk that
// has begun goes on, since the two sides would wait for each other else. What stands above it was written by
// the run that found it so. Neither is anything written of an entity on hold.
void Demuxer::run(Ptr<FlowOut> const& flowOut) {
  Ptr<StreamAdapter> const adapter = flowOut->streamAdapter();
  if (adapter->flag(StreamAdapter::flowOutHeldFlag)) return waiting_.push_back(flowOut);
  AttributeId const resume = flowOut->vyxResumeAid();
  bool const wasWithin = flowOut->bookmark();
  AttributeId const marked = wasWithin ? INT32_MAX : flowOut->vyxTakeLowestMarked();
  auto waitsFor = [&](AttributeId aid) {
    return aid != 0 && adapter->handlingFlowInFor(aid) && flowOut->vyxOpenWalk() != aid;
  };
  if (marked == INT32_MAX && waitsFor(resume)) return waiting_.push_back(flowOut);
  AttributeId const stop = adapter->handleAttrFlowOut(std::min(resume, marked));
  if (adapter->vyxFlowOut() != flowOut) return; // The entity has left the log meanwhile.
  AttributeId next = stop ? stop : INT32_MAX;
  if (!flowOut->bookmark()) {
    AttributeId const since = flowOut->vyxTakeLowestMarked();
    bool const isWritten = wasWithin && since > resume && !stop;
    if (!isWritten) next = std::min(next, since);
    next = std::min(next, flowOut->vyxTakeLowestRefused());
  }
  if (next == INT32_MAX) return drop(*flowOut);
  flowOut->vyxResumeAidIs(next);
  if (flowOut->isSuspended() || waitsFor(next))
    waiting_.push_back(flowOut);
  else
    queue(flowOut);
}

void Demuxer::retryWaiting() {
  retryWaiting_ = false;
  for (auto const& flowOut : std::exchange(waiting_, {})) queue(flowOut);
}

bool Demuxer::runFlowOuts() {
  if (running_) return false;
  running_ = true;
  struct Stop {
    bool& running;
    ~Stop() { running = false; }
  } const stop{running_};
  for (;;) {
    if (queue_.empty() && retryWaiting_) retryWaiting();
    if (queue_.empty()) return waiting_.empty();
    if (!out_->hasSufficientBuffer() || !mayGoOn()) return false;
    Ptr<FlowOut> const flowOut = queue_.front();
    queue_.pop_front();
    if (flowOut->isCurrent()) run(flowOut);
  }
}

void Demuxer::tellHeard() {
  if (toldHeard_ == heard_) return;
  toldHeard_ = heard_;
  MsgHeader header;
  header.attrId = kHeardCode;
  header.variableLength = 1;
  header.messageClass = kControl;
  out_->messageIs(header, heard_);
}

void Demuxer::failureIs(String8 const& words) {
  if (failure_.empty()) failure_ = words;
}

void Demuxer::close() {
  phase_ = connected;
  for (ReactorMap::IteratorConst at(reactors_); at; ++at) at.member()->leaveLog();
  for (auto const& flowOut : std::exchange(queue_, {}))
    if (flowOut->isCurrent()) drop(*flowOut);
  waiting_.clear();
  for (FlowInMap::IteratorConst at(flowIns_); at; ++at) flowInDel(at.key());
}

void DemuxerManager::enter(Demuxer* demuxer) {
  demuxer->next_ = head_;
  head_ = demuxer;
}

void DemuxerManager::leave(Demuxer* demuxer) {
  Demuxer** at = &head_;
  while (*at && *at != demuxer) at = &(*at)->next_;
  if (*at) *at = demuxer->next_;
}

Ptr<Entity> In::nextEntity() {
  EntityId const id = nextEntityId();
  if (id.isNull()) return {};
  StreamAdapter* const adapter = demuxer_ ? demuxer_->reactor(id) : nullptr;
  if (!adapter) throwProtocolException(format("entity id %llx is unknown", id.value()));
  return Ptr<Entity>(adapter->vyxNotifierEntity());
}

void throwWrongEntity(Entity const& entity, VyxType const& wanted) {
  throwProtocolException(String8("a reference to ") + entity.fwkType()->fullTypeName() + String8(" \"") +
                         entity.fullName() + String8("\" stands where one to ") + wanted.fullTypeName() +
                         String8(" is expected"));
}

} // namespace Vyx::NboAttrLog

namespace Vyx {

Ptr<NboAttrLog::DemuxerManager> const& globalNboAttrLogDemuxerManager() {
  static auto const* manager =
      new Ptr<NboAttrLog::DemuxerManager>(ptrFromNew(new NboAttrLog::DemuxerManager));
  return *manager;
}

Ptr<NboAttrLog::Demuxer> demuxFor(Ptr<NboAttrLog::In> const& in) { return in ? in->demuxer() : nullptr; }

} // namespace Vyx
