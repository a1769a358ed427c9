// What a stretch of code takes from the heap. The program that links this counts every allocation by `new`.

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace Bench {

// How often memory was asked for since the program began.
std::uint64_t allocations();

// The bytes that are in use on the heap, with what the allocator keeps beside them. Slow.
std::size_t heapBytes();

// Makes the allocator join what was freed, so that each scenario finds the heap as the one before it did.
void settleHeap();

// Leaves the heap as a process that has run for a while has it: `places` free places for blocks of each size,
// which are handed out in random order. Ends with its object.
class AgedHeap {
public:
  AgedHeap(std::size_t places, std::initializer_list<std::size_t> sizes);
  AgedHeap(AgedHeap const&) = delete;
  AgedHeap& operator=(AgedHeap const&) = delete;
  ~AgedHeap();

private:
  std::vector<void*> between_; // Keep the free places from being joined.
};

} // namespace Bench
