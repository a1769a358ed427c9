// The owned single child of an attribute.

#pragma once

#include "Vyx/LeaveLogs.h"
#include "Vyx/ValidPtr.h"
#include "frame/Attribute.h"
#include "frame/Parameters.h"
#include "frame/Round.h"

namespace frame {

// Where an owner keeps its child. A child that somebody else still holds when the owner ends has no parent
// then.
template <class T> class ChildPtr : public Vyx::Ptr<T> {
public:
  ChildPtr() = default;
  ChildPtr(ChildPtr const&) = delete; // The end of a copy would take the child's parent away.
  ChildPtr& operator=(Vyx::Ptr<T> child) {
    Vyx::Ptr<T>::operator=(std::move(child));
    return *this;
  }
  ~ChildPtr() {
    if (*this) (*this)->vyxParentGone();
  }
};

// Makes a child and attaches it, so that nobody ever sees it without its place. It isn't stored.
template <class Attr, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> newChild(typename Attr::Owner& of, Arguments const&... arguments) {
  auto child = Vyx::make<typename Attr::ChildType>(arguments...);
  child->parentAttrIdIs(Attr::id);
  child->parentIs(Vyx::Ptr<Vyx::Entity>(&of));
  return child;
}

// RETURNS the child, never null: the one that is there when it was made with these values, else a new one in
// its place. The old child loses its parent before the new one is stored.
// THROWS: what the child's constructor throws; the old child then stays, without a parent.
// NOTIFIES: onA(), when the child is a new one.
template <class Attr, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> childIs(typename Attr::Owner& of, Arguments const&... arguments) {
  auto& stored = Attr::field(of);
  if (stored) {
    if (hasParameters(*stored, arguments...)) return stored;
    Vyx::Ptr<typename Attr::ChildType> const leaving = stored;
    Vyx::leaveLogs(leaving->vyxReactors());
    leaving->parentIs(nullptr);
  }
  Vyx::Ptr<typename Attr::ChildType> child = newChild<Attr>(of, arguments...);
  stored = child;
  notify<Attr>(of);
  return Vyx::validPtr(std::move(child));
}

// RETURNS the child that was there, which has lost its parent, or null.
// NOTIFIES: onA(), when there was one.
template <class Attr> Vyx::Ptr<typename Attr::ChildType> childDel(typename Attr::Owner& of) {
  Vyx::Ptr<typename Attr::ChildType> child =
      std::move(static_cast<Vyx::Ptr<typename Attr::ChildType>&>(Attr::field(of)));
  if (!child) return child;
  Vyx::leaveLogs(child->vyxReactors());
  child->parentIs(nullptr);
  notify<Attr>(of);
  return child;
}

} // namespace frame
