#include "Vyx/ReactorSnapshot.h"

namespace Vyx {

thread_local constinit ReactorSnapshot* ReactorSnapshot::active_ = nullptr;

void ReactorSnapshot::holdAll() {
  for (ReactorSnapshot* round = active_; round; round = round->outer_)
    if (!round->held_) round->hold();
}

void ReactorSnapshot::hold() {
  count_ = index_ = 0;
  for (Reactor* at = current_; at; at = at->next_) ++count_;
  Reactor** to = held_ = count_ > kInline ? new Reactor*[count_] : inline_.data();
  for (Reactor* at = current_; at; at = at->next_) {
    at->vyxReferenceInc();
    *to++ = at;
  }
}

void ReactorSnapshot::advanceHeld() {
  do {
    current_ = index_ + 1 < count_ ? held_[index_ + 1] : nullptr;
    held_[index_++]->vyxReferenceDec();
  } while (current_ && current_->references() == 1);
}

void ReactorSnapshot::releaseRest() {
  while (index_ < count_) held_[index_++]->vyxReferenceDec();
  if (held_ != inline_.data()) delete[] held_;
}

} // namespace Vyx
