// How the actions of a copied policy map come to live in the destination's container.

#include "Pbr/PolicyMapCopyHandler.h"
#include "Cli/Session.h"
#include "CopyTrace.h"
#include "SubConfigActions.h"

namespace Pbr {

namespace {

// Gives the destination's action what the source's has, and points the class action at it. A pointer that
// moves counts as a change, also where both actions are equal.
void rebind(Vyx::Ptr<Cli::Session::EntityCopy> const& ec, PolicyMap::ClassAction& to,
            Vyx::Ptr<PolicyMap::Action> const& dest, Vyx::Ptr<PolicyMap::Action const> const& src) {
  ec->doCopyEntityAttrs(dest, src, "", nullptr);
  if (to.policyAction(dest->type()) != dest) ec->changesIs(ec->changes() + 1);
  to.policyActionIs(dest);
}

} // namespace

// Each action keeps its identity: the destination's has the id, the class name and the kind of the source's.
// Class actions that the destination doesn't have are passed over. What stands in a destination class action
// and not in the source's stays there.
// REQUIRES: `config` is set.
// THROWS: NameInUseException when the container has another action under one of the ids.
void PolicyMapCopyHandler::updateActionPtrs(Vyx::Ptr<Cli::Session::EntityCopy> const& ec,
                                            Vyx::Ptr<PolicyMap::PolicyMapSubConfig> const& dest,
                                            Vyx::Ptr<PolicyMap::PolicyMapSubConfig const> const& src) {
  traceCopy(8, __LINE__, __func__, __func__, " policy ", dest ? dest->name() : Vyx::Name());
  if (!dest || !src) return;
  for (auto iterClassAction = src->classActionIteratorConst(); iterClassAction; ++iterClassAction) {
    auto const to = dest->classAction(iterClassAction.key());
    if (!to) {
      traceCopy(8, __LINE__, __func__, __func__, " no dClassAction for ", iterClassAction.key());
      continue;
    }
    ClassActions const from(*iterClassAction);
    unsigned count = 0;
    if (from.forward) {
      auto const& action = *from.forward;
      rebind(ec, *to,
             config()->pbrActions()->fwdActionIs(action.className(), action.id(), action.fwdActionType()),
             from.forward);
      traceCopy(0, __LINE__, __func__, "FwdAction pointer change", action.id());
      count = 1;
    }
    if (from.setDscp) {
      auto const& action = *from.setDscp;
      rebind(ec, *to, config()->pbrActions()->dscpActionIs(action.className(), action.id(), action.dscp()),
             from.setDscp);
      traceCopy(0, __LINE__, __func__, "setDscp pointer change", action.id());
      ++count;
    }
    Vyx::require(iterClassAction->policyActions() == count, "iterClassAction->policyActions() == count",
                 "Pbr/PbrCopy", __LINE__);
  }
}

// The actions leave the container before the sub-config goes. An unknown id is no error.
// REQUIRES: `config` is set.
void PolicyMapCopyHandler::subConfigDelete(Vyx::Ptr<PolicyMap::PolicyMapConfig> const& policy,
                                           Kest::UniqueId const& subConfigId) {
  traceCopy(8, __LINE__, __func__, __func__, " policy ", policy->name());
  deleteSubConfigActions(config(), policy->subconfig(subConfigId));
  policy->subconfigDel(subConfigId);
}

} // namespace Pbr
