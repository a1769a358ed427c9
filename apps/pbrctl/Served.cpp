#include "pbrctl/Served.h"

#include "Pbr/Pbr.h"

namespace Pbrctl {

std::array<ServedRoot, 3> const& servedRoots() {
  static constexpr std::array<ServedRoot, 3> kRoots = {{
      {"config", kConfigPath, &Pbr::Config::_fwkType},
      {"status", "pbr/status", &Pbr::Status::_fwkType},
      {"checkpoint", "pbr/checkpoint", &Pbr::CheckpointStatus::_fwkType},
  }};
  return kRoots;
}

ServedRoot const* servedRoot(std::string_view text) {
  for (ServedRoot const& root : servedRoots())
    if (text == root.word || text == root.path) return &root;
  return nullptr;
}

} // namespace Pbrctl
