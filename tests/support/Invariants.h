// What always holds in a tree of entities, found through the records of their types: every owned child has
// its parent and its place, every walk meets what a look-up finds, every count is that of the walk.

#pragma once

#include "Vyx/Entity.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

// RETURNS what is wrong in the tree below `root`, each with its place; empty when all is well.
std::vector<std::string> invariantFaults(Vyx::Entity const& root);

inline void checkInvariants(Vyx::Entity const& root) {
  EXPECT_THAT(invariantFaults(root), testing::IsEmpty());
}
