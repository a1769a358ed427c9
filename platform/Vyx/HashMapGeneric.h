// The part of the hash table that is the same for all members: it knows them by their counted base, the place
// of their link, and a table of four operations.
//
// Invariants:
// (1) A bucket holds the members whose reversed hash has the bucket's index in its top bits. Each chain
//     ascends by reversed hash, then by key. So a walk through the buckets ascends by (reversed hash, key),
//     whatever the number of buckets.
// (2) A member is held by exactly one counted pointer, the bucket head or the link of the member before it.
// (3) The number of buckets is a power of two and never falls; `buckets_` is never null.
// (4) `version_` rises with each insertion and each removal.

#pragma once

#include "Vyx/BaseCollection.h"
#include "Vyx/BitReverse.h"

namespace Vyx {

// The four operations, one stateless object for each kind of member.
class HashMapVTableGeneric {
public:
  virtual std::uint32_t hash(PtrInterface const* member) const = 0;
  virtual bool keyEquals(void const* key, PtrInterface const* member) const = 0;
  // A null key sorts before everything.
  virtual bool keyLessThan(void const* key, PtrInterface const* member) const = 0;
  virtual void setNext(PtrInterface* member, PtrInterface* next) const = 0;

protected:
  ~HashMapVTableGeneric() = default;
};

class HashMapGeneric : public BaseCollection {
public:
  using VTable = HashMapVTableGeneric;
  using Head = Ptr<PtrInterface>;

  explicit HashMapGeneric(unsigned buckets);

  std::uint32_t version() const { return version_; }
  std::uint32_t count() const { return count_; }
  std::uint32_t buckets() const { return buckets_; }

  // In each of these, `link` is the place of the link in a member, in bytes; the integer behind it is 0.

  // Doubles the table when it is full. Chains are sorted, so that each splits into two in one pass.
  void maybeGrowG(VTable const& table, std::size_t link, int) {
    maybeGrow(link, [&](PtrInterface const* member) { return table.hash(member); });
  }
  void deleteMemberG(VTable const&, std::size_t link, int, std::uint32_t reversed, Head const& member) {
    unlink(link, bucketOf(reversed), member.ptr());
  }
  // RETURNS the first member of the table when `member` is null, else the first that follows the key, whether
  // or not that member is still in the table. The bucket of the result is stored where `bucket` points.
  PtrInterface* findNextG(VTable const& table, std::size_t link, int, PtrInterface const* member, int* bucket,
                          void const* key) const;
  // Raises the index to the next bucket that isn't empty. RETURNS its head, or null.
  PtrInterface* findNextBucketG(int* bucket) const { return nextHead(bucket, 0); }
  void emptyAllBucketsG(VTable const& table, std::size_t link, int);
  // Grows an empty table at once to what so many members will make of it. Places found before are no longer
  // good.
  void expect(std::uint32_t members);

  std::uint32_t bucketOf(std::uint32_t reversed) const { return buckets_ == 1 ? 0 : reversed >> shift_; }
  PtrInterface* head(std::uint32_t bucket) const { return bucketArray_[bucket].ptr(); }

  static Head& linkOf(PtrInterface* member, std::size_t link) {
    return *reinterpret_cast<Head*>(reinterpret_cast<char*>(member) + link);
  }

protected:
  ~HashMapGeneric() override;

  // One bucket serves up to this many members; a small collection needs no array.
  static constexpr std::uint32_t kFirstCapacity = 4;
  // The first array has so many buckets and serves twice as many members, since a walk over a few members
  // takes as long as it has buckets to look into.
  static constexpr std::uint32_t kFirstBuckets = 8;

  // A walk will soon come to the members so many buckets ahead, and each would have to be waited for.
  static constexpr std::uint32_t kAhead = 8;
  // The members of a table with fewer buckets are near anyway.
  static constexpr std::uint32_t kManyBuckets = 4096;
  // `member` may be null, so the place of its link is reckoned with numbers.
  static void askFor(PtrInterface const* member, std::size_t link) {
    __builtin_prefetch(member);
    __builtin_prefetch(reinterpret_cast<void const*>(reinterpret_cast<std::uintptr_t>(member) + link));
  }

