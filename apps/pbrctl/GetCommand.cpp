#include "pbrctl/Commands.h"
#include "pbrctl/PathAccess.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

int getValue(std::string const& file, std::string const& path, Io io) {
  auto const loaded = loadTree(file, io);
  if (!loaded) return kRefused;
  try {
    for (std::string const& line : PathAccess(loaded->config).get(path)) io.out << line << '\n';
    return kDone;
  } catch (PathError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return kRefused;
  }
}

} // namespace Pbrctl
