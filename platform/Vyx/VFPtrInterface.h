// The bottom of every counted object: where its memory comes from, and the one switch of the runtime.

#pragma once

#include <cstddef>
#include <new>

namespace Vyx {

class VFPtrInterface {
public:
  // Whether reference counts and share counts of texts change by locked operations. Read on every change
  // of a count. Set it before the second thread that touches counted objects starts; a change while counts
  // are being changed elsewhere loses counts.
  static bool enableThreadSafePointers;

  static void* operator new(std::size_t size) { return ::operator new(size); }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* p, std::size_t) noexcept { ::operator delete(p); }
  static void operator delete(void*, void*) noexcept {}

protected:
  VFPtrInterface() = default;
  ~VFPtrInterface() = default;
};

} // namespace Vyx
