// The text form: native statements and `pbr-map` statements, in one file if need be.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "pbrctl/SourceText.h"

namespace Pbrctl {

// Reads the whole file; a line that is refused goes into `diagnostics` and the reading goes on behind it.
ConfigAst readText(SourceText const& source, Diagnostics& diagnostics);

} // namespace Pbrctl
