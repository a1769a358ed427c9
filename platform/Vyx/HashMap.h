// The keyed collection of entities and member records.
//
// A member T derives from PtrInterface and has `fwkKey()` and, last of its fields but where its type says
// otherwise, the link `fwkHmNext_`.
//
// ORDER: ascending by bit-reversed hash, ties by the key's `<`; the same for equal keys, however the table
// grew. A loop over an iterator may insert and delete anything: the iterator's member can't end,
// and the iterator finds its way on from the member's key.

#pragma once

#include "Vyx/Assert.h"
#include "Vyx/HashMapGeneric.h"
#include "Vyx/KeyHash.h"

#include <cstddef>
#include <type_traits>

namespace Vyx {

// The counted link of a member to the next of its bucket.
using HashLink = Ptr<PtrInterface>;

template <class T, class K> class HashMapVTable final : public HashMapVTableGeneric {
public:
  std::uint32_t hash(PtrInterface const* member) const override {
    return reversedHash<K>(of(member)->fwkKey());
  }
  bool keyEquals(void const* key, PtrInterface const* member) const override {
    return *static_cast<K const*>(key) == of(member)->fwkKey();
  }
  bool keyLessThan(void const* key, PtrInterface const* member) const override {
    return !key || *static_cast<K const*>(key) < of(member)->fwkKey();
  }
  void setNext(PtrInterface* member, PtrInterface* next) const override {
    HashLink& link = static_cast<T*>(member)->fwkHmNext_;
    if (link.ptr() != next) link = HashLink(next);
  }

  // Made by the first use, never freed.
  static HashMapVTable const& instance() {
    static auto const* table = new HashMapVTable;
    return *table;
  }

private:
  static T const* of(PtrInterface const* member) { return static_cast<T const*>(member); }
};

template <class T, class K> class HashMap : public BaseRefCollection<T, HashMapGeneric> {
public:
  using Key = K;
  class IteratorConst;
  class Iterator;
  class Walk;

  explicit HashMap(unsigned buckets = 1) : BaseRefCollection<T, HashMapGeneric>(buckets) {}
  // Releases every member and tells nobody. An entity that somebody else still holds has no parent then.
  ~HashMap() override {
    if constexpr (requires(T & member) { member.vyxParentGone(); })
      for (IteratorConst at(*this); at; ++at) at.current()->vyxParentGone();
    this->emptyAllBucketsG(table(), link(), 0);
  }

  // RETURNS the member of that key, or null.
  T* find(K const& key) const {
    T* at = static_cast<T*>(this->head(bucketFor(key)));
    while (at && !(at->fwkKey() == key)) at = next(at);
    return at;
  }

  // One look for a key: its member, or, where that is null, the place where the key would be linked. Good
  // until the table changes.
  struct Place {
    T* member;
    HashLink* link;
    std::uint32_t version;
  };
  Place place(K const& key) const;

  // Links a member. REQUIRES: it is in no table, and its key isn't in this one.
  void newMember(Ptr<T> const& member, std::uint32_t reversed);
  void newMember(Ptr<T> const& member) { newMember(member, reversedHash<K>(member->fwkKey())); }
  // The same, where `place` was found for the member's key. A place that is no longer good is looked for
  // again.
  void newMember(Ptr<T> member, Place const& place) {
    if (__builtin_expect(place.version == this->version_, true))
      linkMember(*place.link, member);
    else
      newMember(member);
  }

  // RETURNS the member, unlinked; null when the key is absent.
  Ptr<T> _memberDel(K key) {
    Ptr<T> member = find(key);
    if (member) memberDel(member);
    return member;
  }
  // REQUIRES: the member is in this table.
  void memberDel(Ptr<T> const& member) { this->unlink(link(), bucketFor(member->fwkKey()), member.ptr()); }

  // RETURNS the member of that key, else the next in the table's order, else null.
  T* startAtHash(K const& key) const;

  static T* next(T const* member) { return static_cast<T*>(member->fwkHmNext_.ptr()); }

private:
  using VTable = HashMapVTable<T, K>;

  static VTable const& table() { return VTable::instance(); }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
  // A member derives from PtrInterface alone, so the place in T is the place in the counted base.
  static constexpr std::size_t link() { return offsetof(T, fwkHmNext_); }
#pragma GCC diagnostic pop
  // One bucket asks for no hash.
  std::uint32_t bucketFor(K const& key) const {
    return this->buckets() == 1 ? 0 : this->bucketAmong(keyHash(key));
  }
  static T const* of(PtrInterface const* member) { return static_cast<T const*>(member); }
  void linkMember(HashLink& at, Ptr<T>& member);
  T* headBehind(int* bucket) const { return static_cast<T*>(this->nextHead(bucket, link())); }
  // Whether the member stands behind the key, which may be in the table or not.
  static bool isBehind(T const* member, std::uint32_t hash, K const& key) {
    std::uint32_t const other = keyHash<K>(member->fwkKey());
    return hash == other ? key < member->fwkKey() : reverseLess(hash, other);
  }
  // RETURNS the first member behind the key, with its bucket, or null.
  T* after(K const& key, int* bucket) const {
    std::uint32_t const hash = keyHash(key);
    return static_cast<T*>(this->seek(link(), bucketFor(key), bucket, [&](PtrInterface const* member) {
      return isBehind(of(member), hash, key);
    }));
  }
};

// Walks the members in order and holds nothing. REQUIRES: the table doesn't change and no member ends
// meanwhile.
template <class T, class K> class HashMap<T, K>::Walk {
public:
  explicit Walk(HashMap const& map) : map_(&map), at_(map.headBehind(&bucket_)) {}
  explicit operator bool() const { return at_ != nullptr; }
  T& operator*() const { return *at_; }
  T* operator->() const { return at_; }
  Walk& operator++() {
    at_ = next(at_);
    if (!at_) at_ = map_->headBehind(&bucket_);
    return *this;
  }

private:
  HashMap const* map_;
  int bucket_ = -1;
  T* at_;
};

// Stands on a member, which can't end meanwhile, or on none. Seek to the first member by the default, to the
// first at or past a key by that key.
template <class T, class K> class HashMap<T, K>::IteratorConst {
public:
  IteratorConst() = default;
  explicit IteratorConst(HashMap const& map)
      : version_(map.version()), map_(&map), foothold_(map.headBehind(&bucket_)) {}
  IteratorConst(HashMap const& map, K const& key) : map_(&map), foothold_(map.startAtHash(key)) {
    if (*this) takeOver();
  }
  IteratorConst(IteratorConst const&) = default;
  IteratorConst& operator=(IteratorConst const&) = default;

  // Whether the key can serve as a bookmark: the key type's default value can't.
  virtual bool hasBookmark() const { return *this && !(K(key()) == K()); }
  virtual ~IteratorConst() = default;

  void reset();
  // REQUIRES: the iterator stands on a member.
  void advance();
  IteratorConst& operator++() {
    advance();
    return *this;
  }

  explicit operator bool() const { return foothold_.member() != nullptr; }
  decltype(auto) key() const { return current()->fwkKey(); }
  Ptr<T> member() const { return current(); }
  T* current() const { return static_cast<T*>(foothold_.member()); }
  int bucket() const { return bucket_; }
  std::uint32_t version() const { return version_; }

private:
  [[gnu::noinline]] void advanceSlowly();
  void takeOver() {
    version_ = map_->version();
    bucket_ = static_cast<int>(map_->bucketFor(key()));
  }

  std::uint32_t version_ = 0;
  int bucket_ = -1;
  HashMap const* map_ = nullptr;
  Foothold foothold_;
};

template <class T, class K> class HashMap<T, K>::Iterator : public IteratorConst {
public:
  using IteratorConst::IteratorConst;
  bool hasBookmark() const override { return IteratorConst::hasBookmark(); }
};

template <class T, class K> void HashMap<T, K>::newMember(Ptr<T> const& member, std::uint32_t reversed) {
  K const& key = member->fwkKey();
  std::uint32_t const hash = bitReverse(reversed);
  HashLink* at = &this->headRef(this->bucketOf(reversed));
  for (T* n = static_cast<T*>(at->ptr()); n && !isBehind(n, hash, key); n = next(n)) at = &n->fwkHmNext_;
  Ptr<T> held(member);
  linkMember(*at, held);
}

template <class T, class K> typename HashMap<T, K>::Place HashMap<T, K>::place(K const& key) const {
  std::uint32_t const hash = keyHash(key);
  HashLink* at = &this->headRef(bucketFor(key));
  for (T* n = static_cast<T*>(at->ptr()); n; n = next(n)) {
    K const& there = n->fwkKey();
    std::uint32_t const other = keyHash<K>(there);
    if (hash == other) {
      if (there == key) return {n, at, this->version_};
      if (key < there) break;
    } else if (reverseLess(hash, other)) {
      break;
    }
    at = &n->fwkHmNext_;
  }
  return {nullptr, at, this->version_};
}

// The link is that of the member's place. The table takes over the caller's hold.
template <class T, class K> void HashMap<T, K>::linkMember(HashLink& at, Ptr<T>& member) {
  require(!member->fwkHmNext_, "t->fwkHmNext() == 0", "Vyx/HashMap", 352);
  member->fwkHmNext_.swap(at);
  HashLink(std::move(member)).swap(at);
  ++this->count_;
  ++this->version_;
  this->maybeGrow(link(), [](PtrInterface const* m) { return reversedHash<K>(of(m)->fwkKey()); });
}

template <class T, class K> T* HashMap<T, K>::startAtHash(K const& key) const {
  std::uint32_t const hash = keyHash(key);
  int bucket = -1;
  return static_cast<T*>(this->seek(link(), bucketFor(key), &bucket, [&](PtrInterface const* member) {
    return of(member)->fwkKey() == key || isBehind(of(member), hash, key);
  }));
}

template <class T, class K> void HashMap<T, K>::IteratorConst::reset() {
  version_ = 0;
  bucket_ = -1;
  if (map_) version_ = map_->version();
  foothold_.memberIs(map_ ? map_->headBehind(&bucket_) : nullptr);
}

template <class T, class K> void HashMap<T, K>::IteratorConst::advance() {
  if (__builtin_expect(version_ != map_->version() || !foothold_.isLinked(), false)) return advanceSlowly();
  T* following = next(current());
  foothold_.linkedMemberIs(following ? following : map_->headBehind(&bucket_));
}

template <class T, class K> void HashMap<T, K>::IteratorConst::advanceSlowly() {
  T* following = nullptr;
  if (version_ == map_->version()) {
    following = next(current());
    if (!following) following = map_->headBehind(&bucket_);
  } else {
    following = map_->after(key(), &bucket_);
    version_ = map_->version();
  }
  foothold_.memberIs(following);
}

} // namespace Vyx
