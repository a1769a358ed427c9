// Puts the generated texts into files.

#pragma once

#include "Emit.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace vyxc {

// Writes each file below `folder`, except those that have their text already, so that nothing is built anew
// without need. RETURNS whether all could be written; what could not is told on `errors`.
bool writeOutputs(std::string const& folder, std::vector<OutputFile> const& files, std::ostream& errors);

} // namespace vyxc
