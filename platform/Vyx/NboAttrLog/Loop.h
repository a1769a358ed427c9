// A small event loop on poll(2), for those who have none. One thread.
//
// ORDER: one turn waits, then serves what is ready, expires what is due, runs timers, then the functions for
// its end, then `turn` of every source, which sends what all of these have written.
//
// Invariants:
// (1) Nothing waits without a bound: every wait names a limit, be it the longest there is.
// (2) Sources, timers and functions may be added and taken away at any time, also from within a turn. What is
//     taken away is not called any more; what is added is served from the next turn on.

#pragma once

#include "Vyx/NboAttrLog/Descriptor.h"
#include "Vyx/NboAttrLog/Source.h"

#include <functional>
#include <map>
#include <poll.h>
#include <vector>

namespace Vyx::NboAttrLog {

class Loop {
public:
  using Function = std::function<void()>;
  using TimerId = std::uint64_t;

  // Whether `wake` will be called. A loop that nobody wakes and that serves a single connection waits in the
  // read itself when a turn has no limit and no timer: what comes is there a system call earlier.
  enum class Waking : unsigned char { possible, never };

  // THROWS: ConnectionException when the system gives no descriptor for waking it.
  explicit Loop(Waking waking = Waking::possible);
  Loop(Loop const&) = delete;
  Loop& operator=(Loop const&) = delete;

  // The loop holds the source until the end of the turn in which it has ended or is taken away.
  void sourceIs(Ptr<Source> const& source);
  void sourceDel(Ptr<Source> const& source);
  std::size_t sources() const;

  // Calls once, at or after `when`. Of two with one time, the one that was made first runs first.
  TimerId timerIs(Instant when, Function function);
  TimerId timerIn(Duration delay, Function function) {
    return timerIs(after(Clock::now(), delay), std::move(function));
  }
  void timerDel(TimerId id);

  // Calls at the end of each turn, before what was written is sent.
  TimerId turnEndIs(Function function);
  void turnEndDel(TimerId id);

  // One turn, which waits for `limit` at most, or without limit for Duration::max(). REQUIRES, of both: not
  // from within a turn.
  void turn(Duration limit);
  // Turns until the condition holds, which is asked before each turn. RETURNS whether it holds.
  bool runUntil(std::function<bool()> const& condition, Duration limit);

  // Ends the wait of the current turn, or of the next one. May be called by a signal handler or another
  // thread. REQUIRES: Waking::possible.
  void wake() noexcept;

private:
  using TimerKey = std::pair<Instant, TimerId>;

  template <class Call> void forEachSource(Call call);
  void letGo();
  void collect();
  int timeout(Instant now, Instant limit) const;
  void waitAndServe(int timeout);
  bool receives();
  void serve();
  void serve(Source& source, pollfd const& found);
  void expire(Instant now);
  void runTimers(Instant now);
  void endTurn();

  Descriptor wakeUp_;                // An eventfd; none when nobody wakes the loop.
  std::vector<Ptr<Source>> sources_; // What is taken away leaves a null until the turn's end.
  std::vector<pollfd> polled_;       // The first is that of wakeUp_.
  std::vector<std::size_t> waiting_; // Which sources' entries of `polled_` follow.
  std::map<TimerKey, Function> timers_;
  std::map<TimerId, Function> turnEnds_;
  TimerId lastId_ = 0;
};

} // namespace Vyx::NboAttrLog
