#include "PolicyMap/Action.h"

namespace PolicyMap {

// An action of unknown content equals itself alone.
bool Action::equalTo(Vyx::Ptr<Action const> const& other) const { return other.ptr() == this; }

} // namespace PolicyMap
