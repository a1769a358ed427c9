// The library's entity types that keep the contract: one line each.

#include "EntityContract.inl"
#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"

namespace contract {

// clang-format off
using EntityTypes = testing::Types<
    Pbr::PbrFwdAction,
    Pbr::PbrActionSetDscp,
    Pbr::PbrActionContainer,
    Pbr::Config,
    Pbr::NexthopIndexAndL2AdjKey,
    Pbr::PbrClassMapStatus,
    Pbr::Status,
    Pbr::PbrAclCheckpointStatus,
    Pbr::PbrAclTypeCheckpointStatus,
    Pbr::ClassMapCheckpointStatus,
    Pbr::PolicyMapCheckpointStatus,
    Pbr::CheckpointAgentStatus,
    Pbr::CheckpointStatus,
    Pbr::ConfigCopyHandler,
    Pbr::ConfigCopyHandlerDir,
    Pbr::PolicyMapCopyHandler>;
// clang-format on

INSTANTIATE_TYPED_TEST_SUITE_P(Model, EntityContract, EntityTypes, TypeName);

// The suite itself: a contract that finds nothing to vary would hold of anything.
class ContractOfConfig : public EntityContract<Pbr::Config> {};

TEST_F(ContractOfConfig, VariesEverySwitch) {
  Heard found;
  for (Vyx::VyxType::AttributeQIteratorConst at(*Pbr::Config::_fwkType()); at; ++at)
    if (isScalar(*at)) found.note(at->name().charPtr());
  EXPECT_EQ("isNondestructing pbrUnresolvedNexthopActionDrop bgpPbrRedirect pbrEnableNonAgingMacAddr",
            found.take());
}

TEST_F(ContractOfConfig, CountsEachEntryOnce) {
  entity->bgpPbrRedirectIs(true);
  EXPECT_EQ(1U, reactor->take());
  entity->pbrActionsDel();
  entity->cmapTypeDel();
  EXPECT_EQ(2U, reactor->take());
}

} // namespace contract
