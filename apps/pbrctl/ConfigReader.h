// From a file to what it says: any form, with all that must hold across the file.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "pbrctl/SourceText.h"

#include <optional>
#include <string>

namespace Pbrctl {

// Reads either form. REQUIRES: the result is used only if `diagnostics` stayed without errors.
ConfigAst readConfig(SourceText const& source, Diagnostics& diagnostics);

// Tells of each class of a policy map without a class map, and each binding without a policy map. The order
// of the blocks in the file doesn't matter.
void checkReferences(ConfigAst const& config, Diagnostics& diagnostics);

} // namespace Pbrctl
