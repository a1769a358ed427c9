// A status and a checkpoint that hold every type of entity which they can, with every attribute away from its
// default, and values that a word of 32 bits is too small for.

#pragma once

#include "Pbr/Pbr.h"

namespace words_test {

Vyx::Ptr<Pbr::Status> fullStatus();
Vyx::Ptr<Pbr::CheckpointStatus> fullCheckpoint();

// Values change, members come and go, a class map refers to other next hops. The last change adds a member
// called "last" to a collection of the root.
void change(Pbr::Status& status);
void change(Pbr::CheckpointStatus& checkpoint);

} // namespace words_test
