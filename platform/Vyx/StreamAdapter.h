// What joins one entity to one attribute log: it hears of the entity's changes and writes them, and applies
// what the log brings. Its flags are guards against re-entry, not locks.
//
// Invariants:
// (1) The adapter holds its notifier, unless it is weak; it never outlives its log's demuxer as a working
//     adapter: that one takes it out of the entity's list when the log ends.
// (2) An id with its lowest bit set was assigned for the log; only then the demuxer finds the adapter by it.
// (3) A flow out is there only while something is owed to the log.

#pragma once

#include "Vyx/Connection.h"
#include "Vyx/Entity.h"
#include "Vyx/EntityId.h"

#include <memory>
#include <vector>

namespace Vyx {

class StreamAdapter : public PtrInterface::NotifieeConst {
public:
  // Bits of vyx_bitSet().
  enum Flag : int {
    readOnlyFlag = 2,                  // A write must first pass convertedToWritable.
    readOnlyProxyFlag = 3,             // So must an incoming one, unless readOnlyRemoteOk.
    isActiveFlag = 4,                  // An incoming message is being applied.
    flowOutHeldFlag = 5,               // Nothing is written; also the mark of a child in a transaction.
    weakAdapterFlag = 6,               // Doesn't keep its entity alive.
    flowOutOffFlag = 8,                // Nothing is written.
    syncRelayFlag = 13,                // A sync mode is being relayed to this adapter.
    directFlowOutFlag = 20,            // Room decides alone whether a change is written at once.
    handlingScheduledFlowOutFlag = 22, // What is owed is being written.
    childAnnouncedFlag = 25,           // The other side knows this child.
    outAttachedFlag = 26,              // Without it nothing is written.
    forceFlowOutFlag = 27,             // Owe even where there is room.
  };

  // The frame of a collection's walk: the other side deletes what it didn't hear of in between.
  enum AttrTransactionType : unsigned {
    attrTransactionBegin = 0,
    attrTransactionAbort = 1,
    attrTransactionEnd = 2,
  };

  enum SyncMode : unsigned {
    syncModeNone = 0,
    syncModeLive = 1, // The other side has everything.
    syncModeFull = 2, // Everything is being sent.
  };

  using Log = Ptr<NboAttrLog::Out>;

  // Passed through to the base's handling of a message.
  struct DeserializationOptions {
    unsigned word = 0;
  };

  // A message that is being read.
  struct IncomingMessage {
    NboAttrLog::In& in;
    bool isApplied; // Else it is only read, and the own value is written instead.
    unsigned n;     // The size of its payload.
    DeserializationOptions options;
    std::size_t bodyOffset = 0; // Where an entity id stands behind values of a newer writer; 0 for at once.
  };

  bool isStreamAdapter() const override { return true; }

  // ORDER: the slots of this table are relied on by every derived class.

  // Writes what is owed, from that attribute on. RETURNS the attribute to resume at, or 0 when all is
  // written.
  virtual AttributeId handleAttrFlowOut(AttributeId startAid);
  // Frees what the walk of the flow out's attribute has saved.
  virtual void freeResyncState(Ptr<NboAttrLog::FlowOut> const& flowOut);
  // Writes the children now.
  virtual void vyxInstantiateSerialize();
  virtual Entity const* vyxNotifierEntity() const;
  virtual Entity* vyxNotifierEntity();
  // Announces an entity that has no parent on this log.
  virtual void doSerializeOrphan();
  // Reads one message and applies it; with `in`, reads it from there and writes the own value instead.
  virtual void handleAttrDeserialization(AttributeId aid, DeserializationOptions options, unsigned n,
                                         Ptr<NboAttrLog::In> const& in);
  virtual void handleAttrTransaction(AttributeId aid, AttrTransactionType type, unsigned n);
  // RETURNS a new flow out of the entity's type; attributes from `firstAid` on are dirty in it.
  virtual Ptr<NboAttrLog::FlowOut> flowOutIs(Ptr<NboAttrLog::Out> const& out, ConnectDesc const& desc,
                                             bool isResync, AttributeId firstAid);
  // Calls the entry of that attribute, positive or negated; an unknown one does nothing.
  virtual void doNotification(AttributeId aid, void* key);
  virtual void syncModeIs(SyncMode mode);
  virtual bool vyxDoZombieReactors(bool zombie);
  // Takes the entity and everything below it off this log and, unless `out` is null, onto that one.
  virtual void doRemountSelf(Ptr<NboAttrLog::Out> const& out);

  ~StreamAdapter() override;

  bool flag(Flag flag) const { return vyx_bitSet().bit(flag); }
  void flagIs(Flag flag, bool on) { vyxBits().bitIs(flag, on); }
  // Replaces the flags that a parent hands on.
  void notificationFlagsAre(Vyx_BitSet flags) { vyxBits().masked(flags, Vyx_BitSet::notificationBitMask()); }
  void vyxMarkedForDeletionIs(bool marked) { PtrInterface::vyxMarkedForDeletionIs(marked); }

