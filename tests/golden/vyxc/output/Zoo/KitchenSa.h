// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Kitchen.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Kitchen to an attribute log.
class Kitchen::VyxNboAttrLogSa : public replication::StreamAdapterOf<Kitchen> {
public:
  using VyxReplicated = frame::AttributeList<replication::IsNondestructing<Kitchen>, VyxAttrVersion>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet0 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsIsNondestructingDirtyIs(bool dirty) { dirtyIs<replication::IsNondestructing<Kitchen>>(dirty); }
    void vyxIsVersionDirtyIs(bool dirty) { dirtyIs<VyxAttrVersion>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Vyx::Entity::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet0> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet0* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Kitchen> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Kitchen::Notifiee> vyxNewAdapter(Vyx::Ptr<Kitchen> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  virtual void onIsNondestructing();

  // version, id 260
  virtual void onVersion();
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Kitchen>;
