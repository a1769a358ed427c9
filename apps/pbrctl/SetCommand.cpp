#include "pbrctl/Commands.h"
#include "pbrctl/PathAccess.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

int setValue(std::string const& file, std::string const& path, std::string const& value, Io io) {
  auto const loaded = loadTree(file, io);
  if (!loaded) return kRefused;
  try {
    PathAccess(loaded->config).set(path, value);
  } catch (PathError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return kRefused;
  }
  auto const result = contentOf(*loaded->config, io);
  if (!result) return kRefused;
  writeContent(*result, loaded->form, io);
  return kDone;
}

} // namespace Pbrctl
