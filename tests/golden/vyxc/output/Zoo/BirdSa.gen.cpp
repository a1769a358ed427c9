// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/BirdSa.h"

template class replication::StreamAdapterOf<Zoo::Bird>;

namespace Zoo {

class Bird::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Bird> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Animal>>(); }
  void onWeight() override { vyxTell<VyxAttrWeight>(); }
  void onHunger() override { vyxTell<VyxAttrHunger>(); }
  void onFlying() override { vyxTell<VyxAttrFlying>(); }
};

Vyx::Entity::VyxAdapter Bird::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Bird*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Bird::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Bird::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Bird::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Bird::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Bird::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Bird> const& entity, unsigned int options,
                                       Log const& out, Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Bird::Notifiee> Bird::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Bird> const& entity,
                                                              StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Bird::VyxNboAttrLogSa::onFlying() { replication::react<VyxAttrFlying>(*this); }

} // namespace Zoo
