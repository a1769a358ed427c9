#include "Vyx/ReactorList.h"

#include "Vyx/ReactorSnapshot.h"
#include "Vyx/StreamAdapter.h"

namespace Vyx {

namespace {

// Behind the reactor of a stream adapter stands the adapter, which has to leave its log.
void entityGone(PtrInterface const* behind) {
  auto const* adapter = dynamic_cast<StreamAdapter const*>(behind);
  if (adapter) const_cast<StreamAdapter*>(adapter)->vyxEntityGone();
}

} // namespace

void ReactorList::changing() {
  if (ReactorSnapshot::anyActive()) ReactorSnapshot::holdAll();
}

void ReactorList::linkHead(Link* reactor) {
  changing();
  reactor->next_ = head_;
  head_ = reactor;
  if (!tail_) tail_ = reactor;
  ++count_;
  ++version_;
}

void ReactorList::linkTail(Link* reactor) {
  changing();
  reactor->next_ = nullptr;
  (tail_ ? tail_->next_ : head_) = reactor;
  tail_ = reactor;
  ++count_;
  ++version_;
}

void ReactorList::unlink(Link* reactor) {
  Link* before = nullptr;
  Link* at = head_;
  while (at && at != reactor) {
    before = at;
    at = at->next_;
  }
  if (!at) return;
  changing();
  (before ? before->next_ : head_) = at->next_;
  if (tail_ == at) tail_ = before;
  at->next_ = nullptr;
  --count_;
  ++version_;
}

void ReactorList::deleteAll() {
  ++version_;
  if (!head_) return;
  changing();
  Link* at = head_;
  head_ = tail_ = nullptr;
  count_ = 0;
  while (at) {
    Link* next = at->next_;
    at->next_ = nullptr;
    at->notifier_ = nullptr;
    entityGone(at->vyxRawReactor());
    at = next;
  }
}

} // namespace Vyx