  // What findNextBucketG does, with the place of the link in a member.
  PtrInterface* nextHead(int* bucket, std::size_t link) const {
    std::uint32_t const end = buckets_;
    if (__builtin_expect(end >= kManyBuckets, false)) return nextFarHead(bucket, link);
    for (auto i = static_cast<std::uint32_t>(*bucket + 1); i < end; ++i)
      if (PtrInterface* const found = head(i)) {
        *bucket = static_cast<int>(i);
        return found;
      }
    *bucket = -1;
    return nullptr;
  }
  // The same, and asks for the members that come later.
  PtrInterface* nextFarHead(int* bucket, std::size_t link) const noexcept;

  static std::uint32_t capacityOf(std::uint32_t buckets) {
    if (buckets == kFirstBuckets) return 2 * kFirstBuckets;
    return buckets == 1 ? kFirstCapacity : buckets;
  }
  static std::uint32_t widerThan(std::uint32_t buckets) {
    return buckets == 1 ? kFirstBuckets : 2 * capacityOf(buckets);
  }
  Head& headRef(std::uint32_t bucket) const { return bucketArray_[bucket]; }

  // The bucket of a hash that isn't reversed, which takes less. REQUIRES: there is more than one bucket.
  std::uint32_t bucketAmong(std::uint32_t hash) const {
    static_assert(kFirstBuckets == 1U << 3);
    return buckets_ == kFirstBuckets ? bitReverse3(hash) : bitReverse(hash) >> shift_;
  }

  // What the operations above do, for those who know more of a member than its table of operations.

  // `hashOf` tells the reversed hash of a member.
  template <class HashOf> void maybeGrow(std::size_t link, HashOf const& hashOf) {
    if (__builtin_expect(count_ > capacityOf(buckets_), false)) grow(link, hashOf);
  }
  void unlink(std::size_t link, std::uint32_t bucket, PtrInterface const* member) {
    Head* at = &bucketArray_[bucket];
    while (*at && at->ptr() != member) at = &linkOf(at->ptr(), link);
    if (!*at) return;
    Foothold::holdAll();
    --count_;
    ++version_;
    Head gone;
    gone.swap(*at);
    at->swap(linkOf(gone.ptr(), link));
  }
  // RETURNS the first member of that bucket that `isPast` says yes to, else the head of the next bucket that
  // isn't empty, else null. The bucket of the result, or -1, is stored in `bucket`.
  template <class IsPast>
  PtrInterface* seek(std::size_t link, std::uint32_t from, int* bucket, IsPast const& isPast) const {
    *bucket = static_cast<int>(from);
    PtrInterface* at = bucketArray_[from].ptr();
    while (at && !isPast(at)) at = linkOf(at, link).ptr();
    return at ? at : nextHead(bucket, link);
  }

  std::uint32_t version_ = 0;
  std::uint32_t count_ = 0;

private:
  template <class HashOf> [[gnu::noinline]] void grow(std::size_t link, HashOf const& hashOf);
  static Head* newArray(std::uint32_t buckets);
  void arrayIs(Head* array, std::uint32_t buckets);

  std::uint32_t buckets_ = 1;
  std::uint32_t shift_ = 32; // 32 - log2(buckets_); stands where the array's pointer leaves a gap.
  Head* bucketArray_ = &first_;
  Head first_; // The one bucket of a small table.
};

template <class HashOf> void HashMapGeneric::grow(std::size_t link, HashOf const& hashOf) {
  std::uint32_t const wider = widerThan(buckets_);
  std::uint32_t const shift = 32 - static_cast<std::uint32_t>(__builtin_ctz(wider));
  Head* const array = newArray(wider);
  for (std::uint32_t i = 0; i < buckets_; ++i) {
    askFor(head((i + kAhead) & (buckets_ - 1)), link);
    Head rest = std::move(bucketArray_[i]);
    Head* tail = nullptr;
    std::uint32_t last = 0;
    while (rest) {
      PtrInterface* const member = rest.ptr();
      std::uint32_t const bucket = hashOf(member) >> shift;
      if (!tail || bucket != last) tail = &array[bucket];
      last = bucket;
      tail->swap(rest);
      tail = &linkOf(member, link);
      rest.swap(*tail);
    }
  }
  arrayIs(array, wider);
}

} // namespace Vyx
