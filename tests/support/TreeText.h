// A whole tree as text, found through the records of its types: a line for each attribute, with its path. Two
// trees are equal exactly if their texts are.

#pragma once

#include "Vyx/Entity.h"

#include <string>

namespace support {

std::string treeText(Vyx::Entity const& root);

} // namespace support
