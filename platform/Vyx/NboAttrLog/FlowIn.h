// A transaction in progress on one entity: which attribute it is about, and how far a text in pieces has
// come.

#pragma once

#include "Vyx/EntityId.h"
#include "Vyx/HashMap.h"
#include "Vyx/NboAttrLog/TextPiece.h"

namespace Vyx::NboAttrLog {

class FlowIn final : public PtrInterface {
public:
  explicit FlowIn(EntityId id) : id_(id) {}
  ~FlowIn() override { iterIs(nullptr); }

  EntityId const& fwkKey() const { return id_; }

  // The attribute of the open transaction; 0 when none is.
  AttributeId aid() const { return aid_; }
  void aidIs(AttributeId aid) { aid_ = aid; }
  // The end of the transaction has come and what wasn't heard of is being deleted.
  bool handlingTransaction() const { return handlingTransaction_; }
  void handlingTransactionIs(bool handling) { handlingTransaction_ = handling; }

  // The sender of the walk didn't know what stands here, which goes before what the walk says.
  bool keepsOwn() const { return keepsOwn_; }
  void keepsOwnIs(bool keeps) { keepsOwn_ = keeps; }

  // A TextIterator on the heap, owned, or null.
  void* iter() const { return iter_; }
  void iterIs(void* iterator);

  HashLink fwkHmNext_; // Written by the demuxer's table alone.

private:
  EntityId id_;
  AttributeId aid_ = 0;
  bool handlingTransaction_ = false;
  bool keepsOwn_ = false;
  void* iter_ = nullptr;
};

// RETURNS the stored position of that attribute's text, or a new one at the start of an empty text.
TextIterator& vyxFlowInIterator(FlowIn& flowIn, AttributeId aid, bool isKeyed);
// Stores a heap copy and the attribute. REQUIRES: none is stored.
void vyxFlowInIteratorIs(FlowIn& flowIn, AttributeId aid, TextIterator const& at);

} // namespace Vyx::NboAttrLog
