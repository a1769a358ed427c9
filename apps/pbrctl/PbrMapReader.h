// The `pbr-map` statements of the text form, and what they mean in class maps and policy maps.

#pragma once

#include "pbrctl/Reading.h"

#include <vector>

namespace Pbrctl {

std::vector<StatementRule> const& pbrMapStatements();

// Puts what was gathered into the configuration. Sequence N of the map M becomes
// - the class map M-N, with the one rule that the `match` lines make together, or none without such lines;
// - the class M-N of the policy map M, at sequence N, if the sequence has a `set` line.
// A sequence lacking either does nothing, here as there: an empty class map matches no packet, and a class
// that the policy map doesn't have lets its packets go on to the next.
void finishPbrMaps(Reading& reading);

} // namespace Pbrctl
