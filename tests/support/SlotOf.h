// The place of a virtual operation in its class's table, read from a pointer to member as the Itanium C++ ABI
// forms it on x86: 1 plus the byte offset of the slot. A destructor takes two slots.

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <type_traits>

// For an overload, tell its type: slotOf<Ptr<Entity> (Entity::*)()>(&Entity::parent).
template <class Function> std::size_t slotOf(Function function) {
  static_assert(std::is_member_function_pointer_v<Function>);
  struct {
    std::uintptr_t pointer;
    std::ptrdiff_t adjustment;
  } parts;
  static_assert(sizeof parts == sizeof function);
  std::memcpy(&parts, &function, sizeof parts);
  EXPECT_TRUE(parts.pointer & 1U) << "not a virtual operation";
  return (parts.pointer - 1) / sizeof(void*);
}

// The slots follow each other without a gap, from `first` on.
inline void expectSlotsFrom(std::size_t first, std::initializer_list<std::size_t> slots) {
  for (std::size_t slot : slots) EXPECT_EQ(first++, slot);
}

// The number of slots of a class that can be derived from: where the next virtual operation would go.
template <class Class> struct SlotProbe : Class {
  using Class::Class;
  virtual void probe() {}
};
template <class Class> std::size_t slotCount() { return slotOf(&SlotProbe<Class>::probe); }
