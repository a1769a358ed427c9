// Sets of next hops in one line.

#pragma once

#include "Pbr/NexthopSet.h"

#include <initializer_list>
#include <utility>

inline Pbr::NexthopSet setOf(std::initializer_list<std::pair<char const*, bool>> entries,
                             unsigned recursive = 0, L3::VrfName const& vrfName = "default") {
  Pbr::NexthopSet set(recursive, vrfName);
  for (auto const& [address, value] : entries) set.nexthopIs(address, value);
  return set;
}
