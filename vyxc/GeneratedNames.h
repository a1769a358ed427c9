// The names that an attribute takes in the class of its entity.

#pragma once

#include "Model.h"

#include <string>
#include <vector>

namespace vyxc {

std::vector<std::string> generatedNames(Attribute const& attribute);

} // namespace vyxc
