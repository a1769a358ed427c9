// From a base class of a line of classes down to one of the line, as often as a round needs it.

#pragma once

#include "Vyx/Ptr.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace frame {

// The same answer as a dynamic cast: null when the object is not of that class, or null. The answer for a
// class that was asked about before is remembered by its table of virtual operations, which a class has for
// as long as its code is loaded; within a line of classes the downcast is a fixed step once it is known to
// hold.
template <class To, class From> To* lineCast(From* object) {
  if constexpr (std::is_same_v<To, From>) {
    return object;
  } else {
    // One word for each remembered class: its table's address, and in the lowest bit whether the cast holds.
    static std::array<std::atomic<std::uintptr_t>, 16> known{};
    if (!object) return nullptr;
    std::uintptr_t table;
    std::memcpy(&table, static_cast<void const*>(object), sizeof table);
    std::atomic<std::uintptr_t>& slot = known[(table >> 5) % known.size()];
    std::uintptr_t const told = slot.load(std::memory_order_relaxed);
    if (__builtin_expect((told & ~std::uintptr_t(1)) == table, true))
      return (told & 1) ? static_cast<To*>(object) : nullptr;
    To* const to = dynamic_cast<To*>(object);
    slot.store(table | (to ? 1 : 0), std::memory_order_relaxed);
    return to;
  }
}

template <class To, class From> Vyx::Ptr<To> linePtrCast(Vyx::Ptr<From> const& p) {
  return lineCast<To>(p.ptr());
}

} // namespace frame
