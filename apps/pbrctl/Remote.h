// What the commands that talk with a server say where the server is and how long they wait.

#pragma once

#include "Vyx/NboAttrLog/Address.h"
#include "Vyx/NboAttrLog/Source.h"
#include "Vyx/String8.h"

#include <string>

namespace Pbrctl {

struct Remote {
  Vyx::NboAttrLog::Address address;
  Vyx::NboAttrLog::Duration timeout = std::chrono::seconds(10);
};

// Why a command couldn't do its work with a server, and the exit code for it.
struct RemoteError {
  int exitCode;
  std::string text;
};

// That the server doesn't give what is under the path; the words are its own.
RemoteError refusal(Vyx::Name const& path, std::string const& words);

// As the option --socket has it.
std::string socketText(Vyx::NboAttrLog::Address const& address);

} // namespace Pbrctl
