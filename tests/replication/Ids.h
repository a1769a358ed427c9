// What the entity that a log holds is known by.

#pragma once

#include "Kest/UniqueId.h"
#include "Vyx/EntityId.h"

namespace replication_test {

inline Vyx::EntityId const kMe = Vyx::EntityId::fromValue(0x8000000000000003);
inline Kest::UniqueId const id(1, 2, 3);

} // namespace replication_test
