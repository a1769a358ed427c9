// What one adapter owes to its log: which attributes are dirty, and where a walk over them has stopped.
//
// Invariants:
// (1) Changes coalesce here. However often an attribute changes while the log has no room, it costs one bit.
// (2) `bookmark` is a heap copy of the key at which the walk of `bookmarkAttrId` stopped; whoever drops the
//     flow out lets the adapter free it before.

#pragma once

#include "Vyx/Connection.h"
#include "Vyx/HashMap.h"
#include "Vyx/StreamAdapter.h"

#include <algorithm>
#include <utility>

namespace Vyx::NboAttrLog {

// A keyed member of a flow out's small tables.
template <class K, class V> class FlowRecord final : public PtrInterface {
public:
  FlowRecord(K key, V value) : key_(key), value_(std::move(value)) {}
  K const& fwkKey() const { return key_; }
  V const& value() const { return value_; }
  void valueIs(V value) { value_ = std::move(value); }

  HashLink fwkHmNext_; // Written by the table alone.

private:
  K key_;
  V value_;
};

class FlowOut : public PtrInterface {
public:
  // The flow out must stop where it is: what an attribute refers to has no id on this log yet.
  static constexpr unsigned char flowOutSuspendedBit = 16;

  using VyxForwardRef = FlowRecord<unsigned, Ptr<StreamAdapter>>;
  using VyxPendingAbort = FlowRecord<AttributeId, bool>;
  using ForwardRefMap = HashMap<VyxForwardRef, unsigned>;
  using PendingAbortMap = HashMap<VyxPendingAbort, AttributeId>;
  using ForwardRefIterator = ForwardRefMap::Iterator;
  using PendingAbortIterator = PendingAbortMap::Iterator;
  enum EntityIdStatus : unsigned { entityIdUnknown = 0, entityIdGiven = 1 };

  FlowOut(Ptr<Out> const& out, Ptr<Entity::VyxNboAttrLogSa> const& adapter, ConnectDesc const& desc,
          bool isResync, AttributeId firstAid);
  ~FlowOut() override;

  // ORDER: the slots of this table are relied on by every derived class.
  virtual bool hasDirtyAttributes() const;
  virtual Ptr<StreamAdapter> forwardRefDel(unsigned key);
  virtual Ptr<StreamAdapter> forwardRefDel(ForwardRefIterator& at);
  virtual void forwardRefNotify(unsigned key);
  // RETURNS the key under which the adapter waits.
  virtual unsigned forwardRefEnq(Ptr<StreamAdapter> adapter);
  virtual Ptr<StreamAdapter> forwardRefDeq();
  virtual void forwardRefIs(unsigned key, Ptr<StreamAdapter> adapter);
  // The attribute that is being walked, or that was marked last.
  virtual void attrIdIs(AttributeId aid);
  // REQUIRES: the one that was there has been freed or taken.
  virtual void bookmarkIs(void* key);
  virtual void entityIdStatusIs(EntityIdStatus status);
  virtual void entityIdSeqnoIs(unsigned number);
  virtual void valueIterIs(void* iterator);
  virtual void valueIterKeyIs(void* key);
  virtual void outstandingKeysInc(unsigned by);
  virtual void outstandingKeysIs(unsigned keys);
  virtual void vyxDataBitsIs(unsigned char bits);
  virtual void indIs(int ind);
  virtual void entityVersionIs(unsigned version);
  virtual bool pendingAbortDel(AttributeId aid);
  virtual bool pendingAbortDel(PendingAbortIterator& at);
  virtual void pendingAbortNotify(AttributeId aid);
  // From the next run on the other side knows that the walk of that attribute was given up.
  virtual void pendingAbortIs(AttributeId aid, bool owed);
  virtual void streamAdapterIs(Ptr<StreamAdapter> const& adapter);

