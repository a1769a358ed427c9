// Which names a schema may not use, because its generated code could not.

#pragma once

#include <string>
#include <string_view>

namespace vyxc {

// RETURNS why `name` is refused, empty if it is not.
std::string refusedName(std::string_view name);

// RETURNS whether every entity has an attribute or operation of that name from Vyx::Entity.
bool isNameOfRoot(std::string_view name);

// RETURNS whether every reactor has an entry of that name from Vyx::Entity::NotifieeConst.
bool isEntryOfRoot(std::string_view entry);

} // namespace vyxc
