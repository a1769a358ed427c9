// What the records of attributes say, in the words that the tool needs.

#pragma once

#include "Vyx/GenericIf.h"

#include <string>

namespace Pbrctl {

// The attribute of every entity's name.
inline constexpr char const* kName = "name";

// Whether the attribute holds something; a function doesn't.
bool isData(Vyx::VyxAttr const& attr);
// Whether it is a part of its object's state that reflection can reach.
bool isState(Vyx::VyxAttr const& attr);
// Whether the constructor alone sets it.
bool isFixed(Vyx::VyxAttr const& attr);
bool isKeyed(Vyx::VyxAttr const& attr);
bool holdsEntities(Vyx::VyxAttr const& attr);
// Whether the object makes and owns what the attribute holds.
bool isOwning(Vyx::VyxAttr const& attr);
bool isReference(Vyx::VyxAttr const& attr);
// Whether a child of the attribute takes its name from a constructor value, and not from its key's text.
bool isNamedByValue(Vyx::VyxAttr const& attr);
// Whether values of the type are written member by member, since one text can't say all of them.
bool hasMembers(Vyx::VyxType const& type);
// REQUIRES: the attribute is keyed.
Vyx::VyxType const& keyTypeOf(Vyx::VyxAttr const& attr);
// As it stands in documents and paths: an enumerator without the quotes of its text form.
std::string plainText(Vyx::GenericIf const& value);

} // namespace Pbrctl
