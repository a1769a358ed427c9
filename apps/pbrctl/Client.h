// A command's connection to a server: one thing after the other, each within the time that the command has.

#pragma once

#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "pbrctl/Remote.h"
#include "pbrctl/Served.h"

namespace Pbrctl {

class Client final : private Vyx::NboAttrLog::Peer::Watcher {
public:
  // THROWS, all: RemoteError.
  explicit Client(Remote const& remote);
  ~Client();
  Client(Client const&) = delete;
  Client& operator=(Client const&) = delete;

  // RETURNS the root once it is whole.
  Vyx::Ptr<Vyx::Entity> mount(ServedRoot const& root, Vyx::NboAttrLog::MountMode mode);
  // Returns once the server has applied all changes made so far.
  void settle();

private:
  using Peer = Vyx::NboAttrLog::Peer;

  void onSynced(Peer&, Vyx::Name const& path) override { synced_ = path; }
  void onRefused(Peer&, Vyx::Name const& path, std::string const& words) override;
  void onAnswer(Peer&, unsigned long long number) override { answered_ = number; }
  void onEnded(Peer&, Vyx::NboAttrLog::Closing const& closing) override { ended_ = closing.words; }

  // RETURNS whether the condition holds, or false when the time is over.
  // THROWS: RemoteError when the server refuses or the connection ends before.
  template <class Condition> bool holdsInTime(Condition condition);
  [[noreturn]] void noAnswer() const;

  Vyx::NboAttrLog::Address address_;
  Vyx::NboAttrLog::Instant until_;
  Vyx::NboAttrLog::Loop loop_;
  Vyx::Ptr<Vyx::NboAttrLog::Roots> roots_;
  Vyx::Ptr<Peer> peer_;
  Vyx::Name synced_;
  std::optional<RemoteError> refused_;
  std::string ended_;
  unsigned long long answered_ = 0;
};

} // namespace Pbrctl
