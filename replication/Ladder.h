// Writing what is owed: up the attributes of a type, from the one where the last run stopped.

#pragma once

#include "replication/Walk.h"

#include <array>
#include <optional>

namespace replication {

// Writes one attribute that is dirty. RETURNS whether it is through.
template <class Attr, class Sa> bool writeOwed(Sa& adapter) {
  if constexpr (isKeyed<Attr>) {
    return walkCollection<Attr>(adapter);
  } else if constexpr (kKind<Attr> == Kind::text) {
    return textChanged<Attr>(adapter);
  } else {
    Attr::tell(adapter);
    return true;
  }
}

// Behind what isn't through although it was its turn. A walk that stands at a bookmark stops the ladder,
// since the walks above would take it for theirs. Over one that may not begin yet the ladder goes on, as over
// a text for which there is room again; the next run comes back to it.
template <class Attr, class Sa>
std::optional<Vyx::AttributeId> stopAtUnfinished(Sa& adapter, Vyx::NboAttrLog::FlowOut& flowOut) {
  if (flowOut.bookmark() || !adapter.continueFlowOut()) return Attr::id;
  flowOut.vyxRefusedIs(Attr::id);
  return std::nullopt;
}

// One rung. RETURNS the attribute to resume at, or nothing when the ladder goes on. `next` is the attribute
// above, 0 on top.
template <class Attr, class Sa> std::optional<Vyx::AttributeId> climb(Sa& adapter, Vyx::AttributeId next) {
  Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const flowOut = adapter.vyxFlowOut();
  if (flowOut) flowOut->attrIdIs(Attr::id);
  bool done = true;
  if (isDirty<Attr>(adapter)) {
    done = writeOwed<Attr>(adapter);
    if constexpr (isWalked<Attr>)
      dirtyIs<Attr>(adapter, !done || (flowOut && flowOut->vyxTakeMarkedBehindWalk()));
  }
  if (flowOut && flowOut->isSuspended()) return Attr::id;
  if (!done) return stopAtUnfinished<Attr>(adapter, *flowOut);
  if (adapter.continueFlowOut()) return std::nullopt;
  if constexpr (isWalked<Attr>)
    return flowOut && flowOut->hasDirtyAttributes() ? next : 0;
  else
    return next;
}

// The attributes of the adapter's own level, ascending. RETURNS as handleAttrFlowOut.
template <class Sa, class... Attrs>
Vyx::AttributeId climbAll(Sa& adapter, Vyx::AttributeId startAid, frame::AttributeList<Attrs...>) {
  constexpr std::array<Vyx::AttributeId, sizeof...(Attrs) + 1> ids{Attrs::id..., 0};
  std::size_t rung = 0;
  bool isOn = startAid == 0;
  std::optional<Vyx::AttributeId> stop;
  auto one = [&]<class Attr>(Attr const*) {
    isOn = isOn || startAid == Attr::id;
    if (isOn && !stop) stop = climb<Attr>(adapter, ids[rung + 1]);
    ++rung;
  };
  (one(static_cast<Attrs const*>(nullptr)), ...);
  return stop.value_or(0);
}

template <class First, class... Rest>
constexpr Vyx::AttributeId firstOf(frame::AttributeList<First, Rest...>) {
  return First::id;
}

// What the other side is owed of aborted walks goes out before anything else of a run.
inline void sendPendingAborts(StreamAdapter& adapter, Vyx::NboAttrLog::FlowOut& flowOut) {
  flowOut.vyxDataBitsIs(flowOut.vyxDataBits() & ~Vyx::NboAttrLog::FlowOut::flowOutSuspendedBit);
  for (auto at = flowOut.pendingAbortIterator(); at; ++at) {
    Vyx::AttributeId const aid = at.key();
    adapter.sendTransactionMarker(aid, StreamAdapter::attrTransactionAbort, 0);
    flowOut.pendingAbortDel(aid);
  }
}

// The whole of handleAttrFlowOut for a type; `base` runs that of the base.
template <class Sa, class List, class Base>
Vyx::AttributeId flowOutLadder(Sa& adapter, Vyx::AttributeId startAid, List list, Base const& base) {
  Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const flowOut = adapter.vyxFlowOut();
  Vyx::FlagAnchor const scheduled(adapter, StreamAdapter::handlingScheduledFlowOutFlag,
                                  static_cast<bool>(flowOut));
  if (flowOut) sendPendingAborts(adapter, *flowOut);
  constexpr Vyx::AttributeId first = firstOf(List());
  if (startAid >= first) return climbAll(adapter, startAid, list);
  if (Vyx::AttributeId const stop = base(); stop != 0) return stop;
  if (!adapter.continueFlowOut()) return first;
  return climbAll(adapter, 0, list);
}

} // namespace replication
