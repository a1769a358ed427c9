#include "pbrctl/Commands.h"
#include "pbrctl/PbrMapWriter.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

int writePbrMaps(std::string const& file, ConfigAst const& content, Io io) {
  std::vector<std::string> problems;
  std::string const text = pbrMapText(content, problems);
  for (std::string const& problem : problems) io.err << file << ":1:1: error: " << problem << '\n';
  if (!problems.empty()) return kRefused;
  io.out << text;
  return kDone;
}

} // namespace

int convertFile(std::string const& file, std::string const& form, Io io) {
  auto const content = loadContent(file, io);
  if (!content) return kRefused;
  if (form == "pbr-map") return writePbrMaps(file, *content, io);
  writeContent(*content, form == "json" ? Form::json : Form::text, io);
  return kDone;
}

} // namespace Pbrctl
