// The keyed collection that is ordered by its keys.
//
// A member T derives from PtrInterface and has `fwkKey()` and `fwkRbLinks_`.
//
// ORDER: ascending by key. A loop over an iterator may insert and delete anything, as with a HashMap.

#pragma once

#include "Vyx/RbTreeMapGeneric.h"

#include <cstddef>

namespace Vyx {

template <class T, class K> class RbTreeMap : public BaseRefCollection<T, RbTreeMapGeneric> {
public:
  using Key = K;
  class IteratorConstBase;
  class IteratorConst;
  class Iterator;
  class Walk;

  RbTreeMap() = default;
  RbTreeMap(RbTreeMap const& o) : BaseRefCollection<T, RbTreeMapGeneric>() { copyMembers(o); }
  // A deep copy: the two trees share no member. REQUIRES: a member can be made from its key and value.
  RbTreeMap& operator=(RbTreeMap const& o);
  ~RbTreeMap() override {
    if constexpr (requires(T & member) { member.vyxParentGone(); })
      for (IteratorConst at(*this); at; ++at) at.current()->vyxParentGone();
    this->deleteAllG(link());
  }

  // RETURNS the member of that key, or null.
  T* find(K const& key) const {
    T* at = root();
    while (at) {
      K const& there = at->fwkKey();
      if (there == key) return at;
      at = key < there ? left(at) : right(at);
    }
    return nullptr;
  }
  // RETURNS the member of that key, else the next, else null.
  T* startAt(K const& key) const;
  // RETURNS the first member after that key, or null.
  T* findNext(K key) const;
  T* first() const { return root() ? leftmost(root()) : nullptr; }

  // One look for a key: its member, or, where that is null, the place where the key would be linked. Good
  // until the tree changes.
  struct Place {
    T* member;
    T* above; // Null in an empty tree.
    bool toLeft;
    std::uint32_t version;
  };
  // Quick for a key behind all others: members mostly come in order.
  Place place(K const& key) const;

  // A member of the same key leaves; the new one keeps its own value.
  void memberIs(Ptr<T> const& member) { newMember(member, place(member->fwkKey())); }
  void newMember(Ptr<T> const& member) { memberIs(member); }
  // The same, where `place` was found for the member's key. A place that is no longer good is looked for
  // again.
  void newMember(Ptr<T> const& member, Place const& place);

  // RETURNS the member, unlinked; null when the key is absent.
  Ptr<T> _memberDel(K key) {
    Ptr<T> member = find(key);
    if (member) memberDel(member);
    return member;
  }
  // REQUIRES: the member is in this tree.
  void memberDel(Ptr<T> const& member) { this->_memberDelG(link(), 0, member.ptr()); }

private:
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
  // A member derives from PtrInterface alone, so the place in T is the place in the counted base.
  static constexpr unsigned link() { return offsetof(T, fwkRbLinks_); }
#pragma GCC diagnostic pop
  static T* typed(Ptr<PtrInterface> const& node) { return static_cast<T*>(node.ptr()); }
  static T* left(T const* at) { return typed(at->fwkRbLinks_.left); }
  static T* right(T const* at) { return typed(at->fwkRbLinks_.right); }
  static T* above(T const* at) {
    return at->fwkRbLinks_.parent
               ? static_cast<T*>(RbTreeMapGeneric::memberOf(at->fwkRbLinks_.parent, link()))
               : nullptr;
  }
  static T* leftmost(T* at) {
    while (T* lower = left(at)) at = lower;
    return at;
  }
  // The next in order by the links alone.
  static T* successor(T* at) {
    if (T* lower = right(at)) return leftmost(lower);
    T* parent = above(at);
    while (parent && right(parent) == at) {
      at = parent;
      parent = above(at);
    }
    return parent;
  }
  T* root() const { return typed(this->root_); }
  void copyMembers(RbTreeMap const& o);
};

// Walks the members in order and holds nothing. REQUIRES: the tree doesn't change and no member ends
// meanwhile.
template <class T, class K> class RbTreeMap<T, K>::Walk {
public:
  explicit Walk(RbTreeMap const& map) : at_(map.first()) {}
  explicit operator bool() const { return at_ != nullptr; }
  T& operator*() const { return *at_; }
  T* operator->() const { return at_; }
  Walk& operator++() {
    at_ = successor(at_);
    return *this;
  }

private:
  T* at_;
};

// Stands on a member, which can't end meanwhile, or on none.
template <class T, class K> class RbTreeMap<T, K>::IteratorConstBase : public BaseIteratorConst<T> {
public:
  bool hasBookmark() const override { return *this && !(K(key()) == K()); }
  // REQUIRES: the iterator stands on a member.
  void advance();
  decltype(auto) key() const { return this->current()->fwkKey(); }
  std::uint32_t version() const { return version_; }

protected:
  IteratorConstBase(RbTreeMap const* map, T* member)
      : BaseIteratorConst<T>(map, member), version_(map ? map->version() : 0) {}

private:
  std::uint32_t version_;
  std::uint32_t seekState_ = 0; // Cleared by each re-seek.
};

template <class T, class K> class RbTreeMap<T, K>::IteratorConst : public IteratorConstBase {
public:
  IteratorConst() : IteratorConstBase(nullptr, nullptr) {}
  explicit IteratorConst(RbTreeMap const& map) : IteratorConstBase(&map, map.first()) {}
  IteratorConst(RbTreeMap const& map, K const& key) : IteratorConstBase(&map, map.startAt(key)) {}
  IteratorConst& operator++() {
    this->advance();
    return *this;
  }
};

template <class T, class K> class RbTreeMap<T, K>::Iterator : public IteratorConst {
public:
  using IteratorConst::IteratorConst;
};

template <class T, class K> T* RbTreeMap<T, K>::startAt(K const& key) const {
  T* candidate = nullptr;
  T* at = root();
  while (at) {
    K const& there = at->fwkKey();
    if (there == key) return at;
    if (key < there) {
      candidate = at;
      at = left(at);
    } else {
      at = right(at);
    }
  }
  return candidate;
}

template <class T, class K> T* RbTreeMap<T, K>::findNext(K key) const {
  T* candidate = nullptr;
  T* at = root();
  while (at) {
    K const& there = at->fwkKey();
    if (there == key) {
      T* lower = right(at);
      return lower ? leftmost(lower) : candidate;
    }
    if (key < there) {
      candidate = at;
      at = left(at);
    } else {
      at = right(at);
    }
  }
  return candidate;
}

template <class T, class K> typename RbTreeMap<T, K>::Place RbTreeMap<T, K>::place(K const& key) const {
  Place found{nullptr, nullptr, true, this->version_};
  T* at = root();
  if (!at) return found;
  T* last = at;
  while (T* higher = right(last)) last = higher;
  if (last->fwkKey() < key) return {nullptr, last, false, this->version_};
  for (; at; at = found.toLeft ? left(at) : right(at)) {
    K const& there = at->fwkKey();
    if (there == key) {
      found.member = at;
      break;
    }
    found.above = at;
    found.toLeft = key < there;
  }
  return found;
}

template <class T, class K> void RbTreeMap<T, K>::newMember(Ptr<T> const& member, Place const& place) {
  if (__builtin_expect(place.version != this->version_, false)) return memberIs(member);
  if (place.member)
    this->memberReplace(link(), 0, Ptr<PtrInterface>(place.member), member);
  else
    this->memberNewChild(link(), 0, Ptr<PtrInterface>(place.above), member, place.toLeft);
}

template <class T, class K> RbTreeMap<T, K>& RbTreeMap<T, K>::operator=(RbTreeMap const& o) {
  if (this == &o) return *this;
  this->deleteAllG(link());
  copyMembers(o);
  return *this;
}

template <class T, class K> void RbTreeMap<T, K>::copyMembers(RbTreeMap const& o) {
  for (T* at = o.first(); at; at = successor(at)) memberIs(ptrFromNew(new T(at->fwkKey(), at->value())));
}

template <class T, class K> void RbTreeMap<T, K>::IteratorConstBase::advance() {
  auto const* map = static_cast<RbTreeMap const*>(this->collection_);
  if (version_ == map->version()) {
    this->currentIs(successor(this->current()));
  } else {
    this->currentIs(map->findNext(key()));
    version_ = map->version();
    seekState_ = 0;
  }
}

} // namespace Vyx
