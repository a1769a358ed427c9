// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/AnimalSa.h"

template class replication::StreamAdapterOf<Zoo::Animal>;

namespace Zoo {

class Animal::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Animal> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Animal>>(); }
  void onWeight() override { vyxTell<VyxAttrWeight>(); }
  void onHunger() override { vyxTell<VyxAttrHunger>(); }
};

Vyx::Entity::VyxAdapter Animal::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Animal*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Animal::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Animal::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Animal::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                  Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Animal::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Animal::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Animal> const& entity,
                                         unsigned int options, Log const& out,
                                         Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Animal::Notifiee> Animal::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Animal> const& entity,
                                                                  StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Animal::VyxNboAttrLogSa::onIsNondestructing() {
  replication::react<replication::IsNondestructing<Animal>>(*this);
}
void Animal::VyxNboAttrLogSa::onWeight() { replication::react<VyxAttrWeight>(*this); }
void Animal::VyxNboAttrLogSa::onHunger() { replication::react<VyxAttrHunger>(*this); }

} // namespace Zoo
