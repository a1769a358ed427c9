#include "Vyx/HashMapGeneric.h"

#include <new>

namespace Vyx {

HashMapGeneric::HashMapGeneric(unsigned) {}

HashMapGeneric::~HashMapGeneric() { arrayIs(&first_, 1); }

PtrInterface* HashMapGeneric::findNextG(VTable const& table, std::size_t link, int,
                                        PtrInterface const* member, int* bucket, void const* key) const {
  int index = -1;
  PtrInterface* found = nullptr;
  if (member) {
    std::uint32_t const reversed = table.hash(member);
    found = seek(link, bucketOf(reversed), &index, [&](PtrInterface const* at) {
      std::uint32_t const other = table.hash(at);
      return reversed < other || (reversed == other && table.keyLessThan(key, at));
    });
  } else {
    found = findNextBucketG(&index);
  }
  if (bucket) *bucket = index;
  return found;
}

PtrInterface* HashMapGeneric::nextFarHead(int* bucket, std::size_t link) const noexcept {
  for (auto i = static_cast<std::uint32_t>(*bucket + 1); i < buckets_; ++i) {
    askFor(head((i + kAhead) & (buckets_ - 1)), link);
    if (PtrInterface* const found = head(i)) {
      *bucket = static_cast<int>(i);
      return found;
    }
  }
  *bucket = -1;
  return nullptr;
}

void HashMapGeneric::emptyAllBucketsG(VTable const&, std::size_t link, int) {
  if (count_ == 0) return;
  ++version_;
  count_ = 0;
  for (std::uint32_t i = 0; i < buckets_; ++i) {
    Foothold::holdAll(); // Each time: the end of a member may bring a new iterator.
    for (Head chain = std::move(bucketArray_[i]); chain;) {
      Head rest = std::move(linkOf(chain.ptr(), link));
      chain = std::move(rest);
    }
  }
}

void HashMapGeneric::expect(std::uint32_t members) {
  std::uint32_t buckets = buckets_;
  while (capacityOf(buckets) < members) buckets = widerThan(buckets);
  if (count_ == 0 && buckets != buckets_) arrayIs(newArray(buckets), buckets);
}

HashMapGeneric::Head* HashMapGeneric::newArray(std::uint32_t buckets) {
  auto* const array = static_cast<Head*>(::operator new(buckets * sizeof(Head)));
  for (std::uint32_t i = 0; i < buckets; ++i) new (&array[i]) Head();
  return array;
}

// REQUIRES: the heads of the array that goes are null.
void HashMapGeneric::arrayIs(Head* array, std::uint32_t buckets) {
  Head* const old = std::exchange(bucketArray_, array);
  buckets_ = buckets;
  shift_ = 32 - static_cast<std::uint32_t>(__builtin_ctz(buckets));
  if (old != &first_) ::operator delete(static_cast<void*>(old));
}

} // namespace Vyx
