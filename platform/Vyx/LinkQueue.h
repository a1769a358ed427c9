// The queue whose members carry rising unsigned keys that may wrap around.
//
// A member T derives from PtrInterface and has `fwkQkey()` and the counted link `fwkQNext_`.

#pragma once

#include "Vyx/BaseCollection.h"

namespace Vyx {

template <class T, class K> class LinkQueue : public BaseRefCollection<T> {
public:
  using Key = K;
  class IteratorConstBase;
  class IteratorConst;
  class Iterator;

  ~LinkQueue() override {
    while (head_) deq();
  }

  std::uint32_t version() const { return version_; }
  std::uint32_t count() const { return count_; }
  T* head() const { return static_cast<T*>(head_.ptr()); }
  T* tail() const { return tail_; }
  static T* next(T const* at) { return static_cast<T*>(at->fwkQNext_.ptr()); }

  // REQUIRES: the member's key follows the tail's key.
  void enq(Ptr<T> const& member) {
    (tail_ ? tail_->fwkQNext_ : head_) = Ptr<PtrInterface>(member);
    tail_ = member.ptr();
    ++count_;
    ++version_;
  }
  // RETURNS the head, taken out; null when the queue is empty.
  Ptr<T> deq() { return head_ ? memberDel(head()) : Ptr<T>(); }
  // RETURNS the member, taken out. REQUIRES: it is in this queue.
  Ptr<T> memberDel(T* member);

  // RETURNS the member of that key, or null.
  T* find(K key) const {
    T* at = startAt(key);
    return at && at->fwkQkey() == key ? at : nullptr;
  }
  // RETURNS the member of that key, else the first behind it in the order of a queue whose keys may have
  // wrapped, else null.
  T* startAt(K key) const;

private:
  // The first from `at` on whose key isn't below, or at which the keys fall.
  static T* notBelow(T* at, K key) {
    K before = at->fwkQkey();
    while (at && at->fwkQkey() >= before && at->fwkQkey() < key) {
      before = at->fwkQkey();
      at = next(at);
    }
    return at;
  }
  static T* firstFall(T* at) {
    K before = at->fwkQkey();
    while (at && at->fwkQkey() >= before) {
      before = at->fwkQkey();
      at = next(at);
    }
    return at;
  }

  std::uint32_t version_ = 0;
  std::uint32_t count_ = 0;
  Ptr<PtrInterface> head_;
  T* tail_ = nullptr; // In the chain from head_; null when the queue is empty.
};

// Stands on a member, which can't end meanwhile, or on none.
template <class T, class K> class LinkQueue<T, K>::IteratorConstBase : public BaseIteratorConst<T> {
public:
  bool hasBookmark() const override { return *this && key() != K(); }
  K key() const { return this->current()->fwkQkey(); }
  // REQUIRES: the iterator stands on a member.
  void advance();

protected:
  IteratorConstBase(LinkQueue const* queue, T* member)
      : BaseIteratorConst<T>(queue, member), version_(queue ? queue->version() : 0) {}

private:
  std::uint32_t version_;
  std::uint32_t stepState_ = 0; // Cleared by each advance.
};

template <class T, class K> class LinkQueue<T, K>::IteratorConst : public IteratorConstBase {
public:
  IteratorConst() : IteratorConstBase(nullptr, nullptr) {}
  explicit IteratorConst(LinkQueue const& queue) : IteratorConstBase(&queue, queue.head()) {}
  IteratorConst(LinkQueue const& queue, K key) : IteratorConstBase(&queue, queue.startAt(key)) {}
  IteratorConst& operator++() {
    this->advance();
    return *this;
  }
};

template <class T, class K> class LinkQueue<T, K>::Iterator : public IteratorConst {
public:
  using IteratorConst::IteratorConst;
};

template <class T, class K> Ptr<T> LinkQueue<T, K>::memberDel(T* member) {
  T* before = nullptr;
  for (T* at = head(); at && at != member; at = next(at)) before = at;
  Ptr<PtrInterface>& holder = before ? before->fwkQNext_ : head_;
  Foothold::holdAll();
  Ptr<T> held(member);
  Ptr<PtrInterface> leaving = std::move(holder);
  holder = std::move(held->fwkQNext_);
  if (tail_ == member) tail_ = before;
  --count_;
  ++version_;
  return held;
}

template <class T, class K> T* LinkQueue<T, K>::startAt(K key) const {
  if (!head_) return nullptr;
  if (head()->fwkQkey() == key) return head();
  if (tail_->fwkQkey() == key) return tail_;
  bool const wrapped = tail_->fwkQkey() < head()->fwkQkey();
  if (wrapped && !(key < head()->fwkQkey())) return notBelow(head(), key);
  if (tail_->fwkQkey() < key) return nullptr;
  if (!wrapped) return notBelow(head(), key);
  T* fallen = firstFall(head());
  while (fallen && fallen->fwkQkey() < key) fallen = next(fallen);
  return fallen;
}

template <class T, class K> void LinkQueue<T, K>::IteratorConstBase::advance() {
  auto const* queue = static_cast<LinkQueue const*>(this->collection_);
  if (version_ == queue->version()) {
    this->currentIs(next(this->current()));
  } else {
    T* at = queue->startAt(key());
    if (at && at->fwkQkey() == key()) at = next(at);
    this->currentIs(at);
    version_ = queue->version();
  }
  stepState_ = 0;
}

} // namespace Vyx
