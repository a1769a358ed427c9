// The stream adapter of an entity type X, but for the names: what the runtime calls, for the attributes that
// X adds to its base. The class derived from this, X::VyxNboAttrLogSa, brings
//
//   VyxReplicated            the list of these attributes, ascending by id
//   FlowOut                  what is owed, with a bit for each of them (the base's where there are none)
//   VyxNboAttrLogSaAdapter_  its reactor in X's list; vyxNewAdapter makes one
//   on<Attr>                 a virtual reaction for each

#pragma once

#include "replication/AdapterOf.h"
#include "replication/Applying.h"
#include "replication/Envelope.h"
#include "replication/FlowOutOf.h"
#include "replication/Ladder.h"
#include "replication/Lookup.h"
#include "replication/Transactions.h"

namespace replication {

// The runtime's base is made without the entity, which every other base takes.
class FirstAdapter : public Vyx::Entity::VyxNboAttrLogSa {
protected:
  FirstAdapter(Vyx_BitSet flags, Vyx::Ptr<Vyx::Entity> const&, unsigned options, Vyx::Ptr<Out> const& out,
               Vyx::PtrInterface* channelEntry)
      : VyxNboAttrLogSa(flags, options, out, channelEntry) {}
};

template <class X>
using AdapterBase = std::conditional_t<std::is_same_v<typename X::VyxBase, Vyx::Entity>, FirstAdapter,
                                       typename X::VyxBase::VyxNboAttrLogSa>;

template <class X> class StreamAdapterOf : public AdapterBase<X> {
public:
  using Entity = X;
  using Base = AdapterBase<X>;
  using Options = StreamAdapter::DeserializationOptions;
  using TransactionType = StreamAdapter::AttrTransactionType;
  static constexpr bool kIsFirst = std::is_same_v<typename X::VyxBase, Vyx::Entity>;

  ~StreamAdapterOf() override;

  // Makes an adapter that hears of its entity from now on. THROWS: RangeException "null ValidPtr".
  static Vyx::Ptr<typename X::VyxNboAttrLogSa> VyxNboAttrLogSaIs(Vyx_BitSet flags, Vyx::Ptr<X> const& entity,
                                                                 unsigned options, Vyx::Ptr<Out> const& out,
                                                                 Vyx::PtrInterface* channelEntry);

  Vyx::Ptr<X> notifier() { return this->vyxNotifier() ? Vyx::Ptr<X>(&of()) : Vyx::Ptr<X>(); }

  void hasNotificationActiveIs(bool active) override;
  void notifierIs(Vyx::Ptr<Vyx::PtrInterface const> const& notifier) override;
  Vyx::AttributeId handleAttrFlowOut(Vyx::AttributeId startAid) override;
  void freeResyncState(Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const& flowOut) override;
  void vyxInstantiateSerialize() override;
  void doSerializeOrphan() override;
  void handleAttrDeserialization(Vyx::AttributeId aid, Options options, unsigned n,
                                 Vyx::Ptr<In> const& in) override;
  void handleAttrTransaction(Vyx::AttributeId aid, TransactionType type, unsigned n) override;
  Vyx::Ptr<Vyx::NboAttrLog::FlowOut> flowOutIs(Vyx::Ptr<Out> const& out, Vyx::ConnectDesc const& desc,
                                               bool isResync, Vyx::AttributeId firstAid) override;
  void doNotification(Vyx::AttributeId aid, void* key) override;
  void syncModeIs(StreamAdapter::SyncMode mode) override;
  bool vyxDoZombieReactors(bool zombie) override;
  void doRemountSelf(Vyx::Ptr<Out> const& out) override;

  // Reads one message and applies it; the base's attributes are the base's.
  void vyxApply(Vyx::AttributeId aid, Message const& message);
  // Whether the line has any attribute that a newer writer may address by several ids, and whether that is
  // one.
  static constexpr bool vyxReadsEnvelopes();
  static bool vyxKnowsInEnvelope(Vyx::AttributeId aid);

protected:
  StreamAdapterOf(Vyx_BitSet flags, Vyx::Ptr<X> const& entity, unsigned options, Vyx::Ptr<Out> const& out,
                  Vyx::PtrInterface* channelEntry)
      : Base(flags, entity, options, out, channelEntry) {
    attach(entity);
  }

  // Begins or ends the transactions of what hangs below, if the log is still being brought up to date. The
  // constructor of the derived class ends with it.
  void transactAll();

private:
  template <class Y> friend class StreamAdapterOf;

  using Self = typename X::VyxNboAttrLogSa;
  Self& self() { return static_cast<Self&>(*this); }
  X& of() { return entityOf(self()); }

  void attach(Vyx::Ptr<X> const& entity);
  void unlinkAdapter() {
    if (adapter_) adapter_->isRegisteredNotifieeIs(false);
  }
  Vyx::Ptr<typename X::Notifiee> adapter_; // The last word: each level's own.
};

template <class X> void StreamAdapterOf<X>::attach(Vyx::Ptr<X> const& entity) {
  adapter_ = Self::vyxNewAdapter(entity, this);
  if (this->flag(StreamAdapter::weakAdapterFlag)) this->isWeakReferenceIs(true);
  if constexpr (!kIsFirst) Base::unlinkAdapter();
  this->vyxListedIs(adapter_.ptr());
  StreamAdapterOf::notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(entity));
}

