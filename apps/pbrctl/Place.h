// Where something stands in a file.

#pragma once

#include <cstdint>

namespace Pbrctl {

// Counted from 1; a column counts bytes. Two places always compare equal: where a thing stands is no part of
// what it is, so that the structures which carry places can compare themselves member by member.
struct Place {
  std::uint32_t line = 1;
  std::uint32_t column = 1;

  friend bool operator==(Place const&, Place const&) { return true; }
};

} // namespace Pbrctl
