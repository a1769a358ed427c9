#include "pbrctl/Signals.h"

#include <atomic>

namespace Pbrctl {

namespace {

std::atomic<Vyx::NboAttrLog::Loop*> wakes{nullptr};
std::atomic<bool> hasCome{false};
static_assert(std::atomic<Vyx::NboAttrLog::Loop*>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

void handleSignal(int) {
  hasCome = true;
  if (auto* const loop = wakes.load()) loop->wake();
}

void handle(int number, struct sigaction& before) {
  struct sigaction action {};
  action.sa_handler = &handleSignal;
  ::sigaction(number, &action, &before);
}

} // namespace

EndSignals::EndSignals(Vyx::NboAttrLog::Loop& loop) {
  hasCome = false;
  wakes = &loop;
  handle(SIGTERM, forTerminate_);
  handle(SIGINT, forInterrupt_);
}

EndSignals::~EndSignals() {
  ::sigaction(SIGTERM, &forTerminate_, nullptr);
  ::sigaction(SIGINT, &forInterrupt_, nullptr);
  wakes = nullptr;
}

bool EndSignals::came() const { return hasCome; }

} // namespace Pbrctl
