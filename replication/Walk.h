// A whole collection onto the log, in pieces as there is room.

#pragma once

#include "replication/Children.h"

namespace replication {

// One member during a walk. Within a transaction a child is announced anew, so that the other side keeps it.
template <class Attr, class Sa, class At> void walkMember(Sa& adapter, At const& at, bool inTransaction) {
  typename Attr::Key const key = at.key();
  if constexpr (kKind<Attr> == Kind::children) {
    Vyx::Ptr<typename Attr::ChildType> const child(at.member().ptr());
    if (inTransaction)
      if (auto const there = adapterOf(*child, adapter.nboAttrLogOut()))
        there->flagIs(StreamAdapter::childAnnouncedFlag, false);
    childChanged<Attr>(adapter, child, key);
  } else {
    memberChanged<Attr>(adapter, key, at.member()->value(), false);
  }
}

// RETURNS whether the walk is finished. A walk that stopped goes on at its bookmark, or at the next key when
// that one is gone; its transaction stays open meanwhile.
template <class Attr, class Sa> bool walkCollection(Sa& adapter) {
  if (isEcho(adapter, Attr::id)) return false;
  if (!isWriting(adapter)) return true;
  requireWritable<Attr>(adapter);
  auto& map = Attr::field(entityOf(adapter));
  using Key = typename Attr::Key;
  using At = typename std::remove_reference_t<decltype(map)>::IteratorConst;
  Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const flowOut = adapter.vyxFlowOut();
  At at(map);
  if (flowOut && !flowOut->bookmark()) {
    adapter.sendTransactionMarker(Attr::id, StreamAdapter::attrTransactionBegin, 0);
  } else if (flowOut) {
    Key const key = *static_cast<Key*>(flowOut->bookmark());
    Vyx::NboAttrLog::vyxBookmarkDel<Key>(*flowOut);
    at = At(map, key);
  }
  bool isStopped = false;
  while (at && !isStopped) {
    walkMember<Attr>(adapter, at, static_cast<bool>(flowOut));
    bool const isSuspended = flowOut && flowOut->isSuspended();
    isStopped = flowOut && (!adapter.continueFlowOut() || isSuspended);
    if (!isSuspended) at.advance();
  }
  if (isStopped && at) {
    Vyx::NboAttrLog::vyxBookmarkEnq<Key>(*flowOut, at.key());
    return false;
  }
  if (flowOut && (isStopped || flowOut->attrId() == Attr::id))
    adapter.sendTransactionMarker(Attr::id, StreamAdapter::attrTransactionEnd, 0);
  return true;
}

// The reaction to a change of the attribute; a keyed one comes with its key.
template <class Attr, class... Key>
void react(typename Attr::Owner::VyxNboAttrLogSa& adapter, Key const&... key) {
  constexpr Kind kind = kKind<Attr>;
  if constexpr (kind == Kind::scalar)
    scalarChanged<Attr>(adapter);
  else if constexpr (kind == Kind::text)
    textChanged<Attr>(adapter);
  else if constexpr (kind == Kind::reference)
    referenceChanged<Attr>(adapter);
  else if constexpr (kind == Kind::child)
    childChanged<Attr>(adapter);
  else if constexpr (kind == Kind::children)
    keyedChildChanged<Attr>(adapter, key...);
  else
    memberChanged<Attr>(adapter, key...);
}

} // namespace replication