template <class X> StreamAdapterOf<X>::~StreamAdapterOf() {
  this->isWeakReferenceIs(false);
  if (!adapter_) return;
  this->vyxListedIs(nullptr);
  adapter_->isRegisteredNotifieeIs(false);
  adapter_->notifierIs(nullptr);
  static_cast<AdapterOf<X>&>(*adapter_).vyxReactorAdapterIs(nullptr);
}

template <class X> void StreamAdapterOf<X>::hasNotificationActiveIs(bool active) {
  if (this->hasNotificationActive() == active) return;
  Base::hasNotificationActiveIs(active);
  if (adapter_) adapter_->hasNotificationActiveIs(active);
}

// Every level's reactor knows the entity; only the last one's is in its list.
template <class X> void StreamAdapterOf<X>::notifierIs(Vyx::Ptr<Vyx::PtrInterface const> const& notifier) {
  if (adapter_) adapter_->notifierIs(notifier);
  Base::notifierIs(notifier);
  if constexpr (!kIsFirst) Base::unlinkAdapter();
  this->isRegisteredNotifieeIs(false);
}

template <class X> Vyx::AttributeId StreamAdapterOf<X>::handleAttrFlowOut(Vyx::AttributeId startAid) {
  using List = typename Self::VyxReplicated;
  if constexpr (std::is_same_v<List, frame::AttributeList<>>)
    return Base::handleAttrFlowOut(startAid);
  else
    return flowOutLadder(self(), startAid, List(), [&] { return Base::handleAttrFlowOut(startAid); });
}

template <class X>
void StreamAdapterOf<X>::freeResyncState(Vyx::Ptr<Vyx::NboAttrLog::FlowOut> const& flowOut) {
  bool isOwn = false;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if (Attr::id != flowOut->attrId()) return;
    isOwn = true;
    if constexpr (isKeyed<Attr>)
      if (flowOut->bookmark()) Vyx::NboAttrLog::vyxBookmarkDel<typename Attr::Key>(*flowOut);
  });
  if (!isOwn) Base::freeResyncState(flowOut);
}

template <class X> void StreamAdapterOf<X>::vyxInstantiateSerialize() {
  Base::vyxInstantiateSerialize();
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if constexpr (kKind<Attr> == Kind::children)
      walkCollection<Attr>(self());
    else if constexpr (kKind<Attr> == Kind::child)
      Attr::tell(self());
  });
}

template <class X> void StreamAdapterOf<X>::doSerializeOrphan() {
  Vyx::Ptr<Out> const out = this->nboAttrLogOut();
  Vyx::Ptr<X> const entity = notifier();
  out->nextHeaderIs({Vyx::kOrphanEntityId, Vyx::NboAttrLog::kOrphanAttrId, 1, 0, 0, 0});
  out << Connection::Out::kTransactBegin;
  out->currentPayloadSectionIs(Out::kTypeNames);
  for (auto const* type = X::_fwkType(); type != Vyx::Entity::_fwkType(); type = type->baseType())
    out << Vyx::TypeId(Vyx::String8(type->fullTypeName()));
  out->currentPayloadSectionIs(Out::kConstructorValues);
  writeValues(out, X::vyxParameters(*entity));
  out->currentPayloadSectionIs(Out::kEntityIdSection);
  out << this->entityId();
  out << Connection::Out::kTransactEnd;
  this->doThis();
}

template <class X> void StreamAdapterOf<X>::vyxApply(Vyx::AttributeId aid, Message const& message) {
  bool done = false;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if (!done) done = applyAttribute<Attr>(self(), aid, message);
  });
  if (!done) Base::vyxApply(aid, message);
}

template <class X> constexpr bool StreamAdapterOf<X>::vyxReadsEnvelopes() {
  if (anyHasEnvelope(typename Self::VyxReplicated())) return true;
  if constexpr (kIsFirst)
    return false;
  else
    return Base::vyxReadsEnvelopes();
}

template <class X> bool StreamAdapterOf<X>::vyxKnowsInEnvelope(Vyx::AttributeId aid) {
  bool knows = false;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if constexpr (hasEnvelope<Attr>) knows = knows || aid == Attr::id || aid == -Attr::id;
  });
  if constexpr (!kIsFirst) knows = knows || Base::vyxKnowsInEnvelope(aid);
  return knows;
}

