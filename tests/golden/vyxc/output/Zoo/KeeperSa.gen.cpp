// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/KeeperSa.h"
#include "Zoo/Animal.h"

template class replication::StreamAdapterOf<Zoo::Keeper>;

namespace Zoo {

class Keeper::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Keeper> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Keeper>>(); }
  void onTask(unsigned int key) override { vyxTell<VyxAttrTask>(key); }
  void onFavourite() override { vyxTell<VyxAttrFavourite>(); }
};

Vyx::Entity::VyxAdapter Keeper::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Keeper*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Keeper::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Keeper::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Keeper::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                  Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Keeper::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Keeper::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Keeper> const& entity,
                                         unsigned int options, Log const& out,
                                         Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Keeper::Notifiee> Keeper::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Keeper> const& entity,
                                                                  StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Keeper::VyxNboAttrLogSa::onIsNondestructing() {
  replication::react<replication::IsNondestructing<Keeper>>(*this);
}
void Keeper::VyxNboAttrLogSa::onTask(unsigned int key) { replication::react<VyxAttrTask>(*this, key); }
void Keeper::VyxNboAttrLogSa::vyxHandleTaskSerializeSing(unsigned int key, Vyx::String8 value,
                                                         bool keyMissing) {
  replication::memberChanged<VyxAttrTask>(*this, key, value, keyMissing);
}
bool Keeper::VyxNboAttrLogSa::vyxHandleTaskSerializeColl() {
  return replication::walkCollection<VyxAttrTask>(*this);
}
void Keeper::VyxNboAttrLogSa::onFavourite() { replication::react<VyxAttrFavourite>(*this); }

} // namespace Zoo
