#include "Cli/Session.h"
#include "Pbr/PbrCopy.h"
#include "Vyx/Trace.h"
#include "pbrctl/Commands.h"
#include "pbrctl/ConfigReader.h"
#include "pbrctl/JsonReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/Tree.h"
#include "pbrctl/TreeWatch.h"

namespace Pbrctl {

namespace {

constexpr char const* kTraceFacility = "PbrCopy";
constexpr unsigned kTraceLevels[] = {0, 8, 9};

struct Outcome {
  bool changed = false;
  std::vector<Change> changes;
};

Outcome copyTree(Vyx::Ptr<Pbr::Config> const& destination, Vyx::Ptr<Pbr::Config> const& source) {
  Outcome outcome;
  TreeWatch const watch(destination, [&](Change const& change) { outcome.changes.push_back(change); });
  auto const directory = Pbr::configCopyHandlerDirFactory("pbr");
  auto const copier = Cli::Session::entityCopyFactory();
  outcome.changed = directory->configHandlerIs()->handleEntity(copier, destination, source, "pbr/config");
  return outcome;
}

void print(Change const& change, std::ostream& out) {
  std::string const kind = kindName(change.kind);
  out << kind << std::string(9 - kind.size(), ' ') << change.path;
  if (change.kind == Change::Kind::set) out << " = " << change.value;
  if (!change.about.empty()) out << "   (" << change.about << ")";
  out << '\n';
}

void printText(Outcome const& outcome, ConfigAst const& result, Io io) {
  io.out << "! notifications: " << outcome.changes.size() << '\n';
  for (Change const& change : outcome.changes) print(change, io.out);
  io.out << "! the resulting configuration\n";
  writeContent(result, Form::text, io);
  io.out << "changed: " << (outcome.changed ? "true" : "false") << '\n';
}

void printJson(Outcome const& outcome, ConfigAst const& result, Io io) {
  nlohmann::json out = {{"version", kJsonVersion}, {"changed", outcome.changed}, {"result", jsonOf(result)}};
  nlohmann::json& list = out["notifications"] = nlohmann::json::array();
  for (Change const& change : outcome.changes) {
    nlohmann::json entry = {{"change", kindName(change.kind)}, {"path", change.path}};
    if (change.kind == Change::Kind::set) entry["value"] = change.value;
    list.push_back(std::move(entry));
  }
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
  Outcome const outcome = copyTree(destination->config, source->config);
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
