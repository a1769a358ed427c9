// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Vyx/Entity.h"
#include "Zoo/Diet.h"
#include "Zoo/Menu.h"
#include "Zoo/Weight.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

class Visitor;

// Something that lives in the zoo.
class Animal : public Vyx::Entity {
public:
  using VyxBase = Vyx::Entity;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  Animal(Vyx::Name name, Diet diet) : Vyx::Entity(name), diet_(diet) {}
  static constexpr std::array<char const*, 2> kVyxParameterNames{"name", "diet"};
  static constexpr std::array<char const*, 2> kVyxParameterTypes{"Vyx::Name", "Zoo::Diet"};
  using VyxParameterTuple = std::tuple<Vyx::Name, Diet>;
  static auto vyxParameters(Animal const& of) { return VyxParameterTuple(of.name(), of.diet()); }

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

  // diet, id 258
  Diet diet() const { return diet_; }
  struct VyxAttrDiet : frame::Constant<Animal, Diet, 258> {
    static constexpr char const* name = "diet";
    static auto& field(auto& of) { return of.diet_; }
  };

  // weight, id 259
  Weight weight() const { return weight_; }
  void weightIs(Weight value) { frame::set<VyxAttrWeight>(*this, value); }
  struct VyxAttrWeight : frame::Scalar<Animal, Weight, 259> {
    static constexpr char const* name = "weight";
    static auto& field(auto& of) { return of.weight_; }
    static void tell(auto& reactor) { reactor.onWeight(); }
  };

  // hunger, id 260
  // The hunger grows by one an hour.
  double hunger() const { return hunger_; }
  void hungerIs(double const& value) { frame::set<VyxAttrHunger>(*this, value); }
  struct VyxAttrHunger : frame::Scalar<Animal, double, 260> {
    static constexpr char const* name = "hunger";
    static auto& field(auto& of) { return of.hunger_; }
    static void tell(auto& reactor) { reactor.onHunger(); }
  };

  // eat, id 261
  virtual bool eat(Menu const& menu, Vyx::Ptr<Visitor const> const& visitor);
  struct VyxAttrEat : frame::Function<Animal, bool, 261> {
    static constexpr char const* name = "eat";
    static constexpr bool isConst = false;
    using Arguments = std::tuple<Menu, Vyx::Ptr<Visitor const>>;
    static constexpr std::array<char const*, 2> argumentNames{"menu", "visitor"};
    static constexpr std::array<char const*, 2> argumentTypes{"Zoo::Menu", "Zoo::Visitor"};
    static bool call(auto& of, auto const&... arguments) { return of.eat(arguments...); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrDiet, VyxAttrWeight, VyxAttrHunger, VyxAttrEat>;

private:
  Diet diet_;
  Weight weight_;
  double hunger_{};

public:
  Vyx::HashLink fwkHmNext_; // Written by the table that holds this entity.

private:
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

// Hears of changes of a Animal; every entry is empty.
class Animal::NotifieeConst : public frame::ReactorOn<Animal, Vyx::Entity::NotifieeConst> {
public:
  virtual void onIsNondestructing() {}
  virtual void onWeight() {}
  virtual void onHunger() {}

protected:
  NotifieeConst() = default;
};

class Animal::Notifiee : public frame::WritableReactorOn<Animal> {
protected:
  Notifiee() = default;
};

Vyx::Ptr<Animal> animalFactory(Vyx::Name name, Diet diet);

} // namespace Zoo
