// The reactors that a notification round calls: those that were in the list when it began, each held until it
// has been called.
//
// The hold is taken only when it matters. While nobody touches the list and no counted object ends,
// walking the list itself is the same as walking a copy of it; the moment before either happens, every
// running round takes its holds (holdAll). So a quiet round counts nothing and allocates nothing, and a round
// in which something happens is a true snapshot. Up to 16 held reactors stand in the round itself.
//
// Invariants:
// (1) Running rounds of a thread form a stack, the innermost first.
// (2) A round that holds never looks at the list again.

#pragma once

#include "Vyx/ReactorList.h"

#include <array>

namespace Vyx {

class ReactorSnapshot {
public:
  using Reactor = Entity::NotifieeConst;

  explicit ReactorSnapshot(ReactorList const& list) : current_(list.head()), outer_(active_) {
    active_ = this;
  }
  ReactorSnapshot(ReactorSnapshot const&) = delete;
  ReactorSnapshot& operator=(ReactorSnapshot const&) = delete;
  ~ReactorSnapshot() {
    active_ = outer_;
    if (__builtin_expect(held_ != nullptr, false)) releaseRest();
  }

  // The reactor to call; null at the end.
  Reactor* current() const { return current_; }

  // Lets the current reactor go and moves on, past those that nobody but this round holds any more.
  void advance() {
    if (__builtin_expect(held_ == nullptr, true))
      current_ = current_->next_;
    else
      advanceHeld();
  }

  static bool anyActive() { return active_ != nullptr; }
  // Every running round takes hold of what it still has to call.
  static void holdAll();

private:
  static constexpr std::size_t kInline = 16;

  void hold();
  void advanceHeld();
  void releaseRest();

  // The model of access is fixed, so that reading it costs one instruction even in a shared library.
  [[gnu::tls_model("initial-exec")]] static thread_local constinit ReactorSnapshot* active_;

  Reactor* current_;
  ReactorSnapshot* outer_;
  Reactor** held_ = nullptr; // Null while the round walks the list; else inline_, or a block of its own.
  // Written by hold().
  std::size_t index_;
  std::size_t count_;
  std::array<Reactor*, kInline> inline_;
};

} // namespace Vyx
