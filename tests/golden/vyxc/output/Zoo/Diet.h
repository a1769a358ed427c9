// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Vyx/Fwd.h"
#include "Vyx/String8.h"

#include <cstdint>
#include <iosfwd>

namespace Zoo {

// What an animal eats.
enum Diet : std::uint32_t {
  // Everything.
  omnivore = 0,
  herbivore = 1,
  carnivore = 2,
};

Vyx::VyxType const* _fwkType_Diet();
inline Vyx::VyxType const* vyxTypeOf(Diet const*) { return _fwkType_Diet(); }

// THROWS: RangeException "Diet" for what is no enumerator.
Diet DietInstance(unsigned int number);
Diet DietInstance(Vyx::String8 name);
// The bare name; "Diet(7)" for a number that is no enumerator.
Vyx::String8 stringValue(Diet value);
// The name in single quotes.
Vyx::String8 valueToStrep(Diet const& value);
Diet sequenceToValue(Vyx::String8::IteratorConst& at, Vyx::String8::IteratorConst const& end, Diet*);
std::ostream& operator<<(std::ostream& out, Diet const& value);
// For templates, which know the type and not the function's name.
inline Diet vyxInstance(Diet const*, unsigned int number) { return DietInstance(number); }

} // namespace Zoo
