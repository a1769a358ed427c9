// Finding, making and taking away the stream adapters of an entity.

#pragma once

#include "Vyx/ListRaw.h"
#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/ValidPtr.h"
#include "frame/LineCast.h"

namespace replication {

using Vyx::NboAttrLog::Out;
using EntitySa = Vyx::Entity::VyxNboAttrLogSa;
using Link = Vyx::Entity::NotifieeConst;

inline Vyx::NboAttrLog::In* inOf(Out const* out) {
  return out ? static_cast<Vyx::NboAttrLog::In*>(out->in()) : nullptr;
}

// What stands behind a reactor, if it is a stream adapter.
inline EntitySa* adapterBehind(Link const& reactor) {
  auto const* const behind = reactor.vyxRawReactor();
  if (behind == &reactor) return nullptr;
  auto const* const notifiee = static_cast<Vyx::PtrInterface::NotifieeConst const*>(behind);
  return notifiee->isStreamAdapter() ? const_cast<EntitySa*>(static_cast<EntitySa const*>(notifiee))
                                     : nullptr;
}

// Whether the adapter is the one that is asked for: on that log, or, with none, on whichever log the entity
// is known by the same id as everywhere.
inline bool isAskedFor(EntitySa const& adapter, Vyx::Ptr<Out const> const& out) {
  if (out) return adapter.nboAttrLogOut().ptr() == out.ptr();
  auto const* const in = inOf(adapter.nboAttrLogOut().ptr());
  return adapter.hasUnifiedEntityId() && in && in->inReadyFlag();
}

// RETURNS the adapter that the log's demuxer has under the same id for the same entity.
inline EntitySa* adapterById(EntitySa const& adapter, Vyx::NboAttrLog::Demuxer const& demuxer,
                             Vyx::Entity const& entity) {
  if (!adapter.entityId().isAssigned()) return nullptr;
  Vyx::StreamAdapter* const there = demuxer.reactor(adapter.entityId());
  return there && there->vyxNotifierEntity() == &entity ? static_cast<EntitySa*>(there) : nullptr;
}

// RETURNS the entity's adapter on that log, or null.
template <class X> Vyx::Ptr<EntitySa> findAdapter(X& of, Vyx::Ptr<Out const> const& out) {
  for (Link const* reactor = of.vyxReactors().head(); reactor; reactor = Vyx::ReactorList::next(reactor)) {
    EntitySa* const adapter = adapterBehind(*reactor);
    if (!adapter) continue;
    if (isAskedFor(*adapter, out)) return Vyx::Ptr<EntitySa>(adapter);
    if (!out) continue;
    auto const demuxer = Vyx::demuxFor(Vyx::Ptr<Vyx::NboAttrLog::In>(inOf(out.ptr())));
    if (!demuxer) return {};
    if (EntitySa* const there = adapterById(*adapter, *demuxer, of)) return Vyx::Ptr<EntitySa>(there);
  }
  return {};
}

// RETURNS another adapter of the entity on the same message channel, or null.
template <class X> Vyx::Ptr<EntitySa> findForMsgChannel(X const& of, Vyx::Ptr<EntitySa> const& other) {
  for (Link const* reactor = of.vyxReactors().head(); reactor; reactor = Vyx::ReactorList::next(reactor)) {
    EntitySa* const adapter = adapterBehind(*reactor);
    if (!adapter || adapter == other.ptr() || !adapter->entityId().isAssigned()) continue;
    auto const* const in = inOf(adapter->nboAttrLogOut().ptr());
    if (!in || !in->inReadyFlag()) continue;
    auto* const channel = other->messageChannelEntry();
    if (channel ? adapter->messageChannelEntry() == channel : adapter->hasUnifiedEntityId())
      return Vyx::Ptr<EntitySa>(adapter);
  }
  return {};
}

// RETURNS the entity's adapter on that log, never null; the flags that a parent hands on are those given.
// THROWS: RangeException "null ValidPtr" without a log.
template <class X>
Vyx::Ptr<EntitySa> adapterIs(X& of, Vyx_BitSet flags, unsigned options, Vyx::Ptr<Out> const& out,
                             Vyx::PtrInterface* channelEntry) {
  using Sa = typename X::VyxNboAttrLogSa;
  if (!out) Vyx::throwRangeException("null ValidPtr");
  Vyx::Entity& entity = of;
  Vyx::Ptr<EntitySa> const there = entity.vyxNboAttrLogSa(Vyx::Ptr<Out const>(out));
  if (auto own = frame::linePtrCast<Sa>(there)) {
    own->notificationFlagsAre(flags);
    return own;
  }
  if (there) entity.vyxNboAttrLogSaDel(Vyx::Ptr<Out const>(out));
  return Sa::VyxNboAttrLogSaIs(flags, Vyx::Ptr<X>(&of), options, out, channelEntry);
}

// Takes the entity's adapter from the log's demuxer. RETURNS it, or null.
template <class X> Vyx::Ptr<EntitySa> adapterDel(X& of, Vyx::Ptr<Out const> const& out) {
  auto const demuxer = Vyx::demuxFor(Vyx::Ptr<Vyx::NboAttrLog::In>(inOf(out.ptr())));
  if (!demuxer) return {};
  Vyx::Entity& entity = of;
  Vyx::Ptr<EntitySa> adapter = entity.vyxNboAttrLogSa(out);
  if (adapter) demuxer->reactorDel(adapter->entityId());
  return adapter;
}

} // namespace replication
