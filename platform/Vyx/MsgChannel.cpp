#include "Vyx/MsgChannel.h"

namespace Vyx {

Ptr<MsgChannel::Constrainer> MsgChannel::constrainer_;

MsgChannel::DeserializingEidAnchor::DeserializingEidAnchor(EntityId const& eid, Entity* parent) {
  if (!constrainer_) return;
  eid_ = constrainer_->deserializingEid();
  parent_ = constrainer_->deserializingInParent();
  constrainer_->deserializingEidIs(eid);
  constrainer_->deserializingInParentIs(parent);
}

MsgChannel::DeserializingEidAnchor::~DeserializingEidAnchor() {
  if (!constrainer_) return;
  constrainer_->deserializingEidIs(eid_);
  constrainer_->deserializingInParentIs(parent_);
}

} // namespace Vyx
