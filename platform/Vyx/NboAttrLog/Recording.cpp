#include "Vyx/NboAttrLog/Recording.h"

#include "Vyx/NboAttrLog/ConnectionException.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>

namespace Vyx::NboAttrLog {

namespace {

constexpr mode_t kMode = 0600; // What goes over a connection is for its two sides.

std::string wordsFor(std::string const& path, int error) {
  return "can't record to " + path + ": " + std::generic_category().message(error);
}

} // namespace

Recording::Recording(std::string path)
    : path_(std::move(path)), file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode)) {
  if (!file_) throw ConnectionException(wordsFor(path_, errno));
}

void Recording::append(std::span<unsigned char const> bytes) {
  while (!bytes.empty() && failure_.empty()) {
    auto const count = ::write(file_.get(), bytes.data(), bytes.size());
    if (count > 0)
      bytes = bytes.subspan(static_cast<std::size_t>(count));
    else if (errno != EINTR)
      failure_ = wordsFor(path_, errno);
  }
}

} // namespace Vyx::NboAttrLog
