#include "pbrctl/Commands.h"
#include "pbrctl/PathAccess.h"
#include "pbrctl/RootFile.h"

namespace Pbrctl {

int getValue(TreeFile const& file, std::string const& path, Io io) {
  auto const root = loadRoot(file, io);
  if (!root) return kRefused;
  try {
    for (std::string const& line : PathAccess(root).get(path)) io.out << line << '\n';
    return kDone;
  } catch (PathError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return kRefused;
  }
}

} // namespace Pbrctl
