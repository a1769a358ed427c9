// What all collections share: a table of operations by which an iterator of unknown kind is moved and let go.

#pragma once

#include "Vyx/Foothold.h"
#include "Vyx/String8.h"

namespace Vyx {

// An iterator as a collection's generic operations see it: the member that it stands on.
struct StrepIterator {
  Ptr<PtrInterface> member;
};

class BaseCollection {
public:
  BaseCollection() = default;
  BaseCollection(BaseCollection const&) = delete;
  BaseCollection& operator=(BaseCollection const&) = delete;

  // ORDER: the slots of this table are relied on by every collection.
  virtual ~BaseCollection();
  // Whether the iterator stands on a member.
  virtual bool iteratorMoreLeft(StrepIterator const& at) const;
  virtual void iteratorIncr(StrepIterator& at) const;
  virtual void iteratorDelete(StrepIterator& at) const;
  virtual String8 iteratorStrep(StrepIterator const& at) const;
  virtual StrepIterator iteratorSpaceCopy(StrepIterator const& at) const;
};

// Adds to a collection how an iterator's hold on its member is copied and released.
template <class T, class Base = BaseCollection> class BaseRefCollection : public Base {
public:
  using Base::Base;
  using Member = T;
  void iteratorDelete(StrepIterator& at) const override { at.member = nullptr; }
  StrepIterator iteratorSpaceCopy(StrepIterator const& at) const override { return at; }
};

// An iterator of a tree or a queue: the collection, and the member that it stands on, which can't end
// meanwhile. The iterator's end hands the member back through the collection's iteratorDelete, if it was
// held.
template <class T> class BaseIteratorConst {
public:
  BaseIteratorConst(BaseIteratorConst const& o) = default;
  BaseIteratorConst& operator=(BaseIteratorConst const&) = default;
  virtual ~BaseIteratorConst() { release(); }
  // Whether the member's key can serve as a bookmark: the key type's default value can't.
  virtual bool hasBookmark() const = 0;

  explicit operator bool() const { return foothold_.member() != nullptr; }
  Ptr<T> member() const { return current(); }
  T* current() const { return static_cast<T*>(foothold_.member()); }

protected:
  BaseIteratorConst(BaseCollection const* collection, T* member)
      : collection_(collection), foothold_(member) {}

  void currentIs(T* member) {
    if (__builtin_expect(foothold_.isLinked(), true))
      foothold_.linkedMemberIs(member);
    else
      foothold_.memberIs(member);
  }

  // Hands the member back. An iterator that also keeps its collection alive does so before it lets go of
  // that.
  void release() {
    StrepIterator at{foothold_.release()};
    if (at.member) collection_->iteratorDelete(at);
  }

  BaseCollection const* collection_;

private:
  Foothold foothold_;
};

} // namespace Vyx
