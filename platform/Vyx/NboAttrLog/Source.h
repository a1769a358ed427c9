// What an event loop drives: a link, or a place where links come from. Any loop can do it, `Loop` is one.

#pragma once

#include "Vyx/Ptr.h"

#include <chrono>
#include <optional>

namespace Vyx::NboAttrLog {

using Clock = std::chrono::steady_clock;
using Instant = Clock::time_point;
using Duration = Clock::duration;

inline constexpr Instant kNever = Instant::max();

// RETURNS kNever instead of an instant that the clock can't reach.
inline Instant after(Instant start, Duration limit) {
  return limit >= kNever - start ? kNever : start + limit;
}

// ORDER: in each turn of its loop, `readable` and `writable` as the descriptor is ready, `expire` when the
// deadline has passed, then `turn`. Descriptors are looked at level-triggered.
class Source : public PtrInterface {
public:
  // May change between turns; -1 when there is nothing to wait for but the deadline, or when the source tells
  // by `isReady` instead.
  virtual int fd() const = 0;
  virtual bool wantsRead() const { return true; }
  virtual bool wantsWrite() const { return false; }
  // For a source without descriptor: whether `readable` or `writable` would find something to do.
  virtual bool isReady() const { return false; }
  // A source that has ended is let go by its loop.
  virtual bool hasEnded() const = 0;

  // These may be called at any time; when there is nothing to do they do nothing.
  virtual void readable() {}
  virtual void writable() {}
  virtual void turn() {}
  // Waits until something is there to read, without a limit, and then is `readable`: one system call for
  // both. For a loop that has nothing else to wait for. RETURNS false, at once, when this can't be done.
  virtual bool receive() { return false; }

  virtual Instant nextDeadline() const { return kNever; }
  virtual void expire(Instant now) { static_cast<void>(now); }
};

} // namespace Vyx::NboAttrLog
