#include "Vyx/Assert.h"

#include <cstdio>
#include <cstdlib>

namespace Vyx {

void assertionFailed(char const* condition, char const* source, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", source, line, condition);
  std::fflush(stderr);
  std::abort();
}

} // namespace Vyx
