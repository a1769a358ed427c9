// Keyed collections of owned entities.

#pragma once

#include "Vyx/LeaveLogs.h"
#include "Vyx/ValidPtr.h"
#include "frame/Attribute.h"
#include "frame/Iterators.h"
#include "frame/Parameters.h"
#include "frame/Record.h"
#include "frame/Round.h"

namespace frame {

// A collection may make the names of its members: `Attr::namedBy` says from which of the given values.
template <class Attr>
concept NamesItsMembers = requires {
  Attr::namedBy;
};

template <class Attr, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> madeMember(Arguments const&... arguments) {
  using ChildType = typename Attr::ChildType;
  if constexpr (NamesItsMembers<Attr>) {
    using Vyx::valueToStrep; // The built-in types'; the others are found beside their types.
    return Vyx::make<ChildType>(valueToStrep(std::get<Attr::namedBy>(std::tie(arguments...))), arguments...);
  } else {
    return Vyx::make<ChildType>(arguments...);
  }
}

// THROWS: NameInUseException when the member was made with other values than those given.
template <class Attr, class... Arguments>
void checkMember(typename Attr::ChildType const& member, Arguments const&... arguments) {
  if constexpr (NamesItsMembers<Attr>)
    checkParameters(member, member.name(), arguments...);
  else
    checkParameters(member, arguments...);
}

// Makes a child, lets `enter` link it and attaches it.
template <class Attr, class Enter, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> attachedMember(typename Attr::Owner& of, Enter const& enter,
                                                  Arguments const&... arguments) {
  auto child = madeMember<Attr>(arguments...);
  child->parentAttrIdIs(Attr::id);
  enter(child);
  child->parentIs(Vyx::Ptr<Vyx::Entity>(&of));
  return child;
}

// Makes a child, enters it in the collection and attaches it. REQUIRES: the key is absent. Nobody is told.
template <class Attr, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> newMember(typename Attr::Owner& of, Arguments const&... arguments) {
  return attachedMember<Attr>(
      of, [&](auto const& child) { Attr::field(of).newMember(child); }, arguments...);
}

// RETURNS the member of that key, never null: the one that is there, else a new one.
// THROWS: NameInUseException when the one that is there was made with other values; nothing has changed then.
// NOTIFIES: onA(key), for a new one.
template <class Attr, class... Arguments>
Vyx::Ptr<typename Attr::ChildType> memberIs(typename Attr::Owner& of, typename Attr::Key const& key,
                                            Arguments const&... arguments) {
  auto& map = Attr::field(of);
  auto const place = map.place(key);
  if (place.member) {
    checkMember<Attr>(*place.member, arguments...);
    return place.member;
  }
  auto child = attachedMember<Attr>(
      of, [&](auto const& fresh) { map.newMember(fresh, place); }, arguments...);
  notify<Attr>(of, key);
  return Vyx::validPtr(std::move(child));
}

// The end that all ways of removal share: the child leaves its parent before the reactors hear of it.
template <class Attr>
Vyx::Ptr<typename Attr::ChildType> memberGone(typename Attr::Owner& of,
                                              Vyx::Ptr<typename Attr::ChildType> child) {
  typename Attr::Key const key = child->fwkKey();
  Attr::field(of).memberDel(child);
  Vyx::leaveLogs(child->vyxReactors());
  child->parentIs(nullptr);
  notify<Attr>(of, key);
  return child;
}

// RETURNS the removed child, or null for an absent key.
// NOTIFIES: onA(key), after the removal.
template <class Attr>
Vyx::Ptr<typename Attr::ChildType> memberDel(typename Attr::Owner& of, typename Attr::Key const& key) {
  Vyx::Ptr<typename Attr::ChildType> child(Attr::field(of).find(key));
  return child ? memberGone<Attr>(of, std::move(child)) : child;
}

// The same for the member under the iterator, which stays valid; on no member null.
template <class Attr, class At>
Vyx::Ptr<typename Attr::ChildType> memberDelAt(typename Attr::Owner& of, At& at) {
  return at ? memberGone<Attr>(of, at.member()) : nullptr;
}

// Removes every member, each with its own notification, in the order of the collection.
// NOTIFIES: onA(key) for each.
template <class At, class Attr> void memberDelAll(typename Attr::Owner& of) {
  for (At at(Vyx::Ptr<typename Attr::Owner>(&of), Attr::field(of)); at; at.advance())
    memberDelAt<Attr>(of, at);
}

} // namespace frame
