// From the model back to what a file says.

#pragma once

#include "Pbr/Pbr.h"
#include "pbrctl/ConfigAst.h"

#include <string>
#include <vector>

namespace Pbrctl {

// Each entry of `problems` is something in the tree that no file can say.
// A group's next hops are written once, as its block, where the classes that name the group agree on them;
// where they don't, each class is written with its own.
ConfigAst readTree(Pbr::Config const& config, std::vector<std::string>& problems);

} // namespace Pbrctl
