// Copying one configuration onto another, and what those hear who listen to the other.

#pragma once

#include "Pbr/Pbr.h"
#include "pbrctl/TreeWatch.h"

#include <vector>

namespace Pbrctl {

struct Outcome {
  bool changed = false;
  std::vector<Change> changes;
};

Outcome copyConfig(Vyx::Ptr<Pbr::Config> const& destination, Vyx::Ptr<Pbr::Config> const& source);

} // namespace Pbrctl
