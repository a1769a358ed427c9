#include "pbrctl/Commands.h"
#include "pbrctl/Diff.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

int diffFiles(std::string const& first, std::string const& second, bool json, Io io) {
  auto const before = loadContent(first, io);
  auto const after = loadContent(second, io);
  if (!before || !after) return kRefused;
  auto const differences = diff(*before, *after);
  if (json) {
    writeDocument(diffJson(differences), io.out);
  } else {
    printDiff(differences, io.out);
    if (differences.empty()) io.err << "pbrctl: no differences\n";
  }
  return kDone;
}

} // namespace Pbrctl
