// The values of access-control lists.

#pragma once

#include "Acl/AclType.h"
#include "Acl/RuleCheckpointStatus.h"
#include "Acl/UniqueId.h"
