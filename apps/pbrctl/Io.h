// Where a command writes: data to one stream, messages to the other.

#pragma once

#include <ostream>

namespace Pbrctl {

struct Io {
  std::ostream& out;
  std::ostream& err;
};

enum ExitCode { kDone = 0, kRefused = 1, kUsage = 2, kUnreachable = 3 };

} // namespace Pbrctl
