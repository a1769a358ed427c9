// How long poll(2) is to wait.

#pragma once

#include "Vyx/NboAttrLog/Source.h"

#include <algorithm>
#include <climits>

namespace Vyx::NboAttrLog {

// RETURNS milliseconds until `until`, rounded up, so that it has passed when poll returns; -1 for kNever.
inline int pollTimeout(Instant until, Instant now) {
  if (until == kNever) return -1;
  if (until <= now) return 0;
  auto const left = std::chrono::ceil<std::chrono::milliseconds>(until - now).count();
  return static_cast<int>(std::min<std::chrono::milliseconds::rep>(left, INT_MAX));
}

} // namespace Vyx::NboAttrLog
