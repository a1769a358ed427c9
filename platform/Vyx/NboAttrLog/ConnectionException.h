// A connection, or a place to be connected to, that couldn't be made.

#pragma once

#include "Vyx/Exception.h"

namespace Vyx::NboAttrLog {

class ConnectionException : public Exception {
public:
  using Exception::Exception;
};

} // namespace Vyx::NboAttrLog
