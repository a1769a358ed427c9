// The native text form.

#pragma once

#include "pbrctl/ConfigAst.h"

#include <iosfwd>

namespace Pbrctl {

// Reads back to an equal tree.
void writeNative(ConfigAst const& config, std::ostream& out);

} // namespace Pbrctl
