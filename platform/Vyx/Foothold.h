// What an iterator stands on: a member of a collection, which can't end meanwhile, or nothing.
//
// The hold is taken only when it matters. A member that is in its collection is held by that; the moment
// before any member leaves any collection, every iterator takes its own hold (holdAll). So a quiet walk
// counts nothing. Where counts are locked operations, since there are other threads, an iterator holds its
// member from the start.
//
// Invariants:
// (1) One that is linked counts nothing; it stands on a member that is in a collection, or on nothing.
// (2) One that isn't linked holds what it stands on.
// (3) Those that are linked are in the list of one thread, which is the only one that touches counted
// objects.

#pragma once

#include "Vyx/Ptr.h"

namespace Vyx {

class Foothold {
public:
  Foothold() = default;
  // REQUIRES: the member is in a collection, or null.
  explicit Foothold(PtrInterface* member) : member_(member) { secure(); }
  Foothold(Foothold const& o) : member_(o.member_) {
    if (o.holds())
      member_->vyxReferenceInc(); // It may have left its collection.
    else
      secure();
  }
  Foothold& operator=(Foothold const& o);
  ~Foothold() {
    if (isLinked())
      unlink();
    else if (member_)
      member_->vyxReferenceDec();
  }

  PtrInterface* member() const { return member_; }

  // Moves on. REQUIRES: the member is in a collection, or null.
  void memberIs(PtrInterface* member);
  // The same, as short as can be. REQUIRES: it is linked.
  void linkedMemberIs(PtrInterface* member) { member_ = member; }

  // Whether it counts nothing; see above.
  bool isLinked() const { return holder_ != nullptr; }

  // Stands on nothing from now on. RETURNS the hold, null when there was none.
  Ptr<PtrInterface> release();

  // Called before a member leaves its collection: every linked one takes its hold.
  static void holdAll() {
    if (__builtin_expect(linked_ != nullptr, false)) holdLinked();
  }

private:
  bool holds() const { return member_ && !isLinked(); }

  // REQUIRES: it is not linked, and its member isn't held yet.
  void secure() {
    if (!member_) return;
    if (__builtin_expect(VFPtrInterface::enableThreadSafePointers, false))
      member_->vyxReferenceInc();
    else
      link();
  }
#if __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer" // Its end unlinks it; g++ 12 doesn't see that.
#endif
  void link() {
    next_ = linked_;
    if (next_) next_->holder_ = &next_;
    holder_ = &linked_;
    linked_ = this;
  }
#if __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif
  void unlink() {
    *holder_ = next_;
    if (next_) next_->holder_ = holder_;
    holder_ = nullptr;
  }
  static void holdLinked();

  // The model of access is fixed, so that reading it costs one instruction even in a shared library.
  [[gnu::tls_model("initial-exec")]] static thread_local constinit Foothold* linked_;

  PtrInterface* member_ = nullptr;
  Foothold* next_ = nullptr;    // In the list of those that hold nothing.
  Foothold** holder_ = nullptr; // Where the pointer to this one is; null when it isn't linked.
};

} // namespace Vyx
