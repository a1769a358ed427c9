// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/CageSa.h"
#include "Zoo/Animal.h"
#include "Zoo/AnimalSa.h"
#include "Zoo/Bird.h"

template class replication::StreamAdapterOf<Zoo::Cage>;

namespace Zoo {

class Cage::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Cage> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Cage>>(); }
  void onAnimal(Vyx::Name key) override { vyxTell<VyxAttrAnimal>(key); }
  void onLoudest() override { vyxTell<VyxAttrLoudest>(); }
  void onGuest(Kest::UniqueId const& key) override { vyxTell<VyxAttrGuest>(key); }
  void onOpening(unsigned char key) override { vyxTell<VyxAttrOpening>(key); }
  void onFood(Vyx::Name key) override { vyxTell<VyxAttrFood>(key); }
};

Vyx::Entity::VyxAdapter Cage::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Cage*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Cage::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Cage::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Cage::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Cage::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Cage::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Cage> const& entity, unsigned int options,
                                       Log const& out, Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Cage::Notifiee> Cage::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Cage> const& entity,
                                                              StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Cage::VyxNboAttrLogSa::onIsNondestructing() {
  replication::react<replication::IsNondestructing<Cage>>(*this);
}
void Cage::VyxNboAttrLogSa::onAnimal(Vyx::Name key) { replication::react<VyxAttrAnimal>(*this, key); }
void Cage::VyxNboAttrLogSa::vyxHandleAnimalSerializeSing(Vyx::Name key, Vyx::Ptr<Animal> const& child) {
  replication::childChanged<VyxAttrAnimal>(*this, child, key);
}
bool Cage::VyxNboAttrLogSa::vyxHandleAnimalSerializeColl() {
  return replication::walkCollection<VyxAttrAnimal>(*this);
}
Vyx::Ptr<Animal::VyxNboAttrLogSa> Cage::VyxNboAttrLogSa::animalNboAttrLogAdapter(
    Vyx::Ptr<Animal const> const&) {
  return {};
}
Vyx::Ptr<Animal::VyxNboAttrLogSa> Cage::VyxNboAttrLogSa::animalNboAttrLogAdapter(
    Vyx::Ptr<Animal const> const&) const {
  return {};
}
Vyx::Ptr<Animal::VyxNboAttrLogSa> Cage::VyxNboAttrLogSa::animalNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Animal> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrAnimal>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Animal::VyxNboAttrLogSa> Cage::VyxNboAttrLogSa::animalNboAttrLogAdapterDel(
    Vyx::Ptr<Animal> const& child) {
  return replication::childAdapterDel(*this, child);
}
void Cage::VyxNboAttrLogSa::onLoudest() { replication::react<VyxAttrLoudest>(*this); }
void Cage::VyxNboAttrLogSa::onGuest(Kest::UniqueId const& key) {
  replication::react<VyxAttrGuest>(*this, key);
}
void Cage::VyxNboAttrLogSa::vyxHandleGuestSerializeSing(Kest::UniqueId const& key,
                                                        Vyx::Ptr<Bird> const& value, bool keyMissing) {
  replication::memberChanged<VyxAttrGuest>(*this, key, value, keyMissing);
}
bool Cage::VyxNboAttrLogSa::vyxHandleGuestSerializeColl() {
  return replication::walkCollection<VyxAttrGuest>(*this);
}
void Cage::VyxNboAttrLogSa::onOpening(unsigned char key) { replication::react<VyxAttrOpening>(*this, key); }
void Cage::VyxNboAttrLogSa::vyxHandleOpeningSerializeSing(unsigned char key, unsigned short value,
                                                          bool keyMissing) {
  replication::memberChanged<VyxAttrOpening>(*this, key, value, keyMissing);
}
bool Cage::VyxNboAttrLogSa::vyxHandleOpeningSerializeColl() {
  return replication::walkCollection<VyxAttrOpening>(*this);
}
void Cage::VyxNboAttrLogSa::onFood(Vyx::Name key) { replication::react<VyxAttrFood>(*this, key); }
void Cage::VyxNboAttrLogSa::vyxHandleFoodSerializeSing(Vyx::Name key, Weight value, bool keyMissing) {
  replication::memberChanged<VyxAttrFood>(*this, key, value, keyMissing);
}
bool Cage::VyxNboAttrLogSa::vyxHandleFoodSerializeColl() {
  return replication::walkCollection<VyxAttrFood>(*this);
}

} // namespace Zoo
