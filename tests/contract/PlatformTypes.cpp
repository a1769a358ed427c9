// The entity types below the library that keep the contract: one line each.

#include "Cli/Session.h"
#include "EntityContract.inl"
#include "PolicyMap/PolicyMap.h"
#include "PolicyMap/PolicyMapCopy.h"

namespace contract {

// clang-format off
using PlatformTypes = testing::Types<
    PolicyMap::Action,
    PolicyMap::ClassMapSubConfig,
    PolicyMap::ClassMapConfig,
    PolicyMap::ClassMapTypeConfig,
    PolicyMap::ClassAction,
    PolicyMap::PolicyMapSubConfig,
    PolicyMap::PolicyMapConfig,
    PolicyMap::PolicyMapTypeConfig,
    PolicyMap::ClassMapMatchStatus,
    PolicyMap::ClassMapStatus,
    PolicyMap::GenericClassMapStatus,
    PolicyMap::PolicyMapStatus,
    PolicyMap::PolicyMapTypeStatus,
    PolicyMap::ClassMapComparer,
    PolicyMap::PolicyMapCopyHandler,
    Cli::Session::AttributeFilter,
    Cli::Session::CopiedEntities,
    Cli::Session::EntityCopyHandler,
    Cli::Session::EntityCopyGlobalSessionHandler,
    Cli::Session::EntityCopyCustomHandler,
    Cli::Session::EntityCopyCustomHandlerTable,
    Cli::Session::EntityCopy>;
// clang-format on

INSTANTIATE_TYPED_TEST_SUITE_P(Platform, EntityContract, PlatformTypes, TypeName);

} // namespace contract
