// Made by vyxc from zoo.vyx; do not edit.

#include "Zoo/Menu.h"
#include "frame/TypeRecord.h"
#include "frame/ValueMemberCollection.h"
#include "frame/ValueMembers.h"

namespace Zoo {

frame::RegistrationUnit& vyxUnitZoo();

namespace {

// The members of Menu, as its record and reflection see them.
struct VyxSchemaMenu {
  static constexpr Vyx::ValueOperators operators = Vyx::ValueOperators::none;
  static constexpr std::array<char const*, 1> kVyxParameterNames{"day"};
  static constexpr std::array<char const*, 1> kVyxParameterTypes{"U64"};
  using VyxParameterTuple = std::tuple<unsigned long long>;

  struct VyxAttrAmount : frame::ValueMemberCollection<Menu, Vyx::Name, unsigned int, 2> {
    static constexpr char const* name = "amount";
    static unsigned int count(Menu const& of) { return of.amounts(); }
    static auto iterator(Menu const& of) { return of.amountIteratorConst(); }
    static auto iterator(Menu const& of, Vyx::Name const& key) { return of.amountIteratorConst(key); }
    static unsigned int get(Menu const& of, Vyx::Name const& key) { return of.amount(key); }
    static void set(Menu& of, Vyx::Name const& key, unsigned int value) { of.amountIs(key, value); }
    static unsigned int del(Menu& of, Vyx::Name const& key) { return of.amountDel(key); }
  };

  struct VyxAttrDay : frame::ValueConstMember<Menu, unsigned long long, 3> {
    static constexpr char const* name = "day";
    static unsigned long long get(Menu const& of) { return of.day(); }
  };

  // Over all foods.
  struct VyxAttrTotal : frame::ValueComputed<Menu, unsigned int, 4> {
    static constexpr char const* name = "total";
    static unsigned int get(Menu const& of) { return of.total(); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrAmount, VyxAttrDay, VyxAttrTotal>;
};

using VyxRecordMenu = frame::ValueRecord<Menu, VyxSchemaMenu>;

} // namespace

void vyxDefineMenu(Vyx::IntrospectionReactor& reactor, char const* fullName) {
  frame::defineValue<Menu, VyxSchemaMenu>(reactor, fullName);
}

Vyx::VyxType const* Menu::_fwkType() {
  return frame::TypeRecord<VyxRecordMenu, void>::get(vyxUnitZoo, "Menu");
}

} // namespace Zoo
