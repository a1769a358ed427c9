// The types of one schema unit, and how their records come to be filled.
//
// Invariants:
// (1) A record exists from the first call of its type's `_fwkType()`; its attributes come when the unit runs:
//     at load, or at the first use before that.
// (2) A unit runs once. It runs only while the introspection reactor is ready, and tries again when asked
//     until it was.

#pragma once

#include "Vyx/IntrospectionReactor.h"

#include <vector>

namespace frame {

struct UnitType {
  char const* fullName; // "Pbr::PbrFwdAction".
  Vyx::VyxType const* (*record)();
  void (*define)(Vyx::IntrospectionReactor& reactor, char const* fullName);
};

class RegistrationUnit {
public:
  RegistrationUnit(char const* nameSpace, std::vector<UnitType> types)
      : nameSpace_(nameSpace), types_(std::move(types)) {}

  // Fills the records, unless that is done or going on.
  void run();
  // What a library does when it is loaded: enters the names, then runs. A second load does nothing new.
  void load();

  bool loaded() const { return loaded_; }

private:
  char const* nameSpace_;
  std::vector<UnitType> types_; // In the order of registration.
  bool started_ = false;        // Set before the records are made, so that making them doesn't recurse.
  bool loaded_ = false;
};

// Loads a unit when the library is loaded.
struct UnitLoader {
  explicit UnitLoader(RegistrationUnit& unit) { unit.load(); }
};

} // namespace frame
