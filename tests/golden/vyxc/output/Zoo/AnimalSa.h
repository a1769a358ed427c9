// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Animal.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Animal to an attribute log.
class Animal::VyxNboAttrLogSa : public replication::StreamAdapterOf<Animal> {
public:
  using VyxReplicated =
      frame::AttributeList<replication::IsNondestructing<Animal>, VyxAttrWeight, VyxAttrHunger>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet0 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsIsNondestructingDirtyIs(bool dirty) { dirtyIs<replication::IsNondestructing<Animal>>(dirty); }
    void vyxIsWeightDirtyIs(bool dirty) { dirtyIs<VyxAttrWeight>(dirty); }
    void vyxIsHungerDirtyIs(bool dirty) { dirtyIs<VyxAttrHunger>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Vyx::Entity::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet0> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet0* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Animal> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Animal::Notifiee> vyxNewAdapter(Vyx::Ptr<Animal> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  virtual void onIsNondestructing();

  // weight, id 259
  virtual void onWeight();

  // hunger, id 260
  virtual void onHunger();
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Animal>;
