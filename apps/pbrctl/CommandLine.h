// The command line: which verb, with which arguments.

#pragma once

#include "pbrctl/Io.h"

namespace Pbrctl {

// RETURNS the exit code: 0 done, 1 refused, 2 usage, 3 the server can't be reached.
int runCommandLine(int argc, char const* const* argv, Io io);

} // namespace Pbrctl
