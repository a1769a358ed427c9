#include "Vyx/Trace.h"
#include "pbrctl/ChangePrinter.h"
#include "pbrctl/Commands.h"
#include "pbrctl/ConfigCopy.h"
#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

constexpr char const* kTraceFacility = "PbrCopy";
constexpr unsigned kTraceLevels[] = {0, 8, 9};

void printText(Outcome const& outcome, ConfigAst const& result, Io io) {
  io.out << "! notifications: " << outcome.changes.size() << '\n';
  for (Change const& change : outcome.changes) printChange(change, io.out);
  io.out << "! the resulting configuration\n";
  writeContent(result, Form::text, io);
  io.out << "changed: " << (outcome.changed ? "true" : "false") << '\n';
}

void printJson(Outcome const& outcome, ConfigAst const& result, Io io) {
  nlohmann::json out = {{"version", kJsonVersion}, {"changed", outcome.changed}, {"result", jsonOf(result)}};
  out["notifications"] = changesJson(outcome.changes);
  writeDocument(out, io.out);
}

// A map that only the destination had, dynamic and so kept, may name a class map that the copy took away.
void noteDangling(ConfigAst const& result, Io io) {
  Diagnostics dangling("");
  checkReferences(result, dangling);
  for (Diagnostics::Error const& e : dangling.sorted()) io.err << "pbrctl: note: " << e.text << '\n';
}

} // namespace

int copyFile(CopyOptions const& options, Io io) {
  auto const source = loadTree(options.source, io);
  auto const destination = loadTree(options.destination, io);
  if (!source || !destination) return kRefused;
  for (unsigned level : kTraceLevels) Vyx::traceLevelIs(kTraceFacility, level, options.trace);
  Outcome const outcome = copyConfig(destination->config, source->config);
  auto const result = contentOf(*destination->config, io);
  if (!result) return kRefused;
  if (options.json)
    printJson(outcome, *result, io);
  else
    printText(outcome, *result, io);
  noteDangling(*result, io);
  return kDone;
}

} // namespace Pbrctl
