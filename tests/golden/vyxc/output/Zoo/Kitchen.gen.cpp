// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Kitchen.h"
#include "Zoo/Diet.h"
#include "frame/EntityReflection.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

class Kitchen::_Type final : public frame::EntityType<Kitchen> {
public:
  using EntityType::EntityType;
};

class Kitchen::GenericIf_ final : public frame::EntityGenericIf<Kitchen, Kitchen::GenericIf_> {
public:
  using EntityGenericIf::EntityGenericIf;
  class GenericIf_Adapter_ final : public frame::GenericIfAdapter<Kitchen> {
  public:
    using GenericIfAdapter::GenericIfAdapter;
    void onIsNondestructing() override { forward(6); }
    void onVersion() override { forward(260); }
  };
};

Vyx::VyxType const* Kitchen::_fwkType() {
  return frame::TypeRecord<_Type, VyxBase>::get(vyxUnitZoo, "Kitchen");
}

Vyx::String8 Kitchen::attributeString(Vyx::AttributeId id) const {
  return frame::attributeString(*this, id, VyxAttributes());
}

} // namespace Zoo
