// From what a file says to the model.

#pragma once

#include "Pbr/Pbr.h"
#include "pbrctl/ConfigAst.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/Ids.h"

namespace Pbrctl {

// The identifier under which the container keeps a group's block that no class has its next hops from.
Kest::UniqueId groupId(std::string_view name, IdFunction id = idOf);

// RETURNS the whole tree; null, with the reason in `diagnostics`, if two things had one identifier.
// A class that names a group has a forwarding action with the group's name and, as next hops, the group's
// own: so a copy carries them.
Vyx::Ptr<Pbr::Config> buildTree(ConfigAst const& config, Diagnostics& diagnostics, IdFunction id = idOf);

} // namespace Pbrctl
