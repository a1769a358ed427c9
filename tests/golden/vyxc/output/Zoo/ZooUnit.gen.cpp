// Made by vyxc from zoo.vyx; do not edit.

#include "Kest/UniqueId.h"
#include "Zoo/Animal.h"
#include "Zoo/Bird.h"
#include "Zoo/Cage.h"
#include "Zoo/Diet.h"
#include "Zoo/Keeper.h"
#include "Zoo/Kitchen.h"
#include "Zoo/Menu.h"
#include "Zoo/Office.h"
#include "Zoo/Visitor.h"
#include "Zoo/Weight.h"
#include "Zoo/Zoo.h"
#include "frame/EntityReflection.h"
#include "frame/Enumeration.h"
#include "frame/ValueMembers.h"

namespace Zoo {

// For tools that list the library's types without loading it.
[[gnu::section(".vyx.type"), gnu::used]] static char const vyxTypeNames[] = "Zoo::Diet\0"
                                                                            "Zoo::Weight\0"
                                                                            "Zoo::Menu\0"
                                                                            "Zoo::Animal\0"
                                                                            "Zoo::Bird\0"
                                                                            "Zoo::Keeper\0"
                                                                            "Zoo::Cage\0"
                                                                            "Zoo::Office\0"
                                                                            "Zoo::Kitchen";

frame::Enumerators<Diet> vyxEnumerators(Diet const*);
void vyxDefineWeight(Vyx::IntrospectionReactor& reactor, char const* fullName);
void vyxDefineMenu(Vyx::IntrospectionReactor& reactor, char const* fullName);

namespace {
std::vector<frame::UnitType> vyxTypes() {
  return {
      {"Zoo::Diet", &_fwkType_Diet, &frame::defineEnumeration<Diet>},
      {"Zoo::Weight", &Weight::_fwkType, &vyxDefineWeight},
      {"Zoo::Menu", &Menu::_fwkType, &vyxDefineMenu},
      {"Zoo::Animal", &Animal::_fwkType, &frame::defineEntity<Animal>},
      {"Zoo::Bird", &Bird::_fwkType, &frame::defineEntity<Bird>},
      {"Zoo::Keeper", &Keeper::_fwkType, &frame::defineEntity<Keeper>},
      {"Zoo::Cage", &Cage::_fwkType, &frame::defineEntity<Cage>},
      {"Zoo::Office", &Office::_fwkType, &frame::defineEntity<Office>},
      {"Zoo::Kitchen", &Kitchen::_fwkType, &frame::defineEntity<Kitchen>},
  };
}
} // namespace

// Made by the first use, which may come before this library is loaded whole.
frame::RegistrationUnit& vyxUnitZoo() {
  static frame::RegistrationUnit unit("Zoo", vyxTypes());
  return unit;
}

namespace {
frame::UnitLoader const vyxLoader(vyxUnitZoo());
} // namespace

} // namespace Zoo
