#include "pbrctl/ChangePrinter.h"
#include "pbrctl/Client.h"
#include "pbrctl/Commands.h"
#include "pbrctl/ConfigCopy.h"
#include "pbrctl/JsonReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

void print(Outcome const& outcome, bool json, Io io) {
  if (json) {
    nlohmann::json out = {{"version", kJsonVersion}, {"changed", outcome.changed}};
    out["notifications"] = changesJson(outcome.changes);
    return writeDocument(out, io.out);
  }
  for (Change const& change : outcome.changes) printChange(change, io.out);
  io.out << "changed: " << (outcome.changed ? "true" : "false") << '\n';
}

} // namespace

int loadFile(std::string const& file, Remote const& remote, bool json, Io io) {
  auto const source = loadTree(file, io);
  if (!source) return kRefused;
  try {
    Client client(remote);
    auto const root = client.mount(*servedRoot(kConfigPath), Vyx::NboAttrLog::MountMode::write);
    auto const served = Vyx::dynamicPtrCast<Pbr::Config>(root);
    if (!served) throw RemoteError{kRefused, "what is served is no configuration"};
    Outcome const outcome = copyConfig(served, source->config);
    client.settle();
    print(outcome, json, io);
    return kDone;
  } catch (RemoteError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return e.exitCode;
  }
}

} // namespace Pbrctl
