// One direction of a connection, kept in a file byte by byte, hello included.

#pragma once

#include "Vyx/NboAttrLog/Descriptor.h"

#include <span>
#include <string>

namespace Vyx::NboAttrLog {

class Recording {
public:
  // Makes the file, or empties it.
  // THROWS: ConnectionException.
  explicit Recording(std::string path);

  // A failure ends the recording, and nothing else.
  void append(std::span<unsigned char const> bytes);
  // Why it ended before its time; empty while it goes on.
  std::string const& failure() const { return failure_; }

private:
  std::string path_;
  Descriptor file_;
  std::string failure_;
};

} // namespace Vyx::NboAttrLog
