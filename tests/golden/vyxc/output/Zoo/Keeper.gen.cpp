// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Keeper.h"
#include "Kest/UniqueId.h"
#include "Zoo/Animal.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Keeper::_Type final : public frame::EntityType<Keeper> {
public:
  using EntityType::EntityType;
};

class Keeper::GenericIf_ final : public frame::EntityGenericIf<Keeper, Keeper::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Keeper> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onTask(unsigned int key) override { forward(259, key); }
    void onTaskvyxImmediate() override { forward(259); }
    void onTask() override { forward(259); }
    void onFavourite() override { forward(260); }
  };
};

Vyx::VyxType const* Keeper::_fwkType() {
  return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Keeper");
}

Vyx::String8 Keeper::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

Vyx::Ptr<Keeper> keeperFactory(Kest::UniqueId const& id) { return Vyx::make<Keeper>(id); }

} // namespace Zoo
