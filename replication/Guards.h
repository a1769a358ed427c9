// The decisions that every reaction makes before it writes.

#pragma once

#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/NboAttrLog/Exceptions.h"
#include "replication/Attributes.h"

namespace replication {

using Vyx::StreamAdapter;

// The entity of an adapter of the type Sa.
template <class Sa> typename Sa::Entity& entityOf(Sa& adapter) {
  return static_cast<typename Sa::Entity&>(
      *static_cast<Vyx::Entity*>(const_cast<Vyx::PtrInterface*>(adapter.vyxNotifier())));
}

template <class Attr, class Sa> void dirtyIs(Sa& adapter, bool dirty) {
  auto const& flowOut = adapter.vyxFlowOut();
  if (flowOut) static_cast<typename Sa::FlowOut&>(*flowOut).dirty()->template dirtyIs<Attr>(dirty);
}

template <class Attr, class Sa> bool isDirty(Sa const& adapter) {
  auto const& flowOut = adapter.vyxFlowOut();
  return flowOut && static_cast<typename Sa::FlowOut&>(*flowOut).dirty()->template isDirty<Attr>();
}

// Whether the change came from the log itself.
inline bool isEcho(StreamAdapter const& adapter, Vyx::AttributeId aid) {
  if (adapter.flag(StreamAdapter::syncRelayFlag)) return true;
  return !adapter.flag(StreamAdapter::isActiveFlag) && adapter.handlingFlowInFor(aid);
}

// Whether the adapter writes anything at all just now.
inline bool isWriting(StreamAdapter const& adapter) {
  constexpr unsigned against = 1U << StreamAdapter::flowOutHeldFlag | 1U << StreamAdapter::flowOutOffFlag |
                               1U << StreamAdapter::isActiveFlag;
  constexpr unsigned attached = 1U << StreamAdapter::outAttachedFlag;
  return (adapter.vyx_bitSet().word() & (against | attached)) == attached && adapter.nboAttrLogOut();
}

// Whether this side, which settles changes that cross, has written of the entity what the other one hadn't
// heard of when it wrote what is being read.
inline bool hasCrossedOwn(StreamAdapter const& adapter) {
  auto const* const demuxer = adapter.vyxDemuxer();
  return demuxer && demuxer->side() == Vyx::NboAttrLog::Demuxer::accepting &&
         !demuxer->hasPeerHeard(adapter.vyxWrittenAt());
}

// What happens with every change is inlined into its reaction; what is rare stands in functions of its own,
// so that the reaction stays short.

template <class Attr> [[gnu::noinline]] void convertOrThrow(StreamAdapter& adapter) {
  if (!adapter.convertedToWritable(false))
    adapter.doThrowReadOnly(Vyx::Ptr<Vyx::VyxAttr const>(recordOf<Attr>()));
}

// THROWS: ReadOnlyException.
template <class Attr> void requireWritable(StreamAdapter& adapter) {
  if (__builtin_expect(adapter.flag(StreamAdapter::readOnlyFlag), false)) convertOrThrow<Attr>(adapter);
}

// Marks the attribute, so that a later run writes it.
template <class Attr, class Sa> [[gnu::noinline]] void owe(Sa& adapter) {
  if (!adapter.vyxDemuxer()) return;
  Vyx::ConnectDesc const desc{Vyx::EntityUriPath(""), Vyx::EntityUriPath("")};
  auto const flowOut = adapter.vyxDemuxer()->createFlowOut(&adapter, desc, false, INT32_MAX);
  if (!flowOut) return;
  flowOut->attrIdIs(Attr::id);
  dirtyIs<Attr>(adapter, true);
}

// A change that this side makes while the adapter is on hold is owed when that ends.
template <class Attr, class Sa> [[gnu::noinline]] void noteChangeOnHold(Sa& adapter) {
  constexpr unsigned asked = 1U << StreamAdapter::flowOutHeldFlag | 1U << StreamAdapter::outAttachedFlag;
  constexpr unsigned against = 1U << StreamAdapter::flowOutOffFlag | 1U << StreamAdapter::isActiveFlag |
                               1U << StreamAdapter::readOnlyFlag |
                               1U << StreamAdapter::handlingScheduledFlowOutFlag;
  if ((adapter.vyx_bitSet().word() & (asked | against)) != asked) return;
  adapter.vyxChangedOnHold([](StreamAdapter& one) { owe<Attr>(static_cast<Sa&>(one)); });
}

// What looks like an echo but is a change that this side makes while the other one walks the attribute: it is
// owed, and written behind that walk. RETURNS whether it was such a change.
template <class Attr, class Sa> [[gnu::noinline]] bool deferOwnChange(Sa& adapter) {
  if (adapter.flag(StreamAdapter::syncRelayFlag) || adapter.flag(StreamAdapter::readOnlyFlag)) return false;
  if (adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag)) return false;
  if (!isWriting(adapter)) return noteChangeOnHold<Attr>(adapter), false;
  owe<Attr>(adapter);
  return true;
}

// Whether the change came from the log; one that didn't, but can't be written yet, is owed.
template <class Attr, class Sa> bool isSilent(Sa& adapter) {
  if (!isEcho(adapter, Attr::id)) return false;
  deferOwnChange<Attr>(adapter);
  return true;
}

// Outside of direct mode the runtime decides. A written single value is owed no more, a written member says
// nothing of the other members.
template <class Attr, class Sa> [[gnu::noinline]] bool mayWriteByPolicy(Sa& adapter, bool room) {
  bool const writes = adapter.prepareImmediateTransmission(Attr::id, !room);
  if (!writes || !isKeyed<Attr>) dirtyIs<Attr>(adapter, !writes);
  return writes;
}

// Whether the change is written at once; else it is owed from now on.
template <class Attr, class Sa> [[gnu::always_inline]] inline bool mayWriteNow(Sa& adapter) {
  bool const room = adapter.nboAttrLogOut()->hasSufficientBuffer();
  if (!adapter.flag(StreamAdapter::directFlowOutFlag)) return mayWriteByPolicy<Attr>(adapter, room);
  if (adapter.flag(StreamAdapter::handlingScheduledFlowOutFlag)) return true;
  if (room && !adapter.flag(StreamAdapter::forceFlowOutFlag)) return true;
  owe<Attr>(adapter);
  return false;
}

// Everything that stands before a reaction's own writing.
template <class Attr, class Sa> [[gnu::always_inline]] inline bool mayReact(Sa& adapter) {
  if (!isWriting(adapter)) return noteChangeOnHold<Attr>(adapter), false;
  requireWritable<Attr>(adapter);
  return mayWriteNow<Attr>(adapter);
}

// Runs `write`, anew for as long as the log wants it repeated. What refers to an entity that the log doesn't
// know yet makes the flow out wait at this attribute.
template <class Attr, class Sa, class Write> void writePatiently(Sa& adapter, Write const& write) {
  for (;;) {
    try {
      return write();
    } catch (Vyx::AttrLogRecordException const&) {
    } catch (Vyx::EntityIdUnavailableException const&) {
      owe<Attr>(adapter);
      if (auto const& flowOut = adapter.vyxFlowOut())
        flowOut->vyxDataBitsIs(flowOut->vyxDataBits() | Vyx::NboAttrLog::FlowOut::flowOutSuspendedBit);
      return;
    }
  }
}

} // namespace replication
