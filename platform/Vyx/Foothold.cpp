#include "Vyx/Foothold.h"

#include <utility>

namespace Vyx {

thread_local constinit Foothold* Foothold::linked_ = nullptr;

Foothold& Foothold::operator=(Foothold const& o) {
  if (!o.holds()) {
    memberIs(o.member_);
    return *this;
  }
  Ptr<PtrInterface> arriving(o.member_);
  Ptr<PtrInterface> const leaving = release();
  member_ = arriving.vyxDetach();
  return *this;
}

void Foothold::memberIs(PtrInterface* member) {
  if (isLinked()) return linkedMemberIs(member);
  Ptr<PtrInterface> const leaving = release();
  member_ = member;
  secure();
}

Ptr<PtrInterface> Foothold::release() {
  PtrInterface* const leaving = std::exchange(member_, nullptr);
  if (!isLinked()) return Ptr<PtrInterface>::vyxAdopt(leaving);
  unlink();
  return {};
}

void Foothold::holdLinked() {
  Foothold* at = std::exchange(linked_, nullptr);
  while (at) {
    if (at->member_) at->member_->vyxReferenceInc();
    at->holder_ = nullptr;
    at = std::exchange(at->next_, nullptr);
  }
}

} // namespace Vyx
