// Queues of values: entered at the end under the next key, taken from the head.

#pragma once

#include "frame/ValueCollection.h"

namespace frame {

// Enters the value at the end. REQUIRES: the key follows that of the last member.
// NOTIFIES: onA(key).
template <class Attr>
void queueEnter(typename Attr::Owner& of, unsigned key, typename Attr::Type const& value) {
  Attr::field(of).enq(Vyx::ptrFromNew(new typename Attr::Record(key, value)));
  notify<Attr>(of, key);
}

// RETURNS the key under which the value stands.
// NOTIFIES: onA(key).
template <class Attr> unsigned queueEnq(typename Attr::Owner& of, typename Attr::Type const& value) {
  auto const* tail = Attr::field(of).tail();
  unsigned const key = tail ? tail->fwkQkey() + 1 : 1;
  queueEnter<Attr>(of, key, value);
  return key;
}

// RETURNS the removed value; the zero value when no member has the key.
// NOTIFIES: onA(key), when there was one.
template <class Attr> typename Attr::Type queueDel(typename Attr::Owner& of, unsigned key) {
  auto& queue = Attr::field(of);
  auto* member = queue.find(key);
  if (!member) return typename Attr::Type();
  auto const held = queue.memberDel(member);
  notify<Attr>(of, key);
  return held->value();
}

// The same for the member under the iterator, which stays valid; on no member the zero value.
template <class Attr, class At> typename Attr::Type queueDelAt(typename Attr::Owner& of, At& at) {
  return at ? queueDel<Attr>(of, at.key()) : typename Attr::Type();
}

// RETURNS the value at the head, taken out; the zero value when the queue is empty.
template <class Attr> typename Attr::Type queueDeq(typename Attr::Owner& of) {
  auto const* head = Attr::field(of).head();
  return head ? queueDel<Attr>(of, head->fwkQkey()) : typename Attr::Type();
}

// Changes the value under a key that is there. RETURNS whether it is.
// NOTIFIES: onA(key), when the value differs.
template <class Attr> bool queueIs(typename Attr::Owner& of, unsigned key, typename Attr::Type const& value) {
  auto* member = Attr::field(of).find(key);
  if (!member) return false;
  if (member->value() == value) return true;
  member->valueIs(value);
  notify<Attr>(of, key);
  return true;
}

} // namespace frame
