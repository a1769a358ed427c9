// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Office.h"
#include "Kest/UniqueId.h"
#include "Zoo/Cage.h"
#include "Zoo/Diet.h"
#include "Zoo/Keeper.h"
#include "Zoo/Kitchen.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Office::_Type final : public frame::EntityType<Office> {
public:
  using EntityType::EntityType;
};

class Office::GenericIf_ final : public frame::EntityGenericIf<Office, Office::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Office> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onKeeper(Kest::UniqueId const& key) override { forward(258, key); }
    void onKeepervyxImmediate() override { forward(258); }
    void onKeeper() override { forward(258); }
    void onCage(Vyx::Name key) override { forward(259, key); }
    void onCagevyxImmediate() override { forward(259); }
    void onCage() override { forward(259); }
    void onKitchen(Diet key) override { forward(260, key); }
    void onKitchenvyxImmediate() override { forward(260); }
    void onKitchen() override { forward(260); }
    void onAviary() override { forward(261); }
    void onQuarantine() override { forward(262); }
  };
};

Office::Office(Vyx::Name name) : Vyx::Entity(name) { aviaryIs("aviary"); }

Vyx::VyxType const* Office::_fwkType() {
  return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Office");
}

Vyx::String8 Office::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

} // namespace Zoo
