#include "SubConfigActions.h"

#include "CopyTrace.h"
#include "frame/LineCast.h"

namespace Pbr {

ClassActions::ClassActions(PolicyMap::ClassAction const& of)
    : forward(frame::linePtrCast<PbrFwdAction>(of.policyAction(PolicyMap::actionPbrForward))),
      setDscp(frame::linePtrCast<PbrActionSetDscp>(of.policyAction(PolicyMap::actionPbrSetDscp))) {}

void deleteSubConfigActions(Vyx::Ptr<Config> const& config,
                            Vyx::Ptr<PolicyMap::PolicyMapSubConfig> const& subConfig) {
  traceCopy(8, __LINE__, __func__, __func__, " subConfigId ",
            subConfig ? valueToStrep(subConfig->id()) : Vyx::String8("none"));
  if (!subConfig) return;
  for (auto at = subConfig->classActionIterator(); at; ++at) {
    ClassActions const actions(*at);
    if (actions.forward) config->pbrActions()->fwdActionDel(actions.forward->id());
    if (actions.setDscp) config->pbrActions()->dscpActionDel(actions.setDscp->id());
  }
}

} // namespace Pbr
