// The member records of keyed values: counted, with their key, their value and the links of their collection.

#pragma once

#include "Vyx/HashMap.h"
#include "Vyx/LinkQueue.h"
#include "Vyx/RbTreeMap.h"

namespace frame {

// Key and value; the order of the fields is key, value, links.
template <class K, class V> class KeyedRecord : public Vyx::PtrInterface {
public:
  KeyedRecord(K const& key, V const& value) : key_(key), value_(value) {}
  K const& fwkKey() const { return key_; }
  V const& value() const { return value_; }
  void valueIs(V const& value) { value_ = value; }

private:
  K key_;
  V value_;
};

template <class K, class V> class HashRecord : public KeyedRecord<K, V> {
public:
  using KeyedRecord<K, V>::KeyedRecord;
  Vyx::HashLink fwkHmNext_; // Written by the table alone.
};

template <class K, class V> class TreeRecord : public KeyedRecord<K, V> {
public:
  using KeyedRecord<K, V>::KeyedRecord;
  Vyx::RbTreeLinks fwkRbLinks_; // Written by the tree alone.
};

template <class V> class QueueRecord : public KeyedRecord<unsigned, V> {
public:
  using KeyedRecord<unsigned, V>::KeyedRecord;
  unsigned fwkQkey() const { return this->fwkKey(); }
  Vyx::Ptr<Vyx::PtrInterface> fwkQNext_; // Written by the queue alone.
};

} // namespace frame
