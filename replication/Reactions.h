// What an adapter does when it hears of a change: writes it at once, or marks the attribute as owed.

#pragma once

#include "Vyx/NboAttrLog/TextPiece.h"
#include "replication/Messages.h"

namespace replication {

template <class Attr, class Sa> void scalarChanged(Sa& adapter) {
  if (isSilent<Attr>(adapter)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (mayReact<Attr>(adapter)) writeScalar<Attr>(adapter);
}

template <class Attr, class Sa> void referenceChanged(Sa& adapter) {
  if (isSilent<Attr>(adapter)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (mayReact<Attr>(adapter)) writePatiently<Attr>(adapter, [&] { writeReference<Attr>(adapter); });
}

// Whoever has heard of a member within a transaction keeps it.
template <class Attr> void unmark(typename Attr::Owner& of, typename Attr::Key const& key) {
  if (auto* const member = Attr::field(of).find(key)) member->vyxMarkedForDeletionIs(false);
}

// What this side sets during a walk that is coming in isn't what that walk is about.
template <class Attr, class Sa> void keepThroughWalk(Sa& adapter, typename Attr::Key const& key) {
  if (!adapter.flag(StreamAdapter::isActiveFlag) &&
      !adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag))
    unmark<Attr>(entityOf(adapter), key);
}

// One key of a collection of values. A missing key comes with a default value.
template <class Attr, class Sa>
void memberChanged(Sa& adapter, typename Attr::Key const& key, typename Attr::Type const& value,
                   bool keyMissing) {
  if (adapter.vyxHasFlowIn() && !keyMissing) keepThroughWalk<Attr>(adapter, key);
  if (isSilent<Attr>(adapter)) return;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (!mayReact<Attr>(adapter)) return;
  if (keyMissing)
    writeRemoval<Attr>(adapter, key);
  else if constexpr (kKind<Attr> == Kind::references)
    writePatiently<Attr>(adapter, [&] { writeMember<Attr>(adapter, key, value); });
  else
    writeMember<Attr>(adapter, key, value);
  if (!adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag))
    adapter.vyxMemberWritten(adapter.nboAttrLogOut()->messages());
}

template <class Attr, class Sa> void memberChanged(Sa& adapter, typename Attr::Key const& key) {
  auto const* const member = Attr::field(entityOf(adapter)).find(key);
  memberChanged<Attr>(adapter, key, member ? member->value() : typename Attr::Type(), !member);
}

// Whether the next piece of a text may be written. Outside of a flow out a text is begun only where there is
// much room, and then written to its end.
inline bool pieceMayGo(StreamAdapter& adapter, bool inFlowOut, bool isFirst) {
  auto const& out = adapter.nboAttrLogOut();
  if (!inFlowOut) return !isFirst || (out->connected() && out->room() >= Vyx::kTextStartRoom);
  if (adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag) && !adapter.continueFlowOut()) return false;
  return !out->connected() || out->hasSufficientBuffer();
}

// The text is owed from that position on. In a run its bit is the ladder's.
template <class Attr, class Sa>
void oweText(Sa& adapter, Vyx::String8::IteratorConst const& at, bool inFlowOut) {
  if (!inFlowOut || !adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag)) owe<Attr>(adapter);
  auto const& flowOut = adapter.vyxFlowOut();
  if (!flowOut) return;
  if (!inFlowOut) flowOut->outstandingKeysIs(1);
  Vyx::NboAttrLog::vyxFlowOutValueEnq(*flowOut, at);
}

// A text in pieces. RETURNS whether it is through. An empty text is one message without a payload. A text
// that has changed since its last piece is begun anew, by the reaction to the change.
template <class Attr, class Sa> bool textChanged(Sa& adapter) {
  if (isSilent<Attr>(adapter)) return true;
  Vyx::ClearIsActiveAnchor const anchor(adapter);
  if (!isWriting(adapter)) return noteChangeOnHold<Attr>(adapter), true;
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
  bool const inFlowOut = static_cast<bool>(flowOut);
  bool isFirst = true;
  do {
    if (!pieceMayGo(adapter, inFlowOut, isFirst)) return oweText<Attr>(adapter, at, inFlowOut), false;
    writeNumbered(adapter, [&] {
      writeMessage(adapter, Attr::id, 0, [&](auto const& out) { Vyx::Ptr<Connection::Out>(out) << at; });
    });
    isFirst = false;
  } while (at.position() < at.text().length());
  return true;
}

} // namespace replication
