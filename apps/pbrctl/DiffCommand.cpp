#include "pbrctl/Commands.h"
#include "pbrctl/Diff.h"
#include "pbrctl/EntityDiff.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/RootFile.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

template <class Differences, class Print>
int showDifferences(Differences const& differences, nlohmann::json const& document, Print print, bool json,
                    Io io) {
  if (json) {
    writeDocument(document, io.out);
  } else {
    print(differences, io.out);
    if (differences.empty()) io.err << "pbrctl: no differences\n";
  }
  return kDone;
}

std::optional<nlohmann::json> loadDocument(TreeFile const& file, Io io) {
  auto const root = loadRoot(file, io);
  return root ? documentOf(*root, io) : std::nullopt;
}

int diffEntityFiles(TreeFile const& first, TreeFile const& second, bool json, Io io) {
  auto const before = loadDocument(first, io);
  auto const after = loadDocument(second, io);
  if (!before || !after) return kRefused;
  auto const differences = diffEntities(*before, *after);
  return showDifferences(differences, entityDiffJson(differences), printEntityDiff, json, io);
}

} // namespace

int diffFiles(TreeFile const& first, std::string const& second, bool json, Io io) {
  if (!isConfig(first)) return diffEntityFiles(first, {second, first.as}, json, io);
  auto const before = loadContent(first.file, io);
  auto const after = loadContent(second, io);
  if (!before || !after) return kRefused;
  auto const differences = diff(*before, *after);
  return showDifferences(differences, diffJson(differences), printDiff, json, io);
}

} // namespace Pbrctl
