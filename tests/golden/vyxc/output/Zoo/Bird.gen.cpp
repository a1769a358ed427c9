// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Bird.h"
#include "Kest/UniqueId.h"
#include "Zoo/Menu.h"
#include "Zoo/Visitor.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Bird::_Type final : public frame::EntityType<Bird> {
public:
  using EntityType::EntityType;
};

class Bird::GenericIf_ final : public frame::EntityGenericIf<Bird, Bird::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Bird> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onWeight() override { forward(259); }
    void onHunger() override { forward(260); }
    void onFlying() override { forward(400); }
  };
};

Vyx::VyxType const* Bird::_fwkType() { return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Bird"); }

Vyx::String8 Bird::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

Vyx::Ptr<Bird> birdFactory(Vyx::Name name, Diet diet, Kest::UniqueId const& id) {
  return Vyx::make<Bird>(name, diet, id);
}

} // namespace Zoo
