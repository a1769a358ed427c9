// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Keeper.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Keeper to an attribute log.
class Keeper::VyxNboAttrLogSa : public replication::StreamAdapterOf<Keeper> {
public:
  using VyxReplicated =
      frame::AttributeList<replication::IsNondestructing<Keeper>, VyxAttrTask, VyxAttrFavourite>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet0 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsIsNondestructingDirtyIs(bool dirty) { dirtyIs<replication::IsNondestructing<Keeper>>(dirty); }
    void vyxIsTaskDirtyIs(bool dirty) { dirtyIs<VyxAttrTask>(dirty); }
    void vyxIsFavouriteDirtyIs(bool dirty) { dirtyIs<VyxAttrFavourite>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Vyx::Entity::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet0> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet0* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Keeper> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Keeper::Notifiee> vyxNewAdapter(Vyx::Ptr<Keeper> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  virtual void onIsNondestructing();

  // task, id 259
  virtual void onTask(unsigned int key);
  void vyxHandleTaskSerializeSing(unsigned int key, Vyx::String8 value, bool keyMissing);
  bool vyxHandleTaskSerializeColl();

  // favourite, id 260
  virtual void onFavourite();
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Keeper>;
