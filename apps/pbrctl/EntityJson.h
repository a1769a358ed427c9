// Any tree of entities as JSON, through reflection alone: nothing here knows a type of the model.
//
//   document  := {"version": 1, "type": name, "name": name, "tree": entity, "entities": [entity…]}
//   entity    := {attribute: value | {key: value…} | entity | {key: entity…} | number, …}
//
// A number stands for a reference to an entity that hangs nowhere in the tree: it counts those in `entities`,
// from 1, in the order of their first mention. Such an entity has a member `type` of its own.
//
// Invariants:
// (1) Equal trees give equal documents.
// (2) What a key or the place says isn't said again; null references and empty collections aren't there.

#pragma once

#include "Vyx/Entity.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {

// THROWS: Vyx::Exception for a tree that refers to an entity of another tree.
nlohmann::json entityDocument(Vyx::Entity const& root);

} // namespace Pbrctl
