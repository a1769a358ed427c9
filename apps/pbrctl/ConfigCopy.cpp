#include "pbrctl/ConfigCopy.h"

#include "Cli/Session.h"
#include "Pbr/PbrCopy.h"

namespace Pbrctl {

Outcome copyConfig(Vyx::Ptr<Pbr::Config> const& destination, Vyx::Ptr<Pbr::Config> const& source) {
  Outcome outcome;
  TreeWatch const watch(destination, [&](Change const& change) { outcome.changes.push_back(change); });
  auto const directory = Pbr::configCopyHandlerDirFactory("pbr");
  auto const copier = Cli::Session::entityCopyFactory();
  outcome.changed = directory->configHandlerIs()->handleEntity(copier, destination, source, "pbr/config");
  return outcome;
}

} // namespace Pbrctl
