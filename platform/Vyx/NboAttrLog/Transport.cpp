#include "Vyx/NboAttrLog/Transport.h"

#include <cerrno>
#include <system_error>

namespace Vyx::NboAttrLog {

IoResult IoResult::fromErrno(int error) {
  switch (error) {
  case EAGAIN:
#if EWOULDBLOCK != EAGAIN
  case EWOULDBLOCK:
#endif
  case EINTR:
    return none(Kind::wouldBlock);
  case EPIPE:
  case ECONNRESET:
    return {Kind::closed, error, 0};
  default:
    return {Kind::failed, error, 0};
  }
}

std::string IoResult::words() const {
  if (error != 0) return std::generic_category().message(error);
  return is(Kind::closed) ? "closed by the peer" : "no error";
}

} // namespace Vyx::NboAttrLog
