#include "Vyx/NboAttrLog/ConnectionException.h"
#include "pbrctl/Commands.h"
#include "pbrctl/Served.h"
#include "pbrctl/Server.h"
#include "pbrctl/Signals.h"
#include "pbrctl/Tree.h"

namespace Pbrctl {

namespace {

Vyx::Ptr<Pbr::Config> configFrom(std::string const& file, Io io) {
  if (file.empty()) return Pbr::configFactory("pbr");
  auto const loaded = loadTree(file, io);
  return loaded ? loaded->config : nullptr;
}

} // namespace

int serve(ServeOptions const& options, Io io) {
  auto const config = configFrom(options.configFile, io);
  if (!config) return kRefused;
  Vyx::NboAttrLog::Loop loop;
  EndSignals const signals(loop);
  Server server(loop, config, io.err);
  try {
    auto const address = server.listen(options.address, options.mayServeOtherHosts);
    io.out << "serving " << kConfigPath << " at " << socketText(address) << std::endl;
  } catch (Vyx::NboAttrLog::ConnectionException const& e) {
    io.err << "pbrctl: error: " << e.what() << '\n';
    return kRefused;
  }
  while (!signals.came()) {
    loop.turn(kTurn);
    server.letGo();
  }
  server.end();
  return kDone;
}

} // namespace Pbrctl
