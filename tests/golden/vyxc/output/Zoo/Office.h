// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Kest/UniqueId.h"
#include "Vyx/Entity.h"
#include "Zoo/Cage.h"
#include "Zoo/Diet.h"
#include "Zoo/Keeper.h"
#include "Zoo/Kitchen.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

class Office : public Vyx::Entity {
public:
  using VyxBase = Vyx::Entity;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  explicit Office(Vyx::Name name);
  static constexpr std::array<char const*, 1> kVyxParameterNames{"name"};
  static constexpr std::array<char const*, 1> kVyxParameterTypes{"Vyx::Name"};
  using VyxParameterTuple = std::tuple<Vyx::Name>;
  static auto vyxParameters(Office const& of) { return VyxParameterTuple(of.name()); }

  static Vyx::VyxType const* _fwkType();
  Vyx::VyxType const* fwkType() const override { return _fwkType(); }
  Vyx::String8 attributeString(Vyx::AttributeId id) const override;
  VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) const override;
  bool vyxHasAttrLogInterface() const override { return true; }
  VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) override;
  VyxAdapter vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const override;
  VyxAdapter vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                               Vyx::PtrInterface* channelEntry) override;
  VyxAdapter vyxNboAttrLogSaDel(VyxConstLog const& out) override;
  void isNondestructingIs(bool value) override { frame::isNondestructingIs(*this, value); }
  void zeroReferencesIs(bool) override { frame::zeroReferencesIs(*this); }
  Vyx::ListRaw<NotifieeConst>& vyxReactors() const { return reactors_; }

  // keeper, id 258
  using VyxKeeperMap = Vyx::HashMap<Keeper, Kest::UniqueId>;
  struct VyxAttrKeeper : frame::ChildCollection<Office, Kest::UniqueId, Keeper, 258> {
    static constexpr char const* name = "keeper";
    static auto& field(auto& of) { return of.keeper_; }
    static void tell(auto& reactor, Kest::UniqueId const& key) { reactor.onKeeper(key); }
    static constexpr char const* keyName = "id";
    static constexpr bool hashed = true;
    static auto like(auto& of, Keeper const& member) { return of.keeperIs(member.id()); }
    static constexpr std::size_t keyPlace = 0;
    static auto instantiate(auto& of, auto const&... values) { return of.keeperIs(values...); }
  };
  using KeeperIteratorConst = frame::IteratorConst<VyxKeeperMap>;
  using KeeperIterator = frame::Iterator<Office, VyxKeeperMap>;
  using VyxKeeperIterator = KeeperIterator;
  Vyx::Ptr<Keeper> keeper(Kest::UniqueId const& key) const { return keeper_.find(key); }
  std::uint32_t keepers() const { return keeper_.count(); }
  Vyx::Ptr<Keeper> newKeeper(Kest::UniqueId const& id) { return frame::newMember<VyxAttrKeeper>(*this, id); }
  Vyx::Ptr<Keeper> keeperIs(Kest::UniqueId const& id) {
    return frame::memberIs<VyxAttrKeeper>(*this, id, id);
  }
  Vyx::Ptr<Keeper> keeperDel(Kest::UniqueId const& key) {
    return frame::memberDel<VyxAttrKeeper>(*this, key);
  }
  Vyx::Ptr<Keeper> keeperDel(KeeperIterator& at) { return frame::memberDelAt<VyxAttrKeeper>(*this, at); }
  void keeperDelAll() { frame::memberDelAll<KeeperIterator, VyxAttrKeeper>(*this); }
  void keeperNotify(Kest::UniqueId const& key) { frame::notify<VyxAttrKeeper>(*this, key); }
  KeeperIteratorConst keeperIteratorConst() const { return KeeperIteratorConst(keeper_); }
  KeeperIteratorConst keeperIteratorConst(Kest::UniqueId const& key) const { return {keeper_, key}; }
  KeeperIterator keeperIterator() { return {this, keeper_}; }
  KeeperIterator keeperIterator(Kest::UniqueId const& key) { return {this, keeper_, key}; }

  // cage, id 259
  using VyxCageMap = Vyx::RbTreeMap<Cage, Vyx::Name>;
  struct VyxAttrCage : frame::ChildCollection<Office, Vyx::Name, Cage, 259> {
    static constexpr char const* name = "cage";
    static auto& field(auto& of) { return of.cage_; }
    static void tell(auto& reactor, Vyx::Name key) { reactor.onCage(key); }
    static constexpr char const* keyName = "name";
    static constexpr bool hashed = false;
    static auto like(auto& of, Cage const& member) { return of.cageIs(member.name()); }
    static constexpr std::size_t keyPlace = 0;
    static auto instantiate(auto& of, auto const&... values) { return of.cageIs(values...); }
  };
  using CageIteratorConst = frame::IteratorConst<VyxCageMap>;
  using CageIterator = frame::Iterator<Office, VyxCageMap>;
  using VyxCageIterator = CageIterator;
  Vyx::Ptr<Cage> cage(Vyx::Name key) const { return cage_.find(key); }
  std::uint32_t cages() const { return cage_.count(); }
  Vyx::Ptr<Cage> newCage(Vyx::Name name) { return frame::newMember<VyxAttrCage>(*this, name); }
  Vyx::Ptr<Cage> cageIs(Vyx::Name name) { return frame::memberIs<VyxAttrCage>(*this, name, name); }
  Vyx::Ptr<Cage> cageDel(Vyx::Name key) { return frame::memberDel<VyxAttrCage>(*this, key); }
  Vyx::Ptr<Cage> cageDel(CageIterator& at) { return frame::memberDelAt<VyxAttrCage>(*this, at); }
  void cageDelAll() { frame::memberDelAll<CageIterator, VyxAttrCage>(*this); }
  void cageNotify(Vyx::Name key) { frame::notify<VyxAttrCage>(*this, key); }
  CageIteratorConst cageIteratorConst() const { return CageIteratorConst(cage_); }
  CageIteratorConst cageIteratorConst(Vyx::Name key) const { return {cage_, key}; }
  CageIterator cageIterator() { return {this, cage_}; }
  CageIterator cageIterator(Vyx::Name key) { return {this, cage_, key}; }

  // kitchen, id 260
  using VyxKitchenMap = Vyx::HashMap<Kitchen, Diet>;
  struct VyxAttrKitchen : frame::ChildCollection<Office, Diet, Kitchen, 260> {
    static constexpr char const* name = "kitchen";
    static auto& field(auto& of) { return of.kitchen_; }
    static void tell(auto& reactor, Diet key) { reactor.onKitchen(key); }
    static constexpr char const* keyName = "diet";
    static constexpr bool hashed = false;
    static constexpr std::size_t namedBy = 1;
    static auto like(auto& of, Kitchen const& member) { return of.kitchenIs(member.floor(), member.diet()); }
    static constexpr std::size_t keyPlace = 1;
    static auto instantiate(auto& of, auto const&... values) { return of.kitchenIs(values...); }
  };
  using KitchenIteratorConst = frame::IteratorConst<VyxKitchenMap>;
  using KitchenIterator = frame::Iterator<Office, VyxKitchenMap>;
  using VyxKitchenIterator = KitchenIterator;
  Vyx::Ptr<Kitchen> kitchen(Diet key) const { return kitchen_.find(key); }
  std::uint32_t kitchens() const { return kitchen_.count(); }
  Vyx::Ptr<Kitchen> newKitchen(unsigned char floor, Diet diet) {
    return frame::newMember<VyxAttrKitchen>(*this, floor, diet);
  }
  Vyx::Ptr<Kitchen> kitchenIs(unsigned char floor, Diet diet) {
    return frame::memberIs<VyxAttrKitchen>(*this, diet, floor, diet);
  }
  Vyx::Ptr<Kitchen> kitchenDel(Diet key) { return frame::memberDel<VyxAttrKitchen>(*this, key); }
  Vyx::Ptr<Kitchen> kitchenDel(KitchenIterator& at) { return frame::memberDelAt<VyxAttrKitchen>(*this, at); }
  void kitchenDelAll() { frame::memberDelAll<KitchenIterator, VyxAttrKitchen>(*this); }
  void kitchenNotify(Diet key) { frame::notify<VyxAttrKitchen>(*this, key); }
  KitchenIteratorConst kitchenIteratorConst() const { return KitchenIteratorConst(kitchen_); }
  KitchenIteratorConst kitchenIteratorConst(Diet key) const { return {kitchen_, key}; }
  KitchenIterator kitchenIterator() { return {this, kitchen_}; }
  KitchenIterator kitchenIterator(Diet key) { return {this, kitchen_, key}; }

  // aviary, id 261
  struct VyxAttrAviary : frame::Child<Office, Cage, 261> {
    static constexpr char const* name = "aviary";
    static auto& field(auto& of) { return of.aviary_; }
    static void tell(auto& reactor) { reactor.onAviary(); }
    static auto like(auto& of, Cage const& child) { return of.aviaryIs(child.name()); }
    static auto instantiate(auto& of, auto const&... values) { return of.aviaryIs(values...); }
  };
  Vyx::Ptr<Cage> aviary() const { return aviary_; }
  Vyx::Ptr<Cage> newAviary(Vyx::Name name) { return frame::newChild<VyxAttrAviary>(*this, name); }
  Vyx::Ptr<Cage> aviaryDel() { return frame::childDel<VyxAttrAviary>(*this); }
  Vyx::Ptr<Cage> aviaryIs(Vyx::Name name) { return frame::childIs<VyxAttrAviary>(*this, name); }

  // quarantine, id 262
  struct VyxAttrQuarantine : frame::Child<Office, Cage, 262> {
    static constexpr char const* name = "quarantine";
    static auto& field(auto& of) { return of.quarantine_; }
    static void tell(auto& reactor) { reactor.onQuarantine(); }
    static auto like(auto& of, Cage const& child) { return of.quarantineIs(child.name()); }
    static auto instantiate(auto& of, auto const&... values) { return of.quarantineIs(values...); }
  };
  Vyx::Ptr<Cage> quarantine() const { return quarantine_; }
  Vyx::Ptr<Cage> newQuarantine(Vyx::Name name) { return frame::newChild<VyxAttrQuarantine>(*this, name); }
  virtual Vyx::Ptr<Cage> quarantineDel() { return frame::childDel<VyxAttrQuarantine>(*this); }
  virtual Vyx::Ptr<Cage> quarantineIs(Vyx::Name name) {
    return frame::childIs<VyxAttrQuarantine>(*this, name);
  }

  // close, id 263
  virtual void close(bool sooner) const;
  struct VyxAttrClose : frame::Function<Office, void, 263> {
    static constexpr char const* name = "close";
    static constexpr bool isConst = true;
    using Arguments = std::tuple<bool>;
    static constexpr std::array<char const*, 1> argumentNames{"sooner"};
    static constexpr std::array<char const*, 1> argumentTypes{"bool"};
    static void call(auto& of, auto const&... arguments) { of.close(arguments...); }
  };

  // busiest, id 264
  virtual Vyx::Ptr<Keeper> busiest() const;
  struct VyxAttrBusiest : frame::Function<Office, Vyx::Ptr<Keeper>, 264> {
    static constexpr char const* name = "busiest";
    static constexpr bool isConst = true;
    using Arguments = std::tuple<>;
    static constexpr std::array<char const*, 0> argumentNames{};
    static constexpr std::array<char const*, 0> argumentTypes{};
    static Vyx::Ptr<Keeper> call(auto& of, auto const&... arguments) { return of.busiest(arguments...); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrKeeper, VyxAttrCage, VyxAttrKitchen, VyxAttrAviary,
                                             VyxAttrQuarantine, VyxAttrClose, VyxAttrBusiest>;

private:
  VyxKeeperMap keeper_;
  VyxCageMap cage_;
  VyxKitchenMap kitchen_;
  frame::ChildPtr<Cage> aviary_;
  frame::ChildPtr<Cage> quarantine_;
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

// Hears of changes of a Office; every entry is empty.
class Office::NotifieeConst : public frame::ReactorOn<Office, Vyx::Entity::NotifieeConst> {
public:
  virtual void onIsNondestructing() {}
  virtual void onKeeper(Kest::UniqueId const&) {}
  virtual void onKeepervyxImmediate() {}
  virtual void onKeeper() {}
  virtual void onCage(Vyx::Name) {}
  virtual void onCagevyxImmediate() {}
  virtual void onCage() {}
  virtual void onKitchen(Diet) {}
  virtual void onKitchenvyxImmediate() {}
  virtual void onKitchen() {}
  virtual void onAviary() {}
  virtual void onQuarantine() {}

protected:
  NotifieeConst() = default;
};

class Office::Notifiee : public frame::WritableReactorOn<Office> {
protected:
  Notifiee() = default;
};

} // namespace Zoo