template <class X>
void StreamAdapterOf<X>::handleAttrDeserialization(Vyx::AttributeId aid, Options options, unsigned n,
                                                   Vyx::Ptr<In> const& in) {
  // Whoever carries the messages holds the log.
  In* const from = in ? in.ptr() : this->vyxIn();
  if (!from) return;
  std::optional<Vyx::IsActiveAnchor> active;
  if (!in) {
    if (this->flag(StreamAdapter::isActiveFlag))
      Vyx::throwInternalException("entity reactor is already active");
    active.emplace(*this);
    if (this->flag(StreamAdapter::readOnlyProxyFlag) && !this->readOnlyRemoteOk(aid) &&
        !this->convertedToWritable(false))
      Vyx::throwInternalException(Vyx::String8("write-update from readonly proxy: ") + of().fullName());
  }
  Message message{*from, !in, n, options, 0};
  if constexpr (vyxReadsEnvelopes())
    if (isEnvelope(aid)) aid = openEnvelope(aid, message, &vyxKnowsInEnvelope);
  Vyx::Ptr<Vyx::NboAttrLog::FlowIn> held;
  if (this->vyxHasFlowIn() && this->vyxDemuxer()) held = this->vyxDemuxer()->flowIn(this->entityId());
  vyxApply(aid, message);
}

template <class X>
void StreamAdapterOf<X>::handleAttrTransaction(Vyx::AttributeId aid, TransactionType type, unsigned n) {
  enterTransaction(*this, aid, type);
  bool goesOn = true;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if (Attr::id == aid) goesOn = transact<Attr>(self(), type);
  });
  if (goesOn) Base::handleAttrTransaction(aid, type, n);
}

template <class X>
Vyx::Ptr<Vyx::NboAttrLog::FlowOut> StreamAdapterOf<X>::flowOutIs(Vyx::Ptr<Out> const& out,
                                                                 Vyx::ConnectDesc const& desc, bool isResync,
                                                                 Vyx::AttributeId firstAid) {
  using FlowOut = typename Self::FlowOut;
  Vyx::Ptr<Vyx::Entity::VyxNboAttrLogSa> const adapter(this);
  return Vyx::ptrFromNew(new FlowOut(out, adapter, desc, isResync, firstAid));
}

template <class X> void StreamAdapterOf<X>::doNotification(Vyx::AttributeId aid, void* key) {
  bool done = false;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if (done || (aid != Attr::id && !(isKeyed<Attr> && aid == -Attr::id))) return;
    done = true;
    if constexpr (isKeyed<Attr>)
      Attr::tell(self(), *static_cast<typename Attr::Key const*>(key));
    else
      Attr::tell(self());
  });
  if (!done) Base::doNotification(aid, key);
}

template <class X> void StreamAdapterOf<X>::transactAll() {
  Vyx::Ptr<Vyx::NboAttrLog::Demuxer> const demuxer = this->streamDemuxer();
  if (!demuxer || demuxer->phase() >= Vyx::NboAttrLog::Demuxer::live) return;
  if (!this->flag(StreamAdapter::isActiveFlag)) return;
  auto const type = this->syncMode() == StreamAdapter::syncModeFull ? StreamAdapter::attrTransactionBegin
                                                                    : StreamAdapter::attrTransactionEnd;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if constexpr (isKeyed<Attr> || kKind<Attr> == Kind::child) handleAttrTransaction(Attr::id, type, 0);
  });
}

template <class X> void StreamAdapterOf<X>::syncModeIs(StreamAdapter::SyncMode mode) {
  Base::syncModeIs(mode);
  transactAll();
}

template <class X> bool StreamAdapterOf<X>::vyxDoZombieReactors(bool zombie) {
  if (this->vyxMarkedForDeletion() == zombie) return zombie;
  if (adapter_) adapter_->vyxDoZombieReactors(zombie);
  this->vyxMarkedForDeletionIs(zombie);
  return zombie;
}

template <class X> void StreamAdapterOf<X>::doRemountSelf(Vyx::Ptr<Out> const& out) {
  Vyx::Ptr<X> const entity = notifier();
  Vyx::Ptr<Vyx::StreamAdapter> const held(this);
  Base::doRemountSelf(out);
  if (!entity) return;
  forEach(typename Self::VyxReplicated(), [&]<class Attr>(Attr const*) {
    if constexpr (isChildKind<Attr>)
      forEachChild<Attr>(*entity, [&](auto const& child) { childAdapterDel(self(), child); });
  });
}

template <class X>
Vyx::Ptr<typename X::VyxNboAttrLogSa>
StreamAdapterOf<X>::VyxNboAttrLogSaIs(Vyx_BitSet flags, Vyx::Ptr<X> const& entity, unsigned options,
                                      Vyx::Ptr<Out> const& out, Vyx::PtrInterface* channelEntry) {
  auto adapter = Vyx::make<Self>(flags, entity, options, out, channelEntry);
  adapter->hasNotificationActiveIs(true);
  return adapter;
}

// The current flow out, as that of the adapter's type.
template <class Sa> Vyx::Ptr<typename Sa::FlowOut> flowOutOf(Sa const& adapter) {
  return Vyx::Ptr<typename Sa::FlowOut>(static_cast<typename Sa::FlowOut*>(adapter.vyxFlowOut().ptr()));
}

} // namespace replication
