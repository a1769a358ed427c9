// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Zoo/Cage.h"
#include "replication/StreamAdapterOf.h"

namespace Zoo {

// Joins a Cage to an attribute log.
class Cage::VyxNboAttrLogSa : public replication::StreamAdapterOf<Cage> {
public:
  using VyxReplicated = frame::AttributeList<replication::IsNondestructing<Cage>, VyxAttrAnimal,
                                             VyxAttrLoudest, VyxAttrGuest, VyxAttrOpening, VyxAttrFood>;
  class VyxNboAttrLogSaAdapter_;

  class VyxDirtyBitSet0 : public replication::DirtyBits<VyxReplicated> {
  public:
    void vyxIsIsNondestructingDirtyIs(bool dirty) { dirtyIs<replication::IsNondestructing<Cage>>(dirty); }
    void vyxIsAnimalDirtyIs(bool dirty) { dirtyIs<VyxAttrAnimal>(dirty); }
    void vyxIsLoudestDirtyIs(bool dirty) { dirtyIs<VyxAttrLoudest>(dirty); }
    void vyxIsGuestDirtyIs(bool dirty) { dirtyIs<VyxAttrGuest>(dirty); }
    void vyxIsOpeningDirtyIs(bool dirty) { dirtyIs<VyxAttrOpening>(dirty); }
    void vyxIsFoodDirtyIs(bool dirty) { dirtyIs<VyxAttrFood>(dirty); }
  };
  class FlowOut : public replication::FlowOutOf<Vyx::Entity::VyxNboAttrLogSa::FlowOut, VyxDirtyBitSet0> {
  public:
    using FlowOutOf::FlowOutOf;
    VyxDirtyBitSet0* vyxDirtyBitSet1() { return dirty(); }
  };

  VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Cage> const& entity, unsigned int options, Log const& out,
                  Vyx::PtrInterface* channelEntry);
  static Vyx::Ptr<Cage::Notifiee> vyxNewAdapter(Vyx::Ptr<Cage> const& entity, StreamAdapterOf* behind);
  Vyx::Ptr<FlowOut> flowOut() const { return replication::flowOutOf(*this); }

  virtual void onIsNondestructing();

  // animal, id 258
  virtual void onAnimal(Vyx::Name key);
  void vyxHandleAnimalSerializeSing(Vyx::Name key, Vyx::Ptr<Animal> const& child);
  bool vyxHandleAnimalSerializeColl();
  // Nobody finds a child's adapter by this: it is asked of the child.
  Vyx::Ptr<Animal::VyxNboAttrLogSa> animalNboAttrLogAdapter(Vyx::Ptr<Animal const> const&);
  Vyx::Ptr<Animal::VyxNboAttrLogSa> animalNboAttrLogAdapter(Vyx::Ptr<Animal const> const&) const;
  Vyx::Ptr<Animal::VyxNboAttrLogSa> animalNboAttrLogAdapterIs(Vyx_BitSet flags, Vyx::Ptr<Animal> const& child,
                                                              unsigned int options, Log const& out,
                                                              Vyx::PtrInterface* channelEntry);
  Vyx::Ptr<Animal::VyxNboAttrLogSa> animalNboAttrLogAdapterDel(Vyx::Ptr<Animal> const& child);

  // loudest, id 259
  virtual void onLoudest();

  // guest, id 260
  virtual void onGuest(Kest::UniqueId const& key);
  void vyxHandleGuestSerializeSing(Kest::UniqueId const& key, Vyx::Ptr<Bird> const& value, bool keyMissing);
  bool vyxHandleGuestSerializeColl();

  // opening, id 261
  virtual void onOpening(unsigned char key);
  void vyxHandleOpeningSerializeSing(unsigned char key, unsigned short value, bool keyMissing);
  bool vyxHandleOpeningSerializeColl();

  // food, id 262
  virtual void onFood(Vyx::Name key);
  void vyxHandleFoodSerializeSing(Vyx::Name key, Weight value, bool keyMissing);
  bool vyxHandleFoodSerializeColl();
};

} // namespace Zoo

extern template class replication::StreamAdapterOf<Zoo::Cage>;
