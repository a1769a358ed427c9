#include "pbrctl/Commands.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

std::string counted(std::size_t count, char const* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

int checkFiles(std::vector<std::string> const& files, Io io) {
  int result = kDone;
  for (std::string const& file : files) {
    auto const content = loadContent(file, io);
    if (!content) {
      result = kRefused;
      continue;
    }
    io.out << file << ": ok, " << counted(content->classMaps.size(), "class map") << ", "
           << counted(content->policyMaps.size(), "policy map") << ", "
           << counted(content->groups.size(), "next-hop group") << ", "
           << counted(content->interfaces.size(), "interface") << '\n';
  }
  return result;
}

} // namespace Pbrctl
