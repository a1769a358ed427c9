#include "Cli/Session/AttributeFilter.h"

namespace Cli::Session {

// The filter of a class that says nothing else accepts everything.
bool AttributeFilter::accepts(Vyx::Name, Vyx::Name) const { return true; }

} // namespace Cli::Session
