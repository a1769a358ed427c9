// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Animal.h"
#include "Zoo/Diet.h"
#include "Zoo/Menu.h"
#include "Zoo/Visitor.h"
#include "Zoo/Weight.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Animal::_Type final : public frame::EntityType<Animal> {
public:
  using EntityType::EntityType;
};

class Animal::GenericIf_ final : public frame::EntityGenericIf<Animal, Animal::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Animal> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onWeight() override { forward(259); }
    void onHunger() override { forward(260); }
  };
};

Vyx::VyxType const* Animal::_fwkType() {
  return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Animal");
}

Vyx::String8 Animal::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

Vyx::Ptr<Animal> animalFactory(Vyx::Name name, Diet diet) { return Vyx::make<Animal>(name, diet); }

} // namespace Zoo
