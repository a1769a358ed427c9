// The identifiers of what a file gives no identifier.
//
// Invariants:
// (1) The same names give the same identifier in every process, on every machine: two loads of one text give
//     equal trees, and a copy between them changes nothing.
// (2) What can't change in place is part of the identifier, so that such a change makes another entity: the
//     kind of a forwarding action, the code point of a marking one.

#pragma once

#include "Kest/UniqueId.h"

#include <initializer_list>
#include <string_view>

namespace Pbrctl {

// FNV-1a over 64 bits of each part's length (four bytes, low first) and bytes, then a finishing mix. The high
// word is the identifier's first part, the low word its other two.
Kest::UniqueId idOf(std::initializer_list<std::string_view> parts);

using IdFunction = Kest::UniqueId (*)(std::initializer_list<std::string_view>);

} // namespace Pbrctl
