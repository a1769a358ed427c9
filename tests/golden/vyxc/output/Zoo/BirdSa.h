// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Bird.h"
#include "Zoo/AnimalSa.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Bird to an attribute log.
class Bird::VyxNboAttrLogSa : public replication::StreamAdapterOf<Bird> {
public:
  using VyxReplicated = frame::AttributeList<VyxAttrFlying>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet1 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsFlyingDirtyIs(bool dirty) { dirtyIs<VyxAttrFlying>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Animal::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet1> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet1* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Bird> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Bird::Notifiee> vyxNewAdapter(Vyx::Ptr<Bird> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  // flying, id 400
  virtual void onFlying();
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Bird>;
