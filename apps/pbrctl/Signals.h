// The wish of a user or a supervisor that a command end, which it then does in good order.

#pragma once

#include "Vyx/NboAttrLog/Loop.h"

#include <csignal>

namespace Pbrctl {

// How long a turn of a command may sleep that these signals end; they wake it.
inline constexpr Vyx::NboAttrLog::Duration kTurn = std::chrono::seconds(60);

// While it lives, SIGTERM and SIGINT wake the loop and are remembered.
// REQUIRES: one at a time; it ends before the loop.
class EndSignals {
public:
  explicit EndSignals(Vyx::NboAttrLog::Loop& loop);
  ~EndSignals();
  EndSignals(EndSignals const&) = delete;
  EndSignals& operator=(EndSignals const&) = delete;

  bool came() const;

private:
  struct sigaction forTerminate_;
  struct sigaction forInterrupt_;
};

} // namespace Pbrctl
