// Between files and the trees that are JSON alone, as the verbs need it.

#pragma once

#include "Vyx/Entity.h"
#include "pbrctl/Commands.h"

#include <nlohmann/json.hpp>

namespace Pbrctl {

inline bool isConfig(TreeFile const& file) { return file.as == "config"; }

// A tree of any kind. RETURNS null when the file is refused; its errors are then told.
Vyx::Ptr<Vyx::Entity> loadRoot(TreeFile const& file, Io io);
// What a file would say of the tree. RETURNS nothing when no file can; the reason is then told.
std::optional<nlohmann::json> documentOf(Vyx::Entity const& root, Io io);
// RETURNS the exit code.
int showRoot(Vyx::Entity const& root, bool json, Io io);

} // namespace Pbrctl
