// Mark and sweep: what wasn't heard of between the begin and the end of a walk is deleted.

#pragma once

#include "frame/Queue.h"
#include "replication/Children.h"

namespace replication {

// Opens or closes the flow in of the adapter's entity.
inline void enterTransaction(StreamAdapter& adapter, Vyx::AttributeId aid,
                             StreamAdapter::AttrTransactionType type) {
  Vyx::NboAttrLog::Demuxer* const demuxer = adapter.vyxDemuxer();
  if (!demuxer) return;
  Vyx::NboAttrLog::FlowIn* const flowIn = demuxer->flowIn(adapter.entityId());
  if (!adapter.flag(StreamAdapter::syncRelayFlag) && type == StreamAdapter::attrTransactionBegin && !flowIn)
    demuxer->flowInIs(adapter.entityId())->aidIs(aid);
  else if (type == StreamAdapter::attrTransactionEnd && flowIn && flowIn->aid() == aid)
    flowIn->handlingTransactionIs(true);
}

// Walks every member again for as long as the walk itself has changed their number.
template <class Map, class Each> void sweep(Map& map, Each const& each) {
  std::uint32_t before;
  do {
    before = map.count();
    for (typename Map::IteratorConst at(map); at; ++at) each(at);
  } while (map.count() != before);
}

// A walk that begins without knowledge of what this side has written or owes of the collection doesn't tell
// what is to go: everything stays, and a walk of this side follows. What both have stays as it is at the
// accepting side. RETURNS whether it is such a walk.
template <class Attr, class Sa> bool answerLateWalk(Sa& adapter) {
  Vyx::NboAttrLog::Demuxer const* const demuxer = adapter.vyxDemuxer();
  if (!demuxer || !demuxer->knowsWhatPeerHeard()) return false;
  if (adapter.flag(StreamAdapter::readOnlyFlag) || !adapter.flag(StreamAdapter::outAttachedFlag))
    return false;
  if (!adapter.hasUnheardMembers() && !isDirty<Attr>(adapter)) return false;
  owe<Attr>(adapter);
  Vyx::NboAttrLog::FlowIn* const flowIn = demuxer->flowIn(adapter.entityId());
  if (flowIn && flowIn->aid() == Attr::id)
    flowIn->keepsOwnIs(demuxer->side() == Vyx::NboAttrLog::Demuxer::accepting);
  return true;
}

template <class Attr, class Sa> void transactValues(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  auto& of = entityOf(adapter);
  bool const isLate = type == StreamAdapter::attrTransactionBegin && answerLateWalk<Attr>(adapter);
  sweep(Attr::field(of), [&](auto const& at) {
    if (type == StreamAdapter::attrTransactionBegin) return at.member()->vyxMarkedForDeletionIs(!isLate);
    if (type != StreamAdapter::attrTransactionEnd || !at.member()->vyxMarkedForDeletion()) return;
    Vyx::IsActiveAnchor const anchor(adapter);
    if constexpr (kKind<Attr> == Kind::queue)
      frame::queueDel<Attr>(of, at.key());
    else
      frame::valueDel<Attr>(of, typename Attr::Key(at.key()));
  });
}

// Whether children without an adapter are this side's own, which it has owed since the log is live.
template <class Attr, class Sa> bool hasUnannounced(Sa const& adapter) {
  Vyx::NboAttrLog::Demuxer const* const demuxer = adapter.vyxDemuxer();
  return demuxer && demuxer->knowsWhatPeerHeard() && demuxer->phase() == Vyx::NboAttrLog::Demuxer::live &&
         !adapter.flag(StreamAdapter::readOnlyFlag) && isDirty<Attr>(adapter);
}

// The mark of a child is on its adapter; a child without an adapter on this log is one that the other side
// doesn't have. One that the other side didn't know yet when its walk began isn't what the walk is about.
template <class Attr, class Sa> void transactChildren(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  auto& of = entityOf(adapter);
  bool const keepsUnannounced = type == StreamAdapter::attrTransactionBegin && hasUnannounced<Attr>(adapter);
  sweep(Attr::field(of), [&](auto const& at) {
    auto const childAdapter = adapterOf(*at.member(), adapter.nboAttrLogOut());
    if (keepsUnannounced && !childAdapter)
      return keepBack<Attr>(adapter, Vyx::Ptr<typename Attr::ChildType>(at.member().ptr()));
    if (type == StreamAdapter::attrTransactionBegin && childAdapter)
      return childAdapter->flagIs(StreamAdapter::flowOutHeldFlag, childAdapter->isKnownToPeer());
    if (type != StreamAdapter::attrTransactionEnd) return;
    if (childAdapter && !childAdapter->flag(StreamAdapter::flowOutHeldFlag)) return;
    Vyx::IsActiveAnchor const anchor(adapter);
    frame::memberDel<Attr>(of, typename Attr::Key(at.key()));
  });
}

// A single child is marked, and nothing is deleted at the end.
template <class Attr, class Sa> void transactChild(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  auto const& child = Attr::field(entityOf(adapter));
  if (!child || type != StreamAdapter::attrTransactionBegin) return;
  if (auto const there = adapterOf(*child, adapter.nboAttrLogOut()))
    there->flagIs(StreamAdapter::flowOutHeldFlag, true);
}

// A text that was coming in pieces is given up. RETURNS whether that is all there is to do: outside of a flow
// in of this attribute the base hears nothing of it.
template <class Attr, class Sa> bool transactText(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  Vyx::NboAttrLog::Demuxer* const demuxer = adapter.vyxDemuxer();
  Vyx::NboAttrLog::FlowIn* const flowIn = demuxer ? demuxer->flowIn(adapter.entityId()) : nullptr;
  if (!flowIn || flowIn->aid() != Attr::id) return true;
  if (type == StreamAdapter::attrTransactionBegin) return false;
  flowIn->iterIs(nullptr);
  flowIn->aidIs(0);
  demuxer->flowInDel(adapter.entityId());
  return false;
}

// RETURNS whether the base is to hear of it, too.
template <class Attr, class Sa> bool transact(Sa& adapter, StreamAdapter::AttrTransactionType type) {
  constexpr Kind kind = kKind<Attr>;
  if constexpr (kind == Kind::values || kind == Kind::references || kind == Kind::queue)
    transactValues<Attr>(adapter, type);
  else if constexpr (kind == Kind::children)
    transactChildren<Attr>(adapter, type);
  else if constexpr (kind == Kind::child)
    transactChild<Attr>(adapter, type);
  else if constexpr (kind == Kind::text)
    return !transactText<Attr>(adapter, type);
  return true;
}

} // namespace replication
