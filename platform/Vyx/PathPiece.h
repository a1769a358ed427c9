// One piece of an entity's path as it stands between two slashes: "/", "%", blanks and control bytes as %XX.

#pragma once

#include <string>
#include <string_view>

namespace Vyx {

std::string escapedPiece(std::string_view piece);
// The reverse. A "%" without two hexadecimal digits behind it stands for itself.
std::string unescapedPiece(std::string_view piece);

} // namespace Vyx
