// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Kest/UniqueId.h"
#include "Vyx/Entity.h"
#include "Zoo/Animal.h"
#include "Zoo/Bird.h"
#include "Zoo/Diet.h"
#include "Zoo/Weight.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

// Animals behind bars.
class Cage : public Vyx::Entity {
public:
  using VyxBase = Vyx::Entity;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  explicit Cage(Vyx::Name name) : Vyx::Entity(name) {}
  ~Cage() override;
  static constexpr std::array<char const*, 1> kVyxParameterNames{"name"};
  static constexpr std::array<char const*, 1> kVyxParameterTypes{"Vyx::Name"};
  using VyxParameterTuple = std::tuple<Vyx::Name>;
  static auto vyxParameters(Cage const& of) { return VyxParameterTuple(of.name()); }

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

  // The key under which a collection of the parent holds this entity.
  Vyx::Name fwkKey() const { return name(); }
  using VyxListedKey = Vyx::Name;

  // animal, id 258
  using VyxAnimalMap = Vyx::HashMap<Animal, Vyx::Name>;
  struct VyxAttrAnimal : frame::ChildCollection<Cage, Vyx::Name, Animal, 258> {
    static constexpr char const* name = "animal";
    static auto& field(auto& of) { return of.animal_; }
    static void tell(auto& reactor, Vyx::Name key) { reactor.onAnimal(key); }
    static constexpr char const* keyName = "name";
    static constexpr bool hashed = false;
    static auto like(auto& of, Animal const& member) { return of.animalIs(member.name(), member.diet()); }
    static constexpr std::size_t keyPlace = 0;
    static auto instantiate(auto& of, auto const&... values) { return of.animalIs(values...); }
  };
  using AnimalIteratorConst = frame::IteratorConst<VyxAnimalMap>;
  using AnimalIterator = frame::Iterator<Cage, VyxAnimalMap>;
  using VyxAnimalIterator = AnimalIterator;
  Vyx::Ptr<Animal> animal(Vyx::Name key) const { return animal_.find(key); }
  std::uint32_t animals() const { return animal_.count(); }
  Vyx::Ptr<Animal> newAnimal(Vyx::Name name, Diet diet) {
    return frame::newMember<VyxAttrAnimal>(*this, name, diet);
  }
  Vyx::Ptr<Animal> animalIs(Vyx::Name name, Diet diet) {
    return frame::memberIs<VyxAttrAnimal>(*this, name, name, diet);
  }
  Vyx::Ptr<Animal> animalDel(Vyx::Name key) { return frame::memberDel<VyxAttrAnimal>(*this, key); }
  Vyx::Ptr<Animal> animalDel(AnimalIterator& at) { return frame::memberDelAt<VyxAttrAnimal>(*this, at); }
  void animalDelAll() { frame::memberDelAll<AnimalIterator, VyxAttrAnimal>(*this); }
  void animalNotify(Vyx::Name key) { frame::notify<VyxAttrAnimal>(*this, key); }
  AnimalIteratorConst animalIteratorConst() const { return AnimalIteratorConst(animal_); }
  AnimalIteratorConst animalIteratorConst(Vyx::Name key) const { return {animal_, key}; }
  AnimalIterator animalIterator() { return {this, animal_}; }
  AnimalIterator animalIterator(Vyx::Name key) { return {this, animal_, key}; }

  // loudest, id 259
  Vyx::Ptr<Animal> const& loudest() const { return loudest_; }
  void loudestIs(Vyx::Ptr<Animal> const& value) { frame::set<VyxAttrLoudest>(*this, value); }
  struct VyxAttrLoudest : frame::OwnReference<Cage, Animal, VyxAttrAnimal, 259> {
    static constexpr char const* name = "loudest";
    static auto& field(auto& of) { return of.loudest_; }
    static void tell(auto& reactor) { reactor.onLoudest(); }
  };

