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

#include "Vyx/GenericIf.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {

// The attribute of every entity's name.
inline constexpr char const* kName = "name";

// THROWS: Vyx::Exception for a tree that refers to an entity of another tree.
nlohmann::json entityDocument(Vyx::Entity const& root);

// Whether the attribute is a part of its object's state that reflection can reach.
bool isState(Vyx::VyxAttr const& attr);
// Whether a child of the attribute takes its name from a constructor value, and not from its key's text.
bool isNamedByValue(Vyx::VyxAttr const& attr);
bool isKeyed(Vyx::VyxAttr const& attr);
// Whether the object makes and owns what the attribute holds.
bool isOwning(Vyx::VyxAttr const& attr);
bool isReference(Vyx::VyxAttr const& attr);
// Whether values of the type are written member by member, since one text can't say all of them.
bool hasMembers(Vyx::VyxType const& type);
Vyx::VyxType const& keyTypeOf(Vyx::VyxAttr const& attr);
// As it stands in documents and paths: an enumerator without the quotes of its text form.
std::string plainText(Vyx::GenericIf const& value);

} // namespace Pbrctl
