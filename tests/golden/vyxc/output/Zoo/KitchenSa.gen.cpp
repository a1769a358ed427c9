// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/KitchenSa.h"

template class replication::StreamAdapterOf<Zoo::Kitchen>;

namespace Zoo {

class Kitchen::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Kitchen> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Kitchen>>(); }
  void onVersion() override { vyxTell<VyxAttrVersion>(); }
};

Vyx::Entity::VyxAdapter Kitchen::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Kitchen*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Kitchen::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Kitchen::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Kitchen::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                   Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Kitchen::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Kitchen::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Kitchen> const& entity,
                                          unsigned int options, Log const& out,
                                          Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Kitchen::Notifiee> Kitchen::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Kitchen> const& entity,
                                                                    StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Kitchen::VyxNboAttrLogSa::onIsNondestructing() {
  replication::react<replication::IsNondestructing<Kitchen>>(*this);
}
void Kitchen::VyxNboAttrLogSa::onVersion() { replication::react<VyxAttrVersion>(*this); }

} // namespace Zoo
