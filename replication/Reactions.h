// What an adapter does when it hears of a change: writes it at once, or marks the attribute as owed.

#pragma once

#include "Vyx/NboAttrLog/TextPiece.h"
#include "replication/Messages.h"

namespace replication {

template <class Attr, class Sa> void scalarChanged(Sa& adapter) {
  if (isEcho(adapter, Attr::id)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (mayReact<Attr>(adapter)) writeScalar<Attr>(adapter);
}

template <class Attr, class Sa> void referenceChanged(Sa& adapter) {
  if (isEcho(adapter, Attr::id)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (mayReact<Attr>(adapter)) writePatiently<Attr>(adapter, [&] { writeReference<Attr>(adapter); });
}

// One key of a collection of values. A missing key comes with a default value.
template <class Attr, class Sa>
void memberChanged(Sa& adapter, typename Attr::Key const& key, typename Attr::Type const& value,
                   bool keyMissing) {
  if (isEcho(adapter, Attr::id)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (!mayReact<Attr>(adapter)) return;
  if (keyMissing) return writeRemoval<Attr>(adapter, key);
  writePatiently<Attr>(adapter, [&] { writeMember<Attr>(adapter, key, value); });
}

template <class Attr, class Sa> void memberChanged(Sa& adapter, typename Attr::Key const& key) {
  auto const* const member = Attr::field(entityOf(adapter)).find(key);
  memberChanged<Attr>(adapter, key, member ? member->value() : typename Attr::Type(), !member);
}

// Outside of a flow out a text is begun only where there is much room; what doesn't fit is owed.
template <class Attr, class Sa> bool oweText(Sa& adapter, Vyx::String8::IteratorConst const& at) {
  owe<Attr>(adapter);
  if (auto const& flowOut = adapter.vyxFlowOut()) {
    flowOut->outstandingKeysIs(1);
    flowOut->valueIterIs(nullptr);
    Vyx::NboAttrLog::vyxFlowOutValueEnq(*flowOut, at);
  }
  return false;
}

// Whether the next piece of a text may be written. A text is begun at once only where there is much room.
inline bool pieceMayGo(StreamAdapter& adapter, bool isFirst) {
  auto const& out = adapter.nboAttrLogOut();
  if (adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag) && !adapter.continueFlowOut()) return false;
  if (adapter.vyxFlowOut() || !isFirst) return !out->connected() || out->hasSufficientBuffer();
  return out->connected() && out->room() >= Vyx::kTextStartRoom;
}

// A text in pieces. RETURNS whether it is through. An empty text is one message without a payload. A text
// that has changed since its last piece is begun anew, by the reaction to the change.
template <class Attr, class Sa> bool textChanged(Sa& adapter) {
  if (isEcho(adapter, Attr::id)) return true;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (!isWriting(adapter)) return true;
  requireWritable<Attr>(adapter);
  Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const flowOut = adapter.vyxFlowOut();
  bool const isScheduled = adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag);
  if (flowOut && !isScheduled) {
    flowOut->valueIterIs(nullptr);
    if (!adapter.flag(StreamAdapter::directFlowOutFlag)) {
      adapter.prepareImmediateTransmission(Attr::id, true);
      dirtyIs<Attr>(adapter, true);
      return false;
    }
  }
  auto at = flowOut && flowOut->valueIter() ? Vyx::NboAttrLog::vyxFlowOutValueDeq(*flowOut)
                                            : Vyx::String8(valueOf<Attr>(entityOf(adapter))).begin();
  bool isFirst = true;
  do {
    if (!pieceMayGo(adapter, isFirst)) return oweText<Attr>(adapter, at);
    writeMessage(adapter, Attr::id, 0, [&](auto const& out) { Vyx::Ptr<Connection::Out>(out) << at; });
    isFirst = false;
  } while (at.position() < at.text().length());
  return true;
}

} // namespace replication
