// The `pbr-map` dialect of the text form, for a routing daemon to read.

#pragma once

#include "pbrctl/ConfigAst.h"

#include <string>
#include <vector>

namespace Pbrctl {

// RETURNS the text. Each entry of `problems` is something that this dialect has no words for; the text is
// then not to be used.
std::string pbrMapText(ConfigAst const& config, std::vector<std::string>& problems);

} // namespace Pbrctl
