// The JSON form of a configuration.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "pbrctl/SourceText.h"

namespace Pbrctl {

// The number in the member `version` of what this tool reads and writes.
constexpr unsigned kJsonVersion = 1;

// Reads the whole file. What is unknown, missing or of a wrong type goes into `diagnostics` with its place
// and its path, such as `classMaps[2].rules[0].source`.
ConfigAst readJsonConfig(SourceText const& source, Diagnostics& diagnostics);

} // namespace Pbrctl