  Ptr<NboAttrLog::Out> const& nboAttrLogOut() const { return out_; }
  // Null once the log has ended.
  Ptr<NboAttrLog::Demuxer> streamDemuxer() const;
  NboAttrLog::Demuxer* vyxDemuxer() const { return demuxer_; } // The same, not counted.
  Ptr<NboAttrLog::FlowOut> const& vyxFlowOut() const { return flowOut_; }
  SyncMode syncMode() const { return syncMode_; }
  EntityId entityId() const { return entityId_; }
  EntityId const& fwkKey() const { return entityId_; } // In the demuxer's table.
  // Whether the entity has the same id on every log.
  bool hasUnifiedEntityId() const { return hasUnifiedEntityId_; }
  void hasUnifiedEntityIdIs(bool unified) { hasUnifiedEntityId_ = unified; }
  PtrInterface* messageChannelEntry() const { return channelEntry_.ptr(); }

  void isWeakReferenceIs(bool weak);
  bool isWeakReference() const { return isWeak_; }
  // While set, one more reference on the notifier is kept, also by a weak adapter.
  void holdsNotifierIs(bool holds);

  // Enters the adapter in the demuxer's table under that id; `isPeers` says that the other side gave it.
  // THROWS: ProtocolException when another adapter has the id.
  void doEntityIdIs(EntityId const& id, Ptr<NboAttrLog::Demuxer> const& demuxer, bool isPeers);
  // The last step of announcing a child: from now on the other side knows it, and what it holds is owed.
  void doFixChildFlags(Ptr<StreamAdapter> const& child);
  // Writes everything that the entity holds, as far as there is room; the rest is owed. Only the first time;
  // later on what has changed is owed already.
  void doThis();
  // What a fresh adapter does before it is announced: it gets its id.
  void vyxOnInit();

  // Joins a child that the other side has announced to the id that stands next in the message.
  void adoptChild(Entity& child);
  // RETURNS whether the child has to give way to a new one: the announced id isn't that of this entity.
  // Else a keyed child is joined to the id.
  bool checkEphemeralEntityDeletion(Entity* child, EntityId const& id, bool isKeyed);
  // Tells the other side that the entity is no more, and leaves the log. REQUIRES: a weak adapter.
  void vyxEntityGone();
  // Tells the other side that this id means nothing here any more. If it has made a child from its
  // announcement, that one is the other side's own from now on.
  void vyxWithdraw();

  // Takes the adapter off its hold. What has changed meanwhile is owed.
  void release();
  // A change isn't written since the adapter is on hold; `owe` is called at its end, once.
  void vyxChangedOnHold(void (*owe)(StreamAdapter&));
  // A child that was kept back is about to be announced: it writes from now on, under a new id.
  void vyxReveal();
  // Before what the other side has to judge by what this one knew, if that one may write, too.
  void vyxTellHeard();
  // Whether the other side knew this child when it wrote what is being read.
  bool isKnownToPeer() const;
  // Whether it didn't know a member that this side has written or will write after the hold, or a walk of the
  // accepting side.
  bool hasUnheardMembers() const;
  void vyxMemberWritten(std::uint64_t message) { memberWrittenAt_ = message; }
  // The last message of this side about a value of the entity; 0 for none.
  std::uint64_t vyxWrittenAt() const { return writtenAt_; }
  void vyxWrittenAtIs(std::uint64_t message) { writtenAt_ = message; }
  // The other side has changed the entity. Who settles changes that cross will want to know whether the next
  // message was written behind that.
  void vyxChangedByPeer() { owesHeard_ = true; }
  void vyxBeforeWriting() {
    if (__builtin_expect(owesHeard_, false)) tellHeardOfChange();
  }

  void sendTransactionMarker(AttributeId aid, AttrTransactionType type, unsigned n);
  // Writes the mode, which the other side applies.
  void sendSyncMode(SyncMode mode);

  // The runtime's policy of writing. Whether there is room for the next one of many messages.
  bool continueFlowOut() const;
  // Whether a change may be written although the log isn't in direct mode; else it is owed.
  bool prepareImmediateTransmission(AttributeId aid, bool noRoom);
  bool handlingFlowInFor(AttributeId aid) const { return hasFlowIn_ && hasFlowInFor(aid); }
  // A read-only adapter may become a writable one; ours never do.
  bool convertedToWritable(bool force);
  bool readOnlyRemoteOk(AttributeId aid) const;
  // THROWS: ReadOnlyException that names the entity and the attribute.
  [[noreturn]] void doThrowReadOnly(Ptr<VyxAttr const> const& attr) const;

  void vyxFlowOutGone();
  void vyxOrphanIs(bool orphan) { isOrphan_ = orphan; }
  NboAttrLog::In* vyxIn() const;
  void vyxFlowInIs(bool there) { hasFlowIn_ = there; }
  bool vyxHasFlowIn() const { return hasFlowIn_; }

  Ptr<PtrInterface> fwkHmNext_; // Written by the demuxer's table.

