// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Cage.h"
#include "Kest/UniqueId.h"
#include "Zoo/Animal.h"
#include "Zoo/Bird.h"
#include "Zoo/Weight.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Cage::_Type final : public frame::EntityType<Cage> {
public:
  using EntityType::EntityType;
};

class Cage::GenericIf_ final : public frame::EntityGenericIf<Cage, Cage::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Cage> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onAnimal(Vyx::Name key) override { forward(258, key); }
    void onAnimalvyxImmediate() override { forward(258); }
    void onAnimal() override { forward(258); }
    void onLoudest() override { forward(259); }
    void onGuest(Kest::UniqueId const& key) override { forward(260, key); }
    void onGuestvyxImmediate() override { forward(260); }
    void onGuest() override { forward(260); }
    void onOpening(unsigned char key) override { forward(261, key); }
    void onOpeningvyxImmediate() override { forward(261); }
    void onOpening() override { forward(261); }
    void onFood(Vyx::Name key) override { forward(262, key); }
    void onFoodvyxImmediate() override { forward(262); }
    void onFood() override { forward(262); }
  };
};

Cage::~Cage() { animalDelAll(); }

Vyx::VyxType const* Cage::_fwkType() { return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Cage"); }

Vyx::String8 Cage::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

Vyx::Ptr<Cage> cageFactory(Vyx::Name name) { return Vyx::make<Cage>(name); }

} // namespace Zoo
