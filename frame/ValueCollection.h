// Keyed collections of values.

#pragma once

#include "frame/Attribute.h"
#include "frame/Iterators.h"
#include "frame/Record.h"
#include "frame/Round.h"

namespace frame {

// RETURNS the stored value; the zero value for an absent key.
template <class Attr>
typename Attr::Type value(typename Attr::Owner const& of, typename Attr::Key const& key) {
  auto const* record = Attr::field(of).find(key);
  return record ? record->value() : typename Attr::Type();
}

// Makes a record and enters it. REQUIRES: the key is absent. Nobody is told.
template <class Attr>
Vyx::Ptr<typename Attr::Record> newValue(typename Attr::Owner& of, typename Attr::Key const& key,
                                         typename Attr::Type const& value) {
  auto record = Vyx::ptrFromNew(new typename Attr::Record(key, value));
  Attr::field(of).newMember(record);
  return record;
}

// Inserts, or changes the value in place. An equal value does nothing at all.
// NOTIFIES: onA(key), after the store.
template <class Attr>
void valueIs(typename Attr::Owner& of, typename Attr::Key const& key, typename Attr::Type const& value) {
  auto& map = Attr::field(of);
  auto const place = map.place(key);
  if (!place.member)
    map.newMember(Vyx::ptrFromNew(new typename Attr::Record(key, value)), place);
  else if (place.member->value() == value)
    return;
  else
    place.member->valueIs(value);
  notify<Attr>(of, key);
}

// RETURNS the value removed; the zero value for an absent key, which nobody is told of.
// NOTIFIES: onA(key), after the removal.
template <class Attr> typename Attr::Type valueDel(typename Attr::Owner& of, typename Attr::Key const& key) {
  auto record = Attr::field(of)._memberDel(key);
  if (!record) return typename Attr::Type();
  notify<Attr>(of, key);
  return record->value();
}

// The same for the member under the iterator, which stays valid; on no member the zero value.
template <class Attr, class At> typename Attr::Type valueDelAt(typename Attr::Owner& of, At& at) {
  if (!at) return typename Attr::Type();
  auto const record = at.member();
  typename Attr::Key const key = record->fwkKey();
  Attr::field(of).memberDel(record);
  notify<Attr>(of, key);
  return record->value();
}

// Removes every member, each with its own notification, in the order of the collection.
// NOTIFIES: onA(key) for each.
template <class At, class Attr> void valueDelAll(typename Attr::Owner& of) {
  for (At at(Vyx::Ptr<typename Attr::Owner>(&of), Attr::field(of)); at; at.advance())
    valueDelAt<Attr>(of, at);
}

} // namespace frame