  void notifierIs(Ptr<PtrInterface const> const& notifier) override;
  PtrInterface const* vyxNotifier() const { return notifier_; }
  // The reactor that stands in the entity's list for this adapter; the adapter of a type brings it.
  Entity::NotifieeConst const* vyxListed() const { return listed_; }
  void vyxListedIs(Entity::NotifieeConst const* listed) { listed_ = listed; }

protected:
  StreamAdapter(Vyx_BitSet flags, unsigned options, Ptr<NboAttrLog::Out> const& out,
                PtrInterface* channelEntry);

private:
  friend class NboAttrLog::Demuxer;

  static constexpr std::uint64_t kNever = UINT64_MAX;

  bool hasFlowInFor(AttributeId aid) const;
  void leaveLog();
  void tellHeardOfChange();

  PtrInterface const* notifier_ = nullptr;        // Counted, unless weak.
  Entity::NotifieeConst const* listed_ = nullptr; // Not counted.
  EntityId entityId_;
  SyncMode syncMode_ : 8 = syncModeNone; // In the gap before out_, with the flags.
  bool holdsNotifier_ = false;
  bool isWeak_ = false;
  bool hasUnifiedEntityId_ = false;
  bool hasFlowIn_ = false;
  bool isWritten_ = false; // Everything has been written, or came from the other side, or is owed.
  bool isOrphan_ = false;
  bool owesHeard_ = false;
  std::uint64_t writtenAt_ = 0;
  std::unique_ptr<std::vector<void (*)(StreamAdapter&)>> changedOnHold_; // Null for none.
  std::uint64_t announcedAt_ =
      kNever; // This side's first announcement, by its number; 0 if it was the peer's.
  std::uint64_t memberWrittenAt_ = 0; // The last message about a member outside of a walk.
  std::uint64_t walkedAt_ = 0;        // The last marker of a walk.
  Ptr<NboAttrLog::Out> out_;
  NboAttrLog::Demuxer* demuxer_ = nullptr; // Not counted; it lets go of all adapters before it ends.
  Ptr<NboAttrLog::FlowOut> flowOut_;
  Ptr<PtrInterface> channelEntry_;
};

// THROWS: RangeException "SyncMode" for a number that is none.
StreamAdapter::SyncMode SyncModeInstance(unsigned number);

// Holds isActiveFlag for as long as a message is being applied.
class IsActiveAnchor {
public:
  explicit IsActiveAnchor(StreamAdapter& adapter) : adapter_(&adapter) {
    adapter.flagIs(StreamAdapter::isActiveFlag, true);
  }
  IsActiveAnchor(IsActiveAnchor const&) = delete;
  IsActiveAnchor& operator=(IsActiveAnchor const&) = delete;
  ~IsActiveAnchor() { adapter_->flagIs(StreamAdapter::isActiveFlag, false); }

private:
  Ptr<StreamAdapter> adapter_;
};

// Sets a flag for as long as it lives, and restores what was there.
class FlagAnchor {
public:
  FlagAnchor(StreamAdapter& adapter, StreamAdapter::Flag flag, bool on)
      : adapter_(&adapter), flag_(flag), before_(adapter.flag(flag)) {
    adapter.flagIs(flag, on);
  }
  FlagAnchor(FlagAnchor const&) = delete;
  FlagAnchor& operator=(FlagAnchor const&) = delete;
  ~FlagAnchor() { adapter_->flagIs(flag_, before_); }

private:
  Ptr<StreamAdapter> adapter_;
  StreamAdapter::Flag flag_;
  bool before_;
};

// However a reaction ends, what comes after it is no longer the message's doing.
class ClearIsActiveAnchor {
public:
  explicit ClearIsActiveAnchor(StreamAdapter& adapter) : adapter_(adapter) {}
  ClearIsActiveAnchor(ClearIsActiveAnchor const&) = delete;
  ClearIsActiveAnchor& operator=(ClearIsActiveAnchor const&) = delete;
  ~ClearIsActiveAnchor() { adapter_.flagIs(StreamAdapter::isActiveFlag, false); }

private:
  StreamAdapter& adapter_;
};

// The stream adapter of an entity that has nothing but what every entity has.
class Entity::VyxNboAttrLogSa : public StreamAdapter {
public:
  using FlowOut = NboAttrLog::FlowOut;

  using StreamAdapter::onNotificationException;
  // A read-only failure reaches the caller of the setter. Any other one leaves the attribute owed, and the
  // log ends if it can't be written then either.
  void onNotificationException(AttributeId aid) override;
  void onZeroReferences() override;
  // What no class of the entity's line knows. THROWS: ProtocolException for an unknown attribute.
  void vyxApply(AttributeId aid, IncomingMessage const& message);

protected:
  VyxNboAttrLogSa(Vyx_BitSet flags, unsigned options, Ptr<NboAttrLog::Out> const& out,
                  PtrInterface* channelEntry)
      : StreamAdapter(flags, options, out, channelEntry) {}

private:
  void applySyncMode(NboAttrLog::In& in);
};

} // namespace Vyx
