#include "Heap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <random>

namespace Bench {

namespace {

std::uint64_t counted = 0;

// Large blocks come from the heap, too, and stay with the process: the cost of fresh pages is the system's,
// and would hide what is measured.
bool const keepsPages = [] {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_TOP_PAD, 64 << 20);
  return true;
}();

constexpr std::size_t kLargeEnoughToJoin = 1 << 17;

} // namespace

std::uint64_t allocations() { return counted; }

std::size_t heapBytes() {
  struct mallinfo2 const info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void settleHeap() { std::free(std::malloc(kLargeEnoughToJoin)); }

AgedHeap::AgedHeap(std::size_t places, std::initializer_list<std::size_t> sizes) {
  std::vector<void*> free;
  for (std::size_t size : sizes)
    for (std::size_t i = 0; i < places; ++i) {
      free.push_back(std::malloc(size));
      between_.push_back(std::malloc(1));
    }
  std::shuffle(free.begin(), free.end(), std::mt19937(1));
  for (void* p : free) std::free(p);
}

AgedHeap::~AgedHeap() {
  for (void* p : between_) std::free(p);
}

} // namespace Bench

void* operator new(std::size_t size) {
  ++Bench::counted;
  if (void* const p = std::malloc(size)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
