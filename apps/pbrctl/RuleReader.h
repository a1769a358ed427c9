// The `match` statement of a class map.

#pragma once

#include "PolicyMap/MatchRule.h"
#include "pbrctl/Statement.h"

namespace Pbrctl {

// ip SRC DST [protocol P] [source-port R] [destination-port R] [dscp D] | access-list NAME
// THROWS: StatementError at the word that is wrong.
PolicyMap::MatchRule readRule(Statement& statement);

} // namespace Pbrctl
