// Members of the keyed collections, for tests: a key, a value, and a count of the records that live.

#pragma once

#include "Vyx/HashMap.h"
#include "Vyx/RbTreeMap.h"

#include <ostream>
#include <utility>

// What the records of one class share: K is a key, Self the class that derives.
template <class K, class Self> class CountedRecord : public Vyx::PtrInterface {
public:
  K const& fwkKey() const { return key_; }
  int value() const { return value_; }
  static int alive() { return alive_; }

protected:
  CountedRecord(K key, int value) : key_(std::move(key)), value_(value) { ++alive_; }
  ~CountedRecord() override { --alive_; }

private:
  static inline int alive_ = 0;
  K key_;
  int value_;
};

template <class K> class HashRecord final : public CountedRecord<K, HashRecord<K>> {
public:
  explicit HashRecord(K key, int value = 0) : CountedRecord<K, HashRecord<K>>(std::move(key), value) {}
  Vyx::HashLink fwkHmNext_;
};

template <class K> class TreeRecord final : public CountedRecord<K, TreeRecord<K>> {
public:
  explicit TreeRecord(K key, int value = 0) : CountedRecord<K, TreeRecord<K>>(std::move(key), value) {}
  Vyx::RbTreeLinks fwkRbLinks_;
};

template <class K> using HashOf = Vyx::HashMap<HashRecord<K>, K>;
template <class K> using TreeOf = Vyx::RbTreeMap<TreeRecord<K>, K>;

// Makes a record and enters it. RETURNS it, counted.
template <template <class> class Record, class K, class Collection>
Vyx::Ptr<Record<K>> enter(Collection& collection, K key, int value = 0) {
  Vyx::Ptr<Record<K>> const record = Vyx::ptrFromNew(new Record<K>(std::move(key), value));
  collection.newMember(record);
  return record;
}
template <class K> auto enter(HashOf<K>& map, std::type_identity_t<K> key, int value = 0) {
  return enter<HashRecord, K>(map, std::move(key), value);
}
template <class K> auto enter(TreeOf<K>& map, std::type_identity_t<K> key, int value = 0) {
  return enter<TreeRecord, K>(map, std::move(key), value);
}

// A key whose hash the test chooses; keys of one hash are ordered by rank.
struct ChosenHash {
  std::uint32_t chosen = 0;
  int rank = 0;
  std::uint32_t hash() const { return chosen; }
  bool operator==(ChosenHash const& o) const { return chosen == o.chosen && rank == o.rank; }
  bool operator<(ChosenHash const& o) const { return rank != o.rank ? rank < o.rank : chosen < o.chosen; }
  friend std::ostream& operator<<(std::ostream& out, ChosenHash const& key) {
    return out << key.chosen << '/' << key.rank;
  }
};
