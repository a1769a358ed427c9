// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/OfficeSa.h"
#include "Zoo/Cage.h"
#include "Zoo/CageSa.h"
#include "Zoo/Keeper.h"
#include "Zoo/KeeperSa.h"
#include "Zoo/Kitchen.h"
#include "Zoo/KitchenSa.h"

template class replication::StreamAdapterOf<Zoo::Office>;

namespace Zoo {

class Office::VyxNboAttrLogSa::VyxNboAttrLogSaAdapter_ final : public replication::AdapterOf<Office> {
public:
  using AdapterOf::AdapterOf;
  void onIsNondestructing() override { vyxTell<replication::IsNondestructing<Office>>(); }
  void onKeeper(Kest::UniqueId const& key) override { vyxTell<VyxAttrKeeper>(key); }
  void onCage(Vyx::Name key) override { vyxTell<VyxAttrCage>(key); }
  void onKitchen(Diet key) override { vyxTell<VyxAttrKitchen>(key); }
  void onAviary() override { vyxTell<VyxAttrAviary>(); }
  void onQuarantine() override { vyxTell<VyxAttrQuarantine>(); }
};

Vyx::Entity::VyxAdapter Office::vyxNboAttrLogSa(VyxConstLog const& out) const {
  return const_cast<Office*>(this)->vyxNboAttrLogSa(out);
}
Vyx::Entity::VyxAdapter Office::vyxNboAttrLogSa(VyxConstLog const& out) {
  return replication::findAdapter(*this, out);
}
Vyx::Entity::VyxAdapter Office::vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const {
  return replication::findForMsgChannel(*this, other);
}
Vyx::Entity::VyxAdapter Office::vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                                                  Vyx::PtrInterface* channelEntry) {
  return replication::adapterIs(*this, flags, options, out, channelEntry);
}
Vyx::Entity::VyxAdapter Office::vyxNboAttrLogSaDel(VyxConstLog const& out) {
  return replication::adapterDel(*this, out);
}

Office::VyxNboAttrLogSa::VyxNboAttrLogSa(Vyx_BitSet flags, Vyx::Ptr<Office> const& entity,
                                         unsigned int options, Log const& out,
                                         Vyx::PtrInterface* channelEntry)
    : StreamAdapterOf(flags, entity, options, out, channelEntry) {
  transactAll();
}
Vyx::Ptr<Office::Notifiee> Office::VyxNboAttrLogSa::vyxNewAdapter(Vyx::Ptr<Office> const& entity,
                                                                  StreamAdapterOf* behind) {
  return Vyx::make<VyxNboAttrLogSaAdapter_>(entity, behind);
}
void Office::VyxNboAttrLogSa::onIsNondestructing() {
  replication::react<replication::IsNondestructing<Office>>(*this);
}
void Office::VyxNboAttrLogSa::onKeeper(Kest::UniqueId const& key) {
  replication::react<VyxAttrKeeper>(*this, key);
}
void Office::VyxNboAttrLogSa::vyxHandleKeeperSerializeSing(Kest::UniqueId const& key,
                                                           Vyx::Ptr<Keeper> const& child) {
  replication::childChanged<VyxAttrKeeper>(*this, child, key);
}
bool Office::VyxNboAttrLogSa::vyxHandleKeeperSerializeColl() {
  return replication::walkCollection<VyxAttrKeeper>(*this);
}
Vyx::Ptr<Keeper::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::keeperNboAttrLogAdapter(
    Vyx::Ptr<Keeper const> const&) {
  return {};
}
Vyx::Ptr<Keeper::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::keeperNboAttrLogAdapter(
    Vyx::Ptr<Keeper const> const&) const {
  return {};
}
Vyx::Ptr<Keeper::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::keeperNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Keeper> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrKeeper>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Keeper::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::keeperNboAttrLogAdapterDel(
    Vyx::Ptr<Keeper> const& child) {
  return replication::childAdapterDel(*this, child);
}
void Office::VyxNboAttrLogSa::onCage(Vyx::Name key) { replication::react<VyxAttrCage>(*this, key); }
void Office::VyxNboAttrLogSa::vyxHandleCageSerializeSing(Vyx::Name key, Vyx::Ptr<Cage> const& child) {
  replication::childChanged<VyxAttrCage>(*this, child, key);
}
bool Office::VyxNboAttrLogSa::vyxHandleCageSerializeColl() {
  return replication::walkCollection<VyxAttrCage>(*this);
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::cageNboAttrLogAdapter(Vyx::Ptr<Cage const> const&) {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::cageNboAttrLogAdapter(
    Vyx::Ptr<Cage const> const&) const {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::cageNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Cage> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrCage>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::cageNboAttrLogAdapterDel(
    Vyx::Ptr<Cage> const& child) {
  return replication::childAdapterDel(*this, child);
}
void Office::VyxNboAttrLogSa::onKitchen(Diet key) { replication::react<VyxAttrKitchen>(*this, key); }
void Office::VyxNboAttrLogSa::vyxHandleKitchenSerializeSing(Diet key, Vyx::Ptr<Kitchen> const& child) {
  replication::childChanged<VyxAttrKitchen>(*this, child, key);
}
bool Office::VyxNboAttrLogSa::vyxHandleKitchenSerializeColl() {
  return replication::walkCollection<VyxAttrKitchen>(*this);
}
Vyx::Ptr<Kitchen::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::kitchenNboAttrLogAdapter(
    Vyx::Ptr<Kitchen const> const&) {
  return {};
}
Vyx::Ptr<Kitchen::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::kitchenNboAttrLogAdapter(
    Vyx::Ptr<Kitchen const> const&) const {
  return {};
}
Vyx::Ptr<Kitchen::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::kitchenNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Kitchen> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrKitchen>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Kitchen::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::kitchenNboAttrLogAdapterDel(
    Vyx::Ptr<Kitchen> const& child) {
  return replication::childAdapterDel(*this, child);
}
void Office::VyxNboAttrLogSa::onAviary() { replication::react<VyxAttrAviary>(*this); }
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::aviaryNboAttrLogAdapter(
    Vyx::Ptr<Cage const> const&) {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::aviaryNboAttrLogAdapter(
    Vyx::Ptr<Cage const> const&) const {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::aviaryNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Cage> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrAviary>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::aviaryNboAttrLogAdapterDel(
    Vyx::Ptr<Cage> const& child) {
  return replication::childAdapterDel(*this, child);
}
void Office::VyxNboAttrLogSa::onQuarantine() { replication::react<VyxAttrQuarantine>(*this); }
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::quarantineNboAttrLogAdapter(
    Vyx::Ptr<Cage const> const&) {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::quarantineNboAttrLogAdapter(
    Vyx::Ptr<Cage const> const&) const {
  return {};
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::quarantineNboAttrLogAdapterIs(
    Vyx_BitSet flags, Vyx::Ptr<Cage> const& child, unsigned int options, Log const& out,
    Vyx::PtrInterface* channelEntry) {
  return replication::childAdapterIs<VyxAttrQuarantine>(*this, flags, child, options, out, channelEntry);
}
Vyx::Ptr<Cage::VyxNboAttrLogSa> Office::VyxNboAttrLogSa::quarantineNboAttrLogAdapterDel(
    Vyx::Ptr<Cage> const& child) {
  return replication::childAdapterDel(*this, child);
}

} // namespace Zoo
