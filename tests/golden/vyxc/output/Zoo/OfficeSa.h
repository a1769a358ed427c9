// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Office.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Office to an attribute log.
class Office::VyxNboAttrLogSa : public replication::StreamAdapterOf<Office> {
public:
  using VyxReplicated = frame::AttributeList<replication::IsNondestructing<Office>, VyxAttrKeeper,
                                             VyxAttrCage, VyxAttrKitchen, VyxAttrAviary, VyxAttrQuarantine>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet0 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsIsNondestructingDirtyIs(bool dirty) { dirtyIs<replication::IsNondestructing<Office>>(dirty); }
    void vyxIsKeeperDirtyIs(bool dirty) { dirtyIs<VyxAttrKeeper>(dirty); }
    void vyxIsCageDirtyIs(bool dirty) { dirtyIs<VyxAttrCage>(dirty); }
    void vyxIsKitchenDirtyIs(bool dirty) { dirtyIs<VyxAttrKitchen>(dirty); }
    void vyxIsAviaryDirtyIs(bool dirty) { dirtyIs<VyxAttrAviary>(dirty); }
    void vyxIsQuarantineDirtyIs(bool dirty) { dirtyIs<VyxAttrQuarantine>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Vyx::Entity::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet0> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet0* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Office> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Office::Notifiee> vyxNewAdapter(Vyx::Ptr<Office> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  virtual void onIsNondestructing();

  // keeper, id 258
  virtual void onKeeper(Kest::UniqueId const& key);
  void vyxHandleKeeperSerializeSing(Kest::UniqueId const& key, Vyx::Ptr<Keeper> const& child);
  bool vyxHandleKeeperSerializeColl();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Keeper::VyxNboAttrLogSa> keeperNboAttrLogAdapter(Vyx::Ptr<Keeper const> const&);
  Vyx::Ptr<Keeper::VyxNboAttrLogSa> keeperNboAttrLogAdapter(Vyx::Ptr<Keeper const> const&) const;
  Vyx::Ptr<Keeper::VyxNboAttrLogSa> keeperNboAttrLogAdapterIs(Vyx_BitSet flags, Vyx::Ptr<Keeper> const& child,
                                                              unsigned int options, Log const& out,
                                                              Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Keeper::VyxNboAttrLogSa> keeperNboAttrLogAdapterDel(Vyx::Ptr<Keeper> const& child);

  // cage, id 259
  virtual void onCage(Vyx::Name key);
  void vyxHandleCageSerializeSing(Vyx::Name key, Vyx::Ptr<Cage> const& child);
  bool vyxHandleCageSerializeColl();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Cage::VyxNboAttrLogSa> cageNboAttrLogAdapter(Vyx::Ptr<Cage const> const&);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> cageNboAttrLogAdapter(Vyx::Ptr<Cage const> const&) const;
  Vyx::Ptr<Cage::VyxNboAttrLogSa> cageNboAttrLogAdapterIs(Vyx_BitSet flags, Vyx::Ptr<Cage> const& child,
                                                          unsigned int options, Log const& out,
                                                          Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> cageNboAttrLogAdapterDel(Vyx::Ptr<Cage> const& child);

  // kitchen, id 260
  virtual void onKitchen(Diet key);
  void vyxHandleKitchenSerializeSing(Diet key, Vyx::Ptr<Kitchen> const& child);
  bool vyxHandleKitchenSerializeColl();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Kitchen::VyxNboAttrLogSa> kitchenNboAttrLogAdapter(Vyx::Ptr<Kitchen const> const&);
  Vyx::Ptr<Kitchen::VyxNboAttrLogSa> kitchenNboAttrLogAdapter(Vyx::Ptr<Kitchen const> const&) const;
  Vyx::Ptr<Kitchen::VyxNboAttrLogSa> kitchenNboAttrLogAdapterIs(Vyx_BitSet flags,
                                                                Vyx::Ptr<Kitchen> const& child,
                                                                unsigned int options, Log const& out,
                                                                Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Kitchen::VyxNboAttrLogSa> kitchenNboAttrLogAdapterDel(Vyx::Ptr<Kitchen> const& child);

  // aviary, id 261
  virtual void onAviary();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Cage::VyxNboAttrLogSa> aviaryNboAttrLogAdapter(Vyx::Ptr<Cage const> const&);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> aviaryNboAttrLogAdapter(Vyx::Ptr<Cage const> const&) const;
  Vyx::Ptr<Cage::VyxNboAttrLogSa> aviaryNboAttrLogAdapterIs(Vyx_BitSet flags, Vyx::Ptr<Cage> const& child,
                                                            unsigned int options, Log const& out,
                                                            Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> aviaryNboAttrLogAdapterDel(Vyx::Ptr<Cage> const& child);

  // quarantine, id 262
  virtual void onQuarantine();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Cage::VyxNboAttrLogSa> quarantineNboAttrLogAdapter(Vyx::Ptr<Cage const> const&);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> quarantineNboAttrLogAdapter(Vyx::Ptr<Cage const> const&) const;
  Vyx::Ptr<Cage::VyxNboAttrLogSa> quarantineNboAttrLogAdapterIs(Vyx_BitSet flags, Vyx::Ptr<Cage> const& child,
                                                                unsigned int options, Log const& out,
                                                                Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Cage::VyxNboAttrLogSa> quarantineNboAttrLogAdapterDel(Vyx::Ptr<Cage> const& child);
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Office>;
