#include "support/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> blocksTaken{0};
std::atomic<std::size_t> blocksGiven{0};

} // namespace

std::size_t allocations::taken() { return blocksTaken; }
std::size_t allocations::living() { return blocksTaken - blocksGiven; }

void* operator new(std::size_t size) {
  ++blocksTaken;
  if (void* block = std::malloc(size ? size : 1)) return block;
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  if (block) ++blocksGiven;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
