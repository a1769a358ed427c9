#include "Vyx/NboAttrLog/FlowOut.h"

#include "Vyx/NboAttrLog/Demuxer.h"

#include <memory>

namespace Vyx::NboAttrLog {

namespace {

// Enters, overwrites or, with nothing to keep, removes.
template <class Map, class K, class V> void recordIs(Map& map, K key, V value) {
  if (!value)
    map._memberDel(key);
  else if (auto* there = map.find(key))
    there->valueIs(std::move(value));
  else
    map.newMember(ptrFromNew(new typename Map::Member(key, std::move(value))));
}

} // namespace

FlowOut::FlowOut(Ptr<Out> const&, Ptr<Entity::VyxNboAttrLogSa> const& adapter, ConnectDesc const&,
                 bool isResync, AttributeId firstAid)
    : adapter_(adapter.ptr()), resumeAid_(firstAid == INT32_MAX ? 0 : firstAid), isResync_(isResync) {}

FlowOut::~FlowOut() { valueIterIs(nullptr); }

bool FlowOut::hasDirtyAttributes() const { return false; }

Ptr<StreamAdapter> FlowOut::forwardRefDel(unsigned key) {
  auto const record = forwardRef_._memberDel(key);
  if (!record) return {};
  forwardRefNotify(key);
  return record->value();
}

Ptr<StreamAdapter> FlowOut::forwardRefDel(ForwardRefIterator& at) {
  return at ? forwardRefDel(at.key()) : nullptr;
}

void FlowOut::forwardRefNotify(unsigned) {}

unsigned FlowOut::forwardRefEnq(Ptr<StreamAdapter> adapter) {
  unsigned const key = nextForwardRef_++;
  forwardRefIs(key, std::move(adapter));
  return key;
}

Ptr<StreamAdapter> FlowOut::forwardRefDeq() {
  unsigned lowest = UINT32_MAX;
  for (ForwardRefIterator at(forwardRef_); at; ++at) lowest = std::min(lowest, at.key());
  return forwardRefDel(lowest);
}

void FlowOut::forwardRefIs(unsigned key, Ptr<StreamAdapter> adapter) {
  recordIs(forwardRef_, key, std::move(adapter));
  forwardRefNotify(key);
}

void FlowOut::attrIdIs(AttributeId aid) {
  attrId_ = aid;
  if (!adapter_ || adapter_->flag(StreamAdapter::handlingScheduledFlowOutFlag)) return;
  lowestMarked_ = std::min(lowestMarked_, aid);
  if (bookmark_ && aid == bookmarkAttrId_) markedBehindWalk_ = true;
}

void FlowOut::bookmarkIs(void* key) {
  bookmark_ = key;
  bookmarkAttrId_ = key ? attrId_ : 0;
}

void FlowOut::entityIdStatusIs(EntityIdStatus status) { entityIdStatus_ = status; }
void FlowOut::entityIdSeqnoIs(unsigned number) { entityIdSeqno_ = number; }

void FlowOut::valueIterIs(void* iterator) {
  std::unique_ptr<String8::IteratorConst> const old(static_cast<String8::IteratorConst*>(valueIter_));
  valueIter_ = iterator;
}

void FlowOut::valueIterKeyIs(void* key) { valueIterKey_ = key; }
void FlowOut::outstandingKeysInc(unsigned by) { outstandingKeys_ += by; }
void FlowOut::outstandingKeysIs(unsigned keys) { outstandingKeys_ = keys; }
void FlowOut::vyxDataBitsIs(unsigned char bits) { dataBits_ = bits; }
void FlowOut::indIs(int ind) { ind_ = ind; }
void FlowOut::entityVersionIs(unsigned version) { entityVersion_ = version; }

bool FlowOut::pendingAbortDel(AttributeId aid) {
  auto const record = pendingAbort_._memberDel(aid);
  if (!record) return false;
  pendingAbortNotify(aid);
  return record->value();
}

bool FlowOut::pendingAbortDel(PendingAbortIterator& at) { return at && pendingAbortDel(at.key()); }
void FlowOut::pendingAbortNotify(AttributeId) {}

void FlowOut::pendingAbortIs(AttributeId aid, bool owed) {
  recordIs(pendingAbort_, aid, owed);
  pendingAbortNotify(aid);
}

void FlowOut::streamAdapterIs(Ptr<StreamAdapter> const& adapter) { adapter_ = adapter.ptr(); }

void vyxFlowOutValueEnq(FlowOut& flowOut, String8::IteratorConst const& at) {
  require(!flowOut.valueIter(), "!rsc->valueIter()", "Vyx/NboAttrLogFlow", 51);
  flowOut.valueIterIs(new String8::IteratorConst(at));
}

String8::IteratorConst vyxFlowOutValueDeq(FlowOut& flowOut) {
  String8::IteratorConst const at = *static_cast<String8::IteratorConst*>(flowOut.valueIter());
  flowOut.valueIterIs(nullptr);
  return at;
}

} // namespace Vyx::NboAttrLog
