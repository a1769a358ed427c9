#include "pbrctl/Commands.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

int showFile(std::string const& file, bool json, Io io) {
  auto const content = loadContent(file, io);
  if (!content) return kRefused;
  writeContent(*content, json ? Form::json : Form::text, io);
  return kDone;
}

} // namespace Pbrctl
