// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Vyx/Entity.h"
#include "Zoo/Diet.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

// One for each diet, and called like it.
class Kitchen : public Vyx::Entity {
public:
  using VyxBase = Vyx::Entity;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  Kitchen(Vyx::Name name, unsigned char floor, Diet diet) : Vyx::Entity(name), floor_(floor), diet_(diet) {}
  static constexpr std::array<char const*, 3> kVyxParameterNames{"name", "floor", "diet"};
  static constexpr std::array<char const*, 3> kVyxParameterTypes{"Vyx::Name", "U8", "Zoo::Diet"};
  using VyxParameterTuple = std::tuple<Vyx::Name, unsigned char, Diet>;
  static auto vyxParameters(Kitchen const& of) { return VyxParameterTuple(of.name(), of.floor(), of.diet()); }

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
  Diet fwkKey() const { return diet(); }
  using VyxListedKey = Diet;

  // floor, id 258
  unsigned char floor() const { return floor_; }
  struct VyxAttrFloor : frame::Constant<Kitchen, unsigned char, 258> {
    static constexpr char const* name = "floor";
    static auto& field(auto& of) { return of.floor_; }
  };

  // diet, id 259
  Diet diet() const { return diet_; }
  struct VyxAttrDiet : frame::Constant<Kitchen, Diet, 259> {
    static constexpr char const* name = "diet";
    static auto& field(auto& of) { return of.diet_; }
  };

  // version, id 260
  // Of the menu.
  unsigned int version() const { return version_; }
  void versionIs(unsigned int value) { frame::set<VyxAttrVersion>(*this, value); }
  struct VyxAttrVersion : frame::Scalar<Kitchen, unsigned int, 260> {
    static constexpr char const* name = "version";
    static auto& field(auto& of) { return of.version_; }
    static void tell(auto& reactor) { reactor.onVersion(); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrFloor, VyxAttrDiet, VyxAttrVersion>;

private:
  unsigned char floor_;
  Diet diet_;
  unsigned int version_{};

public:
  Vyx::HashLink fwkHmNext_; // Written by the table that holds this entity.

private:
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

// Hears of changes of a Kitchen; every entry is empty.
class Kitchen::NotifieeConst : public frame::ReactorOn<Kitchen, Vyx::Entity::NotifieeConst> {
public:
  virtual void onIsNondestructing() {}
  void onVersion() override {}

protected:
  NotifieeConst() = default;
};

class Kitchen::Notifiee : public frame::WritableReactorOn<Kitchen> {
protected:
  Notifiee() = default;
};

} // namespace Zoo
