// The actions of a sub-config, which live in the container of a configuration.

#pragma once

#include "Pbr/Pbr.h"

namespace Pbr {

// The two actions that a class action of this feature can hold; null where it holds none of that kind.
struct ClassActions {
  explicit ClassActions(PolicyMap::ClassAction const& of);
  Vyx::Ptr<PbrFwdAction> forward;
  Vyx::Ptr<PbrActionSetDscp> setDscp;
};

// Removes every action of the sub-config from the configuration's container. The class actions keep their
// pointers. There is no count of users: an action that another sub-config names leaves all the same.
// A null sub-config is no error.
void deleteSubConfigActions(Vyx::Ptr<Config> const& config,
                            Vyx::Ptr<PolicyMap::PolicyMapSubConfig> const& subConfig);

} // namespace Pbr