  // guest, id 260
  class VyxGuest final : public frame::HashRecord<Kest::UniqueId, Vyx::Ptr<Bird>> {
    using HashRecord::HashRecord;
  };
  using VyxGuestMap = Vyx::HashMap<VyxGuest, Kest::UniqueId>;
  struct VyxAttrGuest : frame::ReferenceCollection<Cage, Kest::UniqueId, Bird, VyxGuest, 260> {
    static constexpr char const* name = "guest";
    static auto& field(auto& of) { return of.guest_; }
    static void tell(auto& reactor, Kest::UniqueId const& key) { reactor.onGuest(key); }
    static void write(auto& of, Kest::UniqueId const&, Vyx::Ptr<Bird> const& value) { of.guestIs(value); }
  };
  using GuestIteratorConst = frame::IteratorConst<VyxGuestMap>;
  using GuestIterator = frame::Iterator<Cage, VyxGuestMap>;
  using VyxGuestIterator = GuestIterator;
  Vyx::Ptr<Bird> guest(Kest::UniqueId const& key) const { return frame::value<VyxAttrGuest>(*this, key); }
  std::uint32_t guests() const { return guest_.count(); }
  Vyx::Ptr<VyxGuest> newGuest(Kest::UniqueId const& key, Vyx::Ptr<Bird> const& value) {
    return frame::newValue<VyxAttrGuest>(*this, key, value);
  }
  virtual void guestIs(Vyx::Ptr<Bird> const& value) {
    frame::valueIs<VyxAttrGuest>(*this, value->id(), value);
  }
  Vyx::Ptr<Bird> guestDel(Kest::UniqueId const& key) { return frame::valueDel<VyxAttrGuest>(*this, key); }
  Vyx::Ptr<Bird> guestDel(GuestIterator& at) { return frame::valueDelAt<VyxAttrGuest>(*this, at); }
  void guestDelAll() { frame::valueDelAll<GuestIterator, VyxAttrGuest>(*this); }
  void guestNotify(Kest::UniqueId const& key) { frame::notify<VyxAttrGuest>(*this, key); }
  GuestIteratorConst guestIteratorConst() const { return GuestIteratorConst(guest_); }
  GuestIteratorConst guestIteratorConst(Kest::UniqueId const& key) const { return {guest_, key}; }
  GuestIterator guestIterator() { return {this, guest_}; }
  GuestIterator guestIterator(Kest::UniqueId const& key) { return {this, guest_, key}; }

  // opening, id 261
  class VyxOpening final : public frame::TreeRecord<unsigned char, unsigned short> {
    using TreeRecord::TreeRecord;
  };
  using VyxOpeningMap = Vyx::RbTreeMap<VyxOpening, unsigned char>;
  struct VyxAttrOpening : frame::ValueCollection<Cage, unsigned char, unsigned short, VyxOpening, 261> {
    static constexpr char const* name = "opening";
    static auto& field(auto& of) { return of.opening_; }
    static void tell(auto& reactor, unsigned char key) { reactor.onOpening(key); }
  };
  using OpeningIteratorConst = frame::IteratorConst<VyxOpeningMap>;
  using OpeningIterator = frame::Iterator<Cage, VyxOpeningMap>;
  using VyxOpeningIterator = OpeningIterator;
  unsigned short opening(unsigned char key) const { return frame::value<VyxAttrOpening>(*this, key); }
  std::uint32_t openings() const { return opening_.count(); }
  Vyx::Ptr<VyxOpening> newOpening(unsigned char key, unsigned short value) {
    return frame::newValue<VyxAttrOpening>(*this, key, value);
  }
  void openingIs(unsigned char key, unsigned short value) {
    frame::valueIs<VyxAttrOpening>(*this, key, value);
  }
  unsigned short openingDel(unsigned char key) { return frame::valueDel<VyxAttrOpening>(*this, key); }
  unsigned short openingDel(OpeningIterator& at) { return frame::valueDelAt<VyxAttrOpening>(*this, at); }
  void openingDelAll() { frame::valueDelAll<OpeningIterator, VyxAttrOpening>(*this); }
  void openingNotify(unsigned char key) { frame::notify<VyxAttrOpening>(*this, key); }
  OpeningIteratorConst openingIteratorConst() const { return OpeningIteratorConst(opening_); }
  OpeningIteratorConst openingIteratorConst(unsigned char key) const { return {opening_, key}; }
  OpeningIterator openingIterator() { return {this, opening_}; }
  OpeningIterator openingIterator(unsigned char key) { return {this, opening_, key}; }

