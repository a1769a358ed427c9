// Between files and trees, as the verbs need it: whatever goes wrong is told as a message.

#pragma once

#include "Pbr/Pbr.h"
#include "pbrctl/ConfigAst.h"
#include "pbrctl/Io.h"

#include <optional>
#include <string>

namespace Pbrctl {

enum class Form { text, json };

struct LoadedTree {
  Vyx::Ptr<Pbr::Config> config;
  Form form = Form::text;
};

// RETURNS nothing when the file is refused; its errors are then told.
std::optional<LoadedTree> loadTree(std::string const& file, Io io);
// What a file would say of the tree. RETURNS nothing when no file can; the reasons are then told.
std::optional<ConfigAst> contentOf(Pbr::Config const& config, Io io);
std::optional<ConfigAst> loadContent(std::string const& file, Io io);

void writeContent(ConfigAst const& content, Form form, Io io);

} // namespace Pbrctl
