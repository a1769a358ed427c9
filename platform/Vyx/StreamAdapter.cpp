#include "Vyx/StreamAdapter.h"

#include "Vyx/Dir.h"
#include "Vyx/LeaveLogs.h"
#include "Vyx/MsgChannel.h"
#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/VyxType.h"

#include <algorithm>

namespace Vyx {

StreamAdapter::StreamAdapter(Vyx_BitSet flags, unsigned, Ptr<NboAttrLog::Out> const& out,
                             PtrInterface* channelEntry)
    : out_(out), demuxer_(vyxIn() ? vyxIn()->demuxer() : nullptr), channelEntry_(channelEntry) {
  vyxBits() = flags;
}

StreamAdapter::~StreamAdapter() {
  vyxFlowOutGone();
  isWeakReferenceIs(false);
  holdsNotifierIs(false);
  if (notifier_) std::exchange(notifier_, nullptr)->vyxReferenceDec();
}

AttributeId StreamAdapter::handleAttrFlowOut(AttributeId) { return 0; }
void StreamAdapter::freeResyncState(Ptr<NboAttrLog::FlowOut> const&) {}
void StreamAdapter::vyxInstantiateSerialize() {}
Entity const* StreamAdapter::vyxNotifierEntity() const { return static_cast<Entity const*>(notifier_); }
Entity* StreamAdapter::vyxNotifierEntity() {
  return const_cast<Entity*>(static_cast<Entity const*>(notifier_));
}
void StreamAdapter::doSerializeOrphan() {}
void StreamAdapter::handleAttrDeserialization(AttributeId, DeserializationOptions, unsigned,
                                              Ptr<NboAttrLog::In> const&) {}

// What the walk was about is settled, so the transaction ends here.
void StreamAdapter::handleAttrTransaction(AttributeId aid, AttrTransactionType type, unsigned) {
  if (type == attrTransactionBegin || !demuxer_) return;
  NboAttrLog::FlowIn const* flowIn = demuxer_->flowIn(entityId_);
  if (flowIn && flowIn->aid() == aid) demuxer_->flowInDel(entityId_);
}

Ptr<NboAttrLog::FlowOut> StreamAdapter::flowOutIs(Ptr<NboAttrLog::Out> const&, ConnectDesc const&, bool,
                                                  AttributeId) {
  return {};
}
void StreamAdapter::doNotification(AttributeId, void*) {}
void StreamAdapter::syncModeIs(SyncMode mode) { syncMode_ = mode; }

bool StreamAdapter::vyxDoZombieReactors(bool zombie) {
  vyxMarkedForDeletionIs(zombie);
  return zombie;
}

void StreamAdapter::doRemountSelf(Ptr<NboAttrLog::Out> const& out) {
  Ptr<Entity> const entity(vyxNotifierEntity());
  Vyx_BitSet flags;
  flags.masked(vyx_bitSet(), Vyx_BitSet::notificationBitMask());
  leaveLog();
  if (!out || !entity) return;
  auto const fresh = entity->vyxNboAttrLogSaIs(flags, 0, out, nullptr);
  fresh->vyxOnInit();
  fresh->doSerializeOrphan();
}

void StreamAdapter::leaveLog() {
  Ptr<StreamAdapter> const held(this);
  if (NboAttrLog::Demuxer* demuxer = std::exchange(demuxer_, nullptr)) {
    demuxer->flowOutDel(*this);
    demuxer->flowInDel(entityId_);
    if (demuxer->reactor(entityId_) == this) demuxer->reactorDel(entityId_);
  }
  for (Flag flag : {outAttachedFlag, childAnnouncedFlag, flowOutHeldFlag, isActiveFlag}) flagIs(flag, false);
  hasNotificationActiveIs(false);
  notifierIs(nullptr);
}

Ptr<NboAttrLog::Demuxer> StreamAdapter::streamDemuxer() const { return demuxer_; }

void StreamAdapter::vyxFlowOutGone() {
  if (!flowOut_) return;
  flowOut_->streamAdapterIs(nullptr);
  flowOut_ = nullptr;
}

void StreamAdapter::notifierIs(Ptr<PtrInterface const> const& notifier) {
  PtrInterface const* next = notifier.ptr();
  int const references = (isWeak_ ? 0 : 1) + (holdsNotifier_ ? 1 : 0);
  for (int i = 0; next && i < references; ++i) next->vyxReferenceInc();
  PtrInterface const* old = std::exchange(notifier_, next);
  for (int i = 0; old && i < references; ++i) old->vyxReferenceDec();
}

void StreamAdapter::isWeakReferenceIs(bool weak) {
  if (weak == isWeak_) return;
  isWeak_ = weak;
  if (!notifier_) return;
  if (weak)
    notifier_->vyxReferenceDec();
  else
    notifier_->vyxReferenceInc();
}

void StreamAdapter::holdsNotifierIs(bool holds) {
  if (holds == holdsNotifier_) return;
  holdsNotifier_ = holds;
  if (!notifier_) return;
  if (holds)
    notifier_->vyxReferenceInc();
  else
    notifier_->vyxReferenceDec();
}

void StreamAdapter::doEntityIdIs(EntityId const& id, Ptr<NboAttrLog::Demuxer> const& demuxer, bool isPeers) {
  StreamAdapter const* there = demuxer->reactor(id);
  if (there == this) return;
  if (there) throwProtocolException(format("entity id %llx is in use", id.value()));
  Ptr<StreamAdapter> const held(this);
  if (demuxer->reactor(entityId_) == this) {
    demuxer->flowInDel(entityId_);
    demuxer->reactorDel(entityId_);
  }
  entityId_ = id;
  demuxer->reactorIs(held);
  if (!isPeers) return;
  demuxer->peerGave(id);
  announcedAt_ = 0;
  isWritten_ = true;
  flagIs(childAnnouncedFlag, true);
}

void StreamAdapter::vyxOnInit() {
  if (demuxer_ && !entityId_.isAssigned()) doEntityIdIs(demuxer_->newEntityId(), demuxer_, false);
}

// A child's mark in a walk that is coming in is for that walk to take away.
void StreamAdapter::doFixChildFlags(Ptr<StreamAdapter> const& child) {
  if (!hasFlowIn_) child->release();
  if (child->announcedAt_ == kNever) child->announcedAt_ = out_->messages();
  if (child->flag(childAnnouncedFlag)) return;
  child->flagIs(childAnnouncedFlag, true);
  // In a walk the parent's reaction goes on with the child by itself.
  bool const isWalked = syncMode_ == syncModeFull || flag(handlingScheduledFlowOutFlag);
  if (!isWalked) child->doThis();
}

void StreamAdapter::doThis() {
  if (!demuxer_ || isWritten_) return;
  isWritten_ = true;
  if (syncMode_ == syncModeFull) sendSyncMode(syncModeFull);
  demuxer_->writeAll(*this);
}

void StreamAdapter::release() {
  if (!flag(flowOutHeldFlag)) return;
  flagIs(flowOutHeldFlag, false);
  if (!demuxer_) return;
  if (auto const changes = std::move(changedOnHold_))
    for (auto const owe : *changes) owe(*this);
  demuxer_->waitingIsOver();
}

void StreamAdapter::vyxChangedOnHold(void (*owe)(StreamAdapter&)) {
  if (!changedOnHold_) changedOnHold_ = std::make_unique<std::vector<void (*)(StreamAdapter&)>>();
  if (std::find(changedOnHold_->begin(), changedOnHold_->end(), owe) == changedOnHold_->end())
    changedOnHold_->push_back(owe);
}

void StreamAdapter::vyxReveal() {
  if (!flag(flowOutOffFlag) || !demuxer_) return;
  flagIs(flowOutOffFlag, false);
  doEntityIdIs(demuxer_->newEntityId(), demuxer_, false);
}

bool StreamAdapter::isKnownToPeer() const { return !demuxer_ || demuxer_->hasPeerHeard(announcedAt_); }

bool StreamAdapter::hasUnheardMembers() const {
  if (!demuxer_) return false;
  bool const isWalkOpen =
      demuxer_->side() == NboAttrLog::Demuxer::accepting && !demuxer_->hasPeerHeard(walkedAt_);
  return isWalkOpen || changedOnHold_ || !demuxer_->hasPeerHeard(memberWrittenAt_);
}

NboAttrLog::In* StreamAdapter::vyxIn() const {
  return out_ ? static_cast<NboAttrLog::In*>(out_->in()) : nullptr;
}

void StreamAdapter::adoptChild(Entity& child) {
  Vyx_BitSet flags;
  flags.masked(vyx_bitSet(), Vyx_BitSet::notificationBitMask());
  Ptr<StreamAdapter> const adapter = child.vyxNboAttrLogSaIs(flags, 1, out_, channelEntry_.ptr());
  NboAttrLog::In& in = *vyxIn();
  Ptr<NboAttrLog::Demuxer> const demuxer = demuxFor(Ptr<NboAttrLog::In>(&in));
  std::size_t const position = in.position();
  adapter->doEntityIdIs(in.nextEntityId(), demuxer, true);
  if (!entityId_.isAssigned()) in.overwrite(position, entityId_);
  adapter->release();
}

bool StreamAdapter::checkEphemeralEntityDeletion(Entity* child, EntityId const& id, bool isKeyed) {
  Ptr<StreamAdapter> const there = child->vyxNboAttrLogSa(Ptr<NboAttrLog::Out const>(out_));
  if (there && there->entityId().isAssigned() && !(there->entityId() == id)) return true;
  if (isKeyed) adoptChild(*child);
  return false;
}

void StreamAdapter::vyxEntityGone() {
  if (isOrphan_) vyxWithdraw();
  leaveLog();
}

void StreamAdapter::vyxWithdraw() {
  if (!demuxer_ || !flag(outAttachedFlag) || !out_->connected() || !entityId_.isAssigned()) return;
  NboAttrLog::MsgHeader header;
  header.entityId = entityId_;
  header.attrId = -NboAttrLog::kOrphanAttrId;
  out_->nextHeaderIs(header);
  out_ << Connection::Out::kTransactBegin << Connection::Out::kTransactEnd;
}

void StreamAdapter::vyxTellHeard() {
  if (demuxer_ && !flag(readOnlyProxyFlag)) demuxer_->tellHeard();
}

void StreamAdapter::tellHeardOfChange() {
  owesHeard_ = false;
  vyxTellHeard();
}

void StreamAdapter::sendTransactionMarker(AttributeId aid, AttrTransactionType type, unsigned n) {
  if (type == attrTransactionBegin) vyxTellHeard();
  NboAttrLog::MsgHeader header;
  header.entityId = entityId_;
  header.attrId = aid;
  header.variableLength = 1;
  header.messageClass = NboAttrLog::kTransactionMarker;
  out_->nextHeaderIs(header);
  out_ << Connection::Out::kTransactBegin << static_cast<unsigned>(type) << n
       << Connection::Out::kTransactEnd;
  walkedAt_ = out_->messages();
  if (flowOut_) flowOut_->vyxOpenWalkIs(type == attrTransactionBegin ? aid : 0);
}

void StreamAdapter::sendSyncMode(SyncMode mode) {
  NboAttrLog::MsgHeader header;
  header.entityId = entityId_;
  header.attrId = kSyncModeId;
  header.fixedLength = 4;
  out_->nextHeaderIs(header);
  out_ << Connection::Out::kTransactBegin << static_cast<unsigned>(mode) << Connection::Out::kTransactEnd;
}

bool StreamAdapter::continueFlowOut() const {
  return demuxer_ && out_->hasSufficientBuffer() && demuxer_->mayGoOn();
}

bool StreamAdapter::prepareImmediateTransmission(AttributeId aid, bool noRoom) {
  if (flag(handlingScheduledFlowOutFlag)) return true;
  if (!noRoom && !flowOut_ && !flag(forceFlowOutFlag)) return true;
  if (!demuxer_) return false;
  auto const flowOut = demuxer_->createFlowOut(this, ConnectDesc(), false, INT32_MAX);
  if (flowOut) flowOut->attrIdIs(aid);
  return false;
}

bool StreamAdapter::hasFlowInFor(AttributeId aid) const {
  if (!demuxer_) return false;
  // What this side's own walk writes.
  if (flag(handlingScheduledFlowOutFlag) && flowOut_ && flowOut_->vyxOpenWalk() == aid) return false;
  NboAttrLog::FlowIn const* flowIn = demuxer_->flowIn(entityId_);
  return flowIn && flowIn->aid() == aid;
}

bool StreamAdapter::convertedToWritable(bool) { return false; }
bool StreamAdapter::readOnlyRemoteOk(AttributeId aid) const { return aid == kSyncModeId; }

void StreamAdapter::doThrowReadOnly(Ptr<VyxAttr const> const& attr) const {
  Entity const* entity = vyxNotifierEntity();
  throwReadOnlyException(String8("read-only entity ") + (entity ? entity->fullName() : String8()) +
                         String8(", attribute ") + (attr ? String8(attr->name()) : String8("unknown")));
}

StreamAdapter::SyncMode SyncModeInstance(unsigned number) {
  if (number > StreamAdapter::syncModeFull) throwRangeException("SyncMode");
  return static_cast<StreamAdapter::SyncMode>(number);
}

void leaveLogsOfAdapters(ReactorList const& reactors) {
  for (;;) {
    ReactorList::Link* const head = reactors.head();
    if (!head) return;
    PtrInterface const* const behind = head->vyxRawReactor();
    if (behind == head) return;
    auto* const adapter = dynamic_cast<StreamAdapter*>(const_cast<PtrInterface*>(behind));
    if (!adapter) return;
    Ptr<StreamAdapter> const held(adapter);
    held->doRemountSelf(nullptr);
    if (reactors.head() == head) return; // It doesn't want to go.
  }
}

void Entity::VyxNboAttrLogSa::onNotificationException(AttributeId aid) {
  try {
    throw;
  } catch (ReadOnlyException const&) {
    throw;
  } catch (std::exception const& error) {
    NboAttrLog::Demuxer* const demuxer = vyxDemuxer();
    Entity const* const entity = vyxNotifierEntity();
    if (!demuxer || !entity) return;
    demuxer->failureIs(entity->attributeString(aid) + String8(" of ") + entity->fullName() + String8(": ") +
                       String8(error.what()));
  }
}

void Entity::VyxNboAttrLogSa::onZeroReferences() {}

void Entity::VyxNboAttrLogSa::vyxApply(AttributeId aid, IncomingMessage const& message) {
  if (aid == kSyncModeId) return applySyncMode(message.in);
  Entity const* entity = vyxNotifierEntity();
  throwProtocolException(
      format("attribute %d is unknown to %s", aid,
             entity ? entity->fwkType()->fullTypeName().charPtr() : "an adapter at its end"));
}

// The adapters of the same entity on all logs follow, this one among them, and write nothing meanwhile.
void Entity::VyxNboAttrLogSa::applySyncMode(NboAttrLog::In& in) {
  SyncMode const mode = SyncModeInstance(in.nextU32());
  in.expectEnd();
  for (auto at = globalNboAttrLogDemuxerManager()->nboDemuxerIterator(); at; ++at) {
    Ptr<StreamAdapter> const one(at->reactor(entityId()));
    if (!one || one->vyxNotifierEntity() != vyxNotifierEntity() || !entityId().isAssigned()) continue;
    FlagAnchor const relay(*one, syncRelayFlag, true);
    one->syncModeIs(mode);
  }
  if (auto* entry = dynamic_cast<MsgChannel::Constrainer::VyxEntry*>(messageChannelEntry()))
    entry->modeIs(MsgChannel::modeSynced);
  if (mode != syncModeLive) return;
  Entity* const entity = vyxNotifierEntity();
  Ptr<Dir> const dir = entity ? dynamicPtrCast<Dir>(entity->parent()) : nullptr;
  if (!dir) return;
  flagIs(isActiveFlag, false);
  if (Dir::Entry* const entry = dir->entryOf(*entity)) entry->stateIs(Dir::complete);
}

// A reference is written only once the other side knows the entity. One that hangs below an entity of this
// log will be announced there; any other is announced by itself, and goes when it ends here.
EntityId Entity::entityId(Ptr<NboAttrLog::Out> const& out, bool, bool announces, bool asOrphan) const {
  auto* const self = const_cast<Entity*>(this);
  if (Ptr<VyxNboAttrLogSa> const there = self->vyxNboAttrLogSa(Ptr<NboAttrLog::Out const>(out));
      there && there->entityId().isAssigned() && (there->flag(StreamAdapter::childAnnouncedFlag)))
    return there->entityId();
  for (Entity* above = parent_; above; above = above->parent_)
    if (above->vyxNboAttrLogSa(Ptr<NboAttrLog::Out const>(out))) throwEntityIdUnavailable(fullName());
  if (!announces || !asOrphan) return {};
  Vyx_BitSet flags;
  for (auto flag :
       {StreamAdapter::outAttachedFlag, StreamAdapter::directFlowOutFlag, StreamAdapter::weakAdapterFlag})
    flags.bitIs(flag, true);
  Ptr<VyxNboAttrLogSa> const fresh = self->vyxNboAttrLogSaIs(flags, 0, out, nullptr);
  if (!fresh) return {};
  fresh->vyxOnInit();
  fresh->vyxOrphanIs(true);
  fresh->flagIs(StreamAdapter::childAnnouncedFlag, true);
  fresh->doSerializeOrphan();
  return fresh->entityId();
}

} // namespace Vyx
