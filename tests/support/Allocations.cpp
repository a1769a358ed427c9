#include "support/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::atomic<std::size_t> blocksTaken{0};
std::atomic<std::size_t> blocksGiven{0};
std::atomic<std::size_t> bytesHeld{0};

} // namespace

std::size_t allocations::taken() { return blocksTaken; }
std::size_t allocations::living() { return blocksTaken - blocksGiven; }
std::size_t allocations::livingBytes() { return bytesHeld; }

void* operator new(std::size_t size) {
  ++blocksTaken;
  void* const block = std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  bytesHeld += ::malloc_usable_size(block);
  return block;
}

void operator delete(void* block) noexcept {
  if (!block) return;
  ++blocksGiven;
  bytesHeld -= ::malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
