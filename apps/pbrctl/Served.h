// What a server holds: three roots, each under a path that the command line also knows by a word.

#pragma once

#include "Vyx/VyxType.h"

#include <array>
#include <string>
#include <string_view>

namespace Pbrctl {

struct ServedRoot {
  char const* word;
  char const* path;
  Vyx::VyxType const* (*type)();
};

inline constexpr char const* kConfigPath = "pbr/config";

// ORDER: the configuration first.
std::array<ServedRoot, 3> const& servedRoots();
// By word or path. RETURNS null for another text.
ServedRoot const* servedRoot(std::string_view text);

} // namespace Pbrctl