  // food, id 262
  class VyxFood final : public frame::HashRecord<Vyx::Name, Weight> {
    using HashRecord::HashRecord;
  };
  using VyxFoodMap = Vyx::HashMap<VyxFood, Vyx::Name>;
  struct VyxAttrFood : frame::ValueCollection<Cage, Vyx::Name, Weight, VyxFood, 262> {
    static constexpr char const* name = "food";
    static auto& field(auto& of) { return of.food_; }
    static void tell(auto& reactor, Vyx::Name key) { reactor.onFood(key); }
    static void write(auto& of, Vyx::Name const& key, Weight const& value) { of.foodIs(key, value); }
  };
  using FoodIteratorConst = frame::IteratorConst<VyxFoodMap>;
  using FoodIterator = frame::Iterator<Cage, VyxFoodMap>;
  using VyxFoodIterator = FoodIterator;
  Weight food(Vyx::Name key) const { return frame::value<VyxAttrFood>(*this, key); }
  std::uint32_t foods() const { return food_.count(); }
  Vyx::Ptr<VyxFood> newFood(Vyx::Name key, Weight value) {
    return frame::newValue<VyxAttrFood>(*this, key, value);
  }
  virtual void foodIs(Vyx::Name key, Weight value) { frame::valueIs<VyxAttrFood>(*this, key, value); }
  virtual Weight foodDel(Vyx::Name key) { return frame::valueDel<VyxAttrFood>(*this, key); }
  virtual Weight foodDel(FoodIterator& at) { return frame::valueDelAt<VyxAttrFood>(*this, at); }
  virtual void foodDelAll() { frame::valueDelAll<FoodIterator, VyxAttrFood>(*this); }
  virtual void foodNotify(Vyx::Name key) { frame::notify<VyxAttrFood>(*this, key); }
  FoodIteratorConst foodIteratorConst() const { return FoodIteratorConst(food_); }
  FoodIteratorConst foodIteratorConst(Vyx::Name key) const { return {food_, key}; }
  FoodIterator foodIterator() { return {this, food_}; }
  FoodIterator foodIterator(Vyx::Name key) { return {this, food_, key}; }

  using VyxAttributes =
      frame::AttributeList<VyxAttrAnimal, VyxAttrLoudest, VyxAttrGuest, VyxAttrOpening, VyxAttrFood>;

private:
  VyxAnimalMap animal_;
  Vyx::Ptr<Animal> loudest_;
  VyxGuestMap guest_;
  VyxOpeningMap opening_;
  VyxFoodMap food_;

public:
  Vyx::RbTreeLinks fwkRbLinks_; // Written by the tree that holds this entity.

private:
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

// Hears of changes of a Cage; every entry is empty.
class Cage::NotifieeConst : public frame::ReactorOn<Cage, Vyx::Entity::NotifieeConst> {
public:
  virtual void onIsNondestructing() {}
  virtual void onAnimal(Vyx::Name) {}
  virtual void onAnimalvyxImmediate() {}
  virtual void onAnimal() {}
  virtual void onLoudest() {}
  virtual void onGuest(Kest::UniqueId const&) {}
  virtual void onGuestvyxImmediate() {}
  virtual void onGuest() {}
  virtual void onOpening(unsigned char) {}
  virtual void onOpeningvyxImmediate() {}
  virtual void onOpening() {}
  virtual void onFood(Vyx::Name) {}
  virtual void onFoodvyxImmediate() {}
  virtual void onFood() {}

protected:
  NotifieeConst() = default;
};

class Cage::Notifiee : public frame::WritableReactorOn<Cage> {
protected:
  Notifiee() = default;
};

Vyx::Ptr<Cage> cageFactory(Vyx::Name name);

} // namespace Zoo
