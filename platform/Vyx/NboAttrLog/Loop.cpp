#include "Vyx/NboAttrLog/Loop.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/PollTimeout.h"

#include <algorithm>
#include <cerrno>
#include <sys/eventfd.h>

namespace Vyx::NboAttrLog {

namespace {

constexpr short kBroken = POLLERR | POLLHUP | POLLNVAL;

} // namespace

Loop::Loop(Waking waking) {
  if (waking == Waking::never) return;
  wakeUp_ = Descriptor(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
  if (!wakeUp_) throw ConnectionException("can't make a descriptor for an event loop");
}

void Loop::sourceIs(Ptr<Source> const& source) { sources_.push_back(source); }

void Loop::sourceDel(Ptr<Source> const& source) {
  std::replace(sources_.begin(), sources_.end(), source, Ptr<Source>());
}

std::size_t Loop::sources() const {
  return sources_.size() -
         static_cast<std::size_t>(std::count(sources_.begin(), sources_.end(), Ptr<Source>()));
}

Loop::TimerId Loop::timerIs(Instant when, Function function) {
  timers_.emplace(TimerKey(when, ++lastId_), std::move(function));
  return lastId_;
}

void Loop::timerDel(TimerId id) {
  std::erase_if(timers_, [id](auto const& timer) { return timer.first.second == id; });
}

Loop::TimerId Loop::turnEndIs(Function function) {
  turnEnds_.emplace(++lastId_, std::move(function));
  return lastId_;
}

void Loop::turnEndDel(TimerId id) { turnEnds_.erase(id); }

// Calls for those that are there now, unless they are taken away or end meanwhile.
template <class Call> void Loop::forEachSource(Call call) {
  for (std::size_t i = 0, end = sources_.size(); i < end; ++i) {
    Ptr<Source> const source = sources_[i];
    if (source && !source->hasEnded()) call(*source);
  }
}

// Of what was taken away, or has ended. Not while a walk over the sources goes by position.
void Loop::letGo() {
  std::erase_if(sources_, [](auto const& source) { return !source || source->hasEnded(); });
}

// Asks the sources what they wait for.
void Loop::collect() {
  letGo();
  polled_.assign(1, {wakeUp_.get(), POLLIN, 0});
  waiting_.clear();
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    Source const& source = *sources_[i];
    int const fd = source.fd();
    int const events = (source.wantsRead() ? POLLIN : 0) | (source.wantsWrite() ? POLLOUT : 0);
    if (fd < 0 ? !source.isReady() : events == 0) continue;
    polled_.push_back({fd, static_cast<short>(events), 0});
    waiting_.push_back(i);
  }
}

int Loop::timeout(Instant now, Instant limit) const {
  Instant until = limit;
  for (auto const& source : sources_) until = std::min(until, source->nextDeadline());
  if (!timers_.empty()) until = std::min(until, timers_.begin()->first.first);
  bool const isReady =
      std::any_of(polled_.begin() + 1, polled_.end(), [](pollfd const& p) { return p.fd < 0; });
  return isReady ? 0 : pollTimeout(until, now);
}

void Loop::serve() {
  for (std::size_t i = 0; i < waiting_.size(); ++i) {
    Ptr<Source> const source = sources_[waiting_[i]];
    if (source && !source->hasEnded()) serve(*source, polled_[i + 1]);
  }
}

void Loop::serve(Source& source, pollfd const& found) {
  bool const both = found.fd < 0;
  // A broken stream is read to its end first: the peer may have said why.
  if (both || found.revents & (POLLIN | kBroken)) source.readable();
  if (!source.hasEnded() && (both || found.revents & (POLLOUT | kBroken))) source.writable();
}

void Loop::expire(Instant now) {
  forEachSource([now](Source& source) {
    if (source.nextDeadline() <= now) source.expire(now);
  });
}

void Loop::runTimers(Instant now) {
  // Those that a timer makes wait for the next turn.
  TimerId const last = lastId_;
  for (auto next = timers_.begin(); next != timers_.end() && next->first.first <= now;) {
    if (next->first.second > last) {
      ++next;
      continue;
    }
    Function const function = std::move(next->second);
    TimerKey const key = next->first;
    timers_.erase(next);
    function();
    next = timers_.lower_bound(key);
  }
}

void Loop::endTurn() {
  TimerId const last = lastId_;
  for (auto next = turnEnds_.begin(); next != turnEnds_.end() && next->first <= last;) {
    TimerId const id = next->first;
    Function const function = next->second; // Which may take itself away.
    function();
    next = turnEnds_.upper_bound(id);
  }
  forEachSource([](Source& source) { source.turn(); });
  letGo();
}

// Waits for one source by way of its reading, if there is nothing else to wait for.
bool Loop::receives() {
  if (wakeUp_ || waiting_.size() != 1 || polled_[1].events != POLLIN) return false;
  Ptr<Source> const source = sources_[waiting_[0]];
  return source->receive();
}

void Loop::waitAndServe(int timeout) {
  if (timeout < 0 && receives()) return;
  if (::poll(polled_.data(), polled_.size(), timeout) < 0) {
    for (pollfd& entry : polled_) entry.revents = 0;
  }
  if (polled_[0].revents != 0) {
    eventfd_t count;
    ::eventfd_read(wakeUp_.get(), &count);
  }
  serve();
}

void Loop::turn(Duration limit) {
  Instant const begun = Clock::now();
  collect();
  waitAndServe(timeout(begun, after(begun, limit)));
  Instant const now = Clock::now();
  expire(now);
  runTimers(now);
  endTurn();
}

bool Loop::runUntil(std::function<bool()> const& condition, Duration limit) {
  Instant const until = after(Clock::now(), limit);
  while (!condition()) {
    Instant const now = Clock::now();
    if (now >= until) return false;
    turn(until - now);
  }
  return true;
}

void Loop::wake() noexcept {
  int const saved = errno;
  ::eventfd_write(wakeUp_.get(), 1);
  errno = saved;
}

} // namespace Vyx::NboAttrLog
