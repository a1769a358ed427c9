// The fields that many types begin or end with, in the order that they are promised in, and how a structure
// of fields is laid over an object. Holds for 64 and for 32 bits alike.

#pragma once

#include "Vyx/Entity.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace fields {

struct Entity {
  void* operations;
  std::uint32_t word;
  void* name;
  void const* parent;
  Vyx::AttributeId parentAttrId;
  std::uint32_t fourth;
};
struct List {
  void* operations;
  std::uint32_t version;
  std::uint32_t count;
  void const* head;
  void const* tail;
};
// A hash table; what stands behind its counts is its own business.
template <class Map> struct Table {
  void* operations;
  std::uint32_t version;
  std::uint32_t count;
  alignas(void*) unsigned char rest[sizeof(Map) - sizeof(void*) - 8];
};
struct Tree {
  void* operations;
  std::uint32_t version;
  std::uint32_t count;
  void const* root;
};
struct Reactor {
  void* operations;
  std::uint32_t word;
  std::uint32_t flags;
  void const* notifier;
  unsigned char isWeakReference;
  unsigned char isRegisteredNotifiee;
  void const* next;
};

template <class Fields, class T> Fields over(T const& object) {
  static_assert(sizeof(Fields) == sizeof(T));
  Fields fields;
  std::memcpy(&fields, static_cast<void const*>(&object), sizeof fields);
  return fields;
}

} // namespace fields