  AttributeId attrId() const { return attrId_; }
  void* bookmark() const { return bookmark_; }
  AttributeId bookmarkAttrId() const { return bookmarkAttrId_; }
  void* valueIter() const { return valueIter_; }
  void* valueIterKey() const { return valueIterKey_; }
  unsigned outstandingKeys() const { return outstandingKeys_; }
  unsigned char vyxDataBits() const { return dataBits_; }
  bool isSuspended() const { return dataBits_ & flowOutSuspendedBit; }
  int ind() const { return ind_; }
  unsigned entityVersion() const { return entityVersion_; }
  unsigned entityIdSeqno() const { return entityIdSeqno_; }
  EntityIdStatus entityIdStatus() const { return entityIdStatus_; }
  bool isResync() const { return isResync_; }
  PendingAbortMap const& pendingAborts() const { return pendingAbort_; }
  PendingAbortIterator pendingAbortIterator() const { return PendingAbortIterator(pendingAbort_); }
  ForwardRefMap const& forwardRefs() const { return forwardRef_; }
  Ptr<StreamAdapter> streamAdapter() const { return adapter_; }
  // Whether the adapter still owes this, and nothing newer in its stead.
  bool isCurrent() const { return adapter_ && adapter_->vyxFlowOut().ptr() == this; }

  // The demuxer's: where the next run goes on, and whether an attribute before that was marked since.
  AttributeId vyxResumeAid() const { return resumeAid_; }
  void vyxResumeAidIs(AttributeId aid) { resumeAid_ = aid; }
  // RETURNS the lowest attribute marked outside a run since the last call, or INT32_MAX.
  AttributeId vyxTakeLowestMarked() { return std::exchange(lowestMarked_, INT32_MAX); }
  // A run has passed over an attribute that isn't through.
  void vyxRefusedIs(AttributeId aid) { lowestRefused_ = std::min(lowestRefused_, aid); }
  // RETURNS the lowest such attribute since the last call, or INT32_MAX.
  AttributeId vyxTakeLowestRefused() { return std::exchange(lowestRefused_, INT32_MAX); }
  // The attribute whose walk the other side has heard the begin of, but not the end; 0 for none.
  AttributeId vyxOpenWalk() const { return openWalk_; }
  void vyxOpenWalkIs(AttributeId aid) { openWalk_ = aid; }
  // RETURNS whether the collection of the bookmark was marked while its walk stood there: what the walk had
  // passed may have changed, so that it owes another one.
  bool vyxTakeMarkedBehindWalk() { return std::exchange(markedBehindWalk_, false); }

private:
  StreamAdapter* adapter_; // Not counted: it owns this object.
  void* bookmark_ = nullptr;
  void* valueIter_ = nullptr;
  void* valueIterKey_ = nullptr;
  AttributeId attrId_ = 0;
  AttributeId bookmarkAttrId_ = 0;
  AttributeId openWalk_ = 0;
  AttributeId resumeAid_;
  AttributeId lowestMarked_ = INT32_MAX;
  AttributeId lowestRefused_ = INT32_MAX;
  unsigned outstandingKeys_ = 0;
  unsigned entityVersion_ = 0;
  unsigned entityIdSeqno_ = 0;
  unsigned nextForwardRef_ = 1;
  int ind_ = 0;
  EntityIdStatus entityIdStatus_ = entityIdUnknown;
  unsigned char dataBits_ = 0;
  bool isResync_;
  bool markedBehindWalk_ = false;
  ForwardRefMap forwardRef_;
  PendingAbortMap pendingAbort_;
};

// Stores a heap copy of the key. REQUIRES: there is none.
template <class K> void vyxBookmarkEnq(FlowOut& flowOut, K const& key) {
  require(!flowOut.bookmark(), "!rsc->bookmark()", "Vyx/NboAttrLogFlow", 23);
  flowOut.bookmarkIs(new K(key));
}

// Frees the bookmark. REQUIRES: it is one of that type.
template <class K> void vyxBookmarkDel(FlowOut& flowOut) {
  delete static_cast<K*>(flowOut.bookmark());
  flowOut.bookmarkIs(nullptr);
}

// Stores a heap copy of the position in a value that is written in pieces. REQUIRES: there is none.
void vyxFlowOutValueEnq(FlowOut& flowOut, String8::IteratorConst const& at);
// Takes the position back.
String8::IteratorConst vyxFlowOutValueDeq(FlowOut& flowOut);

} // namespace Vyx::NboAttrLog
