// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Kest/UniqueId.h"
#include "Zoo/Animal.h"
#include "Zoo/Diet.h"
#include "Zoo/Menu.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

class Visitor;

class Bird : public Animal {
public:
  using VyxBase = Animal;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  Bird(Vyx::Name name, Diet diet, Kest::UniqueId const& id) : Animal(name, diet), id_(id) {}
  static constexpr std::array<char const*, 3> kVyxParameterNames{"name", "diet", "id"};
  static constexpr std::array<char const*, 3> kVyxParameterTypes{"Vyx::Name", "Zoo::Diet", "Kest::UniqueId"};
  using VyxParameterTuple = std::tuple<Vyx::Name, Diet, Kest::UniqueId>;
  static auto vyxParameters(Bird const& of) { return VyxParameterTuple(of.name(), of.diet(), of.id()); }

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

  // id, id 386
  Kest::UniqueId const& id() const { return id_; }
  struct VyxAttrId : frame::Constant<Bird, Kest::UniqueId, 386> {
    static constexpr char const* name = "id";
    static auto& field(auto& of) { return of.id_; }
  };

  // eat, id 261
  bool eat(Menu const& menu, Vyx::Ptr<Visitor const> const& visitor) override;
  struct VyxAttrEat : frame::Function<Bird, bool, 261> {
    static constexpr char const* name = "eat";
    static constexpr bool redefines = true;
    static constexpr bool isConst = false;
    using Arguments = std::tuple<Menu, Vyx::Ptr<Visitor const>>;
    static constexpr std::array<char const*, 2> argumentNames{"menu", "visitor"};
    static constexpr std::array<char const*, 2> argumentTypes{"Zoo::Menu", "Zoo::Visitor"};
    static bool call(auto& of, auto const&... arguments) { return of.eat(arguments...); }
  };

  // flying, id 400
  bool flying() const { return flying_; }
  virtual void flyingIs(bool value) { frame::set<VyxAttrFlying>(*this, value); }
  struct VyxAttrFlying : frame::Scalar<Bird, bool, 400> {
    static constexpr char const* name = "flying";
    static auto& field(auto& of) { return of.flying_; }
    static void tell(auto& reactor) { reactor.onFlying(); }
    static void write(auto& of, bool const& value) { of.flyingIs(value); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrId, VyxAttrEat, VyxAttrFlying>;

private:
  Kest::UniqueId id_;
  bool flying_ = true;
};

// Hears of changes of a Bird; every entry is empty.
class Bird::NotifieeConst : public frame::ReactorOn<Bird, Animal::NotifieeConst> {
public:
  virtual void onFlying() {}

protected:
  NotifieeConst() = default;
};

class Bird::Notifiee : public frame::WritableReactorOn<Bird> {
protected:
  Notifiee() = default;
};

Vyx::Ptr<Bird> birdFactory(Vyx::Name name, Diet diet, Kest::UniqueId const& id);

} // namespace Zoo
