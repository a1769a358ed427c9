// The copy of one policy map.
//
// ORDER: sub-configs that go are gone before any is copied, so that actions that leave with one sub-config
// and come back with another are made anew in between and not lost.

#include "PolicyMap/PolicyMapCopyHandler.h"

#include "Cli/Session.h"
#include "PolicyMap/PolicyMap.h"
#include "frame/LineCast.h"

namespace PolicyMap {

namespace {

using Cli::Session::AttributeFilter;

// Lets a copy have every attribute but one.
class AllBut final : public AttributeFilter {
public:
  explicit AllBut(Vyx::Name attribute) : attribute_(std::move(attribute)) {}
  bool accepts(Vyx::Name, Vyx::Name attribute) const override { return !(attribute == attribute_); }

private:
  Vyx::Name const attribute_;
};

// The actions belong to whoever answers updateActionPtrs.
Vyx::Ptr<AttributeFilter const> const& allButActions() {
  static Vyx::Ptr<AttributeFilter const> const filter =
      Vyx::ptrFromNew(new AllBut(ClassAction::VyxAttrPolicyAction::name));
  return filter;
}

Vyx::Ptr<AttributeFilter const> const& allButSubConfigs() {
  static Vyx::Ptr<AttributeFilter const> const filter =
      Vyx::ptrFromNew(new AllBut(PolicyMapConfig::VyxAttrSubconfig::name));
  return filter;
}

// Whether `b` has every class action of `a`, with an action of the same identity wherever `a` has one.
bool hasActionsOf(PolicyMapSubConfig const& a, PolicyMapSubConfig const& b) {
  for (PolicyMapSubConfig::VyxClassActionMap::Walk at(PolicyMapSubConfig::VyxAttrClassAction::field(a)); at;
       ++at) {
    auto const* other = PolicyMapSubConfig::VyxAttrClassAction::field(b).find(at->fwkKey());
    if (!other) return false;
    for (ClassAction::VyxPolicyActionMap::Walk action(ClassAction::VyxAttrPolicyAction::field(*at)); action;
         ++action) {
      auto const* same = ClassAction::VyxAttrPolicyAction::field(*other).find(action->fwkKey());
      if (!same || !(same->value()->id() == action->value()->id())) return false;
    }
  }
  return true;
}

} // namespace

// A sub-config that would lose a class action or an action is replaced whole: only subConfigDelete reaches
// the owner of the actions, and an action that lost its class action there would stay with its owner for
// ever. RETURNS whether the policy map or one of its actions was changed. Both entities are policy maps;
// anything else changes nothing.
bool PolicyMapCopyHandler::handleEntity(Vyx::Ptr<Cli::Session::EntityCopy> const& ec,
                                        Vyx::Ptr<Vyx::Entity> const& dest,
                                        Vyx::Ptr<Vyx::Entity const> const& src, Vyx::String8 path) {
  auto const to = frame::linePtrCast<PolicyMapConfig>(dest);
  auto const from = frame::linePtrCast<PolicyMapConfig const>(src);
  if (!to || !from) return false;
  bool changed = false;
  for (auto at = to->subconfigIterator(); at; ++at) {
    auto const model = from->subconfig(at.key());
    if (model && hasActionsOf(*at, *model)) continue;
    subConfigDelete(to, at.key());
    changed = true;
  }
  for (auto at = from->subconfigIteratorConst(); at; ++at) {
    changed = changed || !to->subconfig(at.key());
    auto const sub = to->subconfigIs(at.key());
    changed = ec->doCopyEntityAttrs(sub, at.member(), path, allButActions()) || changed;
    changed = changed || !hasActionsOf(*at, *sub);
    unsigned const changes = ec->changes();
    updateActionPtrs(ec, sub, at.member());
    changed = changed || ec->changes() != changes;
  }
  return ec->doCopyEntityAttrs(to, src, path, allButSubConfigs()) || changed;
}

// Who owns no actions shares the source's.
void PolicyMapCopyHandler::updateActionPtrs(Vyx::Ptr<Cli::Session::EntityCopy> const&,
                                            Vyx::Ptr<PolicyMapSubConfig> const& dest,
                                            Vyx::Ptr<PolicyMapSubConfig const> const& src) {
  if (!dest || !src) return;
  for (auto at = src->classActionIteratorConst(); at; ++at)
    if (auto const to = dest->classAction(at.key()))
      for (auto action = at->policyActionIteratorConst(); action; ++action)
        to->policyActionIs(action.value());
}

void PolicyMapCopyHandler::subConfigDelete(Vyx::Ptr<PolicyMapConfig> const& dest, Kest::UniqueId const& id) {
  dest->subconfigDel(id);
}

} // namespace PolicyMap
