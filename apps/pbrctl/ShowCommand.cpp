#include "pbrctl/Client.h"
#include "pbrctl/Commands.h"
#include "pbrctl/RootFile.h"

namespace Pbrctl {

int showFile(TreeFile const& file, bool json, Io io) {
  auto const root = loadRoot(file, io);
  return root ? showRoot(*root, json, io) : kRefused;
}

int showServed(std::string const& root, Remote const& remote, bool json, Io io) {
  try {
    Client client(remote);
    return showRoot(*client.mount(*servedRoot(root), Vyx::NboAttrLog::MountMode::read), json, io);
  } catch (RemoteError const& e) {
    io.err << "pbrctl: error: " << e.text << '\n';
    return e.exitCode;
  }
}

} // namespace Pbrctl
