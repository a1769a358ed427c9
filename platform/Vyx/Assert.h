// Broken invariants end the process.

#pragma once

namespace Vyx {

// Writes "source:line: assertion failed: condition" to the standard error stream and aborts.
[[noreturn]] void assertionFailed(char const* condition, char const* source, int line);

// `condition` is the text told; `source` and `line` say where the invariant is kept.
inline void require(bool holds, char const* condition, char const* source, int line) {
  if (__builtin_expect(!holds, false)) assertionFailed(condition, source, line);
}

} // namespace Vyx
