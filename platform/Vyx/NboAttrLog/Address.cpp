#include "Vyx/NboAttrLog/Address.h"

#include "Vyx/NboAttrLog/ConnectionException.h"

#include <arpa/inet.h>
#include <charconv>
#include <cstring>
#include <netinet/in.h>
#include <sys/un.h>

namespace Vyx::NboAttrLog {

namespace {

constexpr std::string_view kTcp = "tcp:";
constexpr std::string_view kUnix = "unix:";

std::uint16_t portFromText(std::string_view text, std::string_view whole) {
  std::uint16_t port = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (text.empty() || error != std::errc() || end != text.data() + text.size())
    throw ConnectionException("\"" + std::string(whole) + "\" has no port of 0 to 65535");
  return port;
}

SocketAddress of(UnixAddress const& address) {
  SocketAddress result;
  auto* to = reinterpret_cast<sockaddr_un*>(&result.storage);
  auto const length = address.path.size();
  if (length == 0 || address.path.find('\0') != std::string::npos)
    throw ConnectionException("a socket's path is empty, or has a zero byte in it");
  if (length >= sizeof to->sun_path)
    throw ConnectionException("the path " + address.path + " is too long for a socket: it has " +
                              std::to_string(length) + " bytes, " + std::to_string(sizeof to->sun_path - 1) +
                              " are possible");
  to->sun_family = AF_UNIX;
  std::memcpy(to->sun_path, address.path.data(), length);
  result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length + 1);
  return result;
}

SocketAddress of(TcpAddress const& address) {
  SocketAddress result;
  auto* v4 = reinterpret_cast<sockaddr_in*>(&result.storage);
  auto* v6 = reinterpret_cast<sockaddr_in6*>(&result.storage);
  if (inet_pton(AF_INET, address.host.c_str(), &v4->sin_addr) == 1) {
    v4->sin_family = AF_INET;
    v4->sin_port = htons(address.port);
    result.length = sizeof *v4;
  } else if (inet_pton(AF_INET6, address.host.c_str(), &v6->sin6_addr) == 1) {
    v6->sin6_family = AF_INET6;
    v6->sin6_port = htons(address.port);
    result.length = sizeof *v6;
  } else {
    throw ConnectionException("the host \"" + address.host + "\" is not an address in digits");
  }
  return result;
}

} // namespace

Address addressFromText(std::string_view text) {
  if (text.starts_with(kUnix)) return UnixAddress{std::string(text.substr(kUnix.size()))};
  if (!text.starts_with(kTcp)) return UnixAddress{std::string(text)};

  std::string_view const rest = text.substr(kTcp.size());
  auto const colon = rest.rfind(':');
  if (colon == std::string_view::npos) return TcpAddress{.port = portFromText(rest, text)};
  std::string_view host = rest.substr(0, colon);
  if (host.size() >= 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
  if (host == "localhost") host = "127.0.0.1";
  TcpAddress const address{std::string(host), portFromText(rest.substr(colon + 1), text)};
  of(address);
  return address;
}

std::string addressText(Address const& address) {
  if (auto const* onThisHost = std::get_if<UnixAddress>(&address)) return onThisHost->path;
  auto const& tcp = std::get<TcpAddress>(address);
  bool const isV6 = tcp.host.find(':') != std::string::npos;
  return (isV6 ? "[" + tcp.host + "]" : tcp.host) + ":" + std::to_string(tcp.port);
}

SocketAddress socketAddressOf(Address const& address) {
  return std::visit([](auto const& kind) { return of(kind); }, address);
}

TcpAddress tcpAddressOf(SocketAddress const& address) {
  char text[INET6_ADDRSTRLEN] = "";
  if (address.family() == AF_INET6) {
    auto const* v6 = reinterpret_cast<sockaddr_in6 const*>(&address.storage);
    inet_ntop(AF_INET6, &v6->sin6_addr, text, sizeof text);
    return {text, ntohs(v6->sin6_port)};
  }
  auto const* v4 = reinterpret_cast<sockaddr_in const*>(&address.storage);
  inet_ntop(AF_INET, &v4->sin_addr, text, sizeof text);
  return {text, ntohs(v4->sin_port)};
}

bool isLoopback(SocketAddress const& address) {
  if (address.family() == AF_UNIX) return true;
  if (address.family() == AF_INET6)
    return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<sockaddr_in6 const*>(&address.storage)->sin6_addr);
  auto const* v4 = reinterpret_cast<sockaddr_in const*>(&address.storage);
  return ntohl(v4->sin_addr.s_addr) >> 24 == IN_LOOPBACKNET;
}

} // namespace Vyx::NboAttrLog
