// Listens to every entity of a tree, whatever its type.

#pragma once

#include "Pbr/Pbr.h"
#include "PolicyMap/PolicyMap.h"
#include "Vyx/GenericIfEntity.h"
#include "support/AnyEntry.h"

#include <vector>

namespace replication_test {

class Ears {
public:
  // Every entity below the root, and the root.
  explicit Ears(Vyx::Entity& root) { listen(root); }

  // RETURNS how many entries were called since the last call.
  unsigned take() {
    unsigned sum = 0;
    for (auto const& count : counts_) sum += count();
    return sum;
  }

private:
  void listen(Vyx::Entity& entity) {
    listenAs<Pbr::Config, Pbr::PbrActionContainer, Pbr::PbrFwdAction, Pbr::PbrActionSetDscp, Pbr::Status,
             Pbr::PbrClassMapStatus, Pbr::NexthopIndexAndL2AdjKey, Pbr::CheckpointStatus,
             Pbr::CheckpointAgentStatus, Pbr::PolicyMapCheckpointStatus, Pbr::ClassMapCheckpointStatus,
             Pbr::PbrAclTypeCheckpointStatus, Pbr::PbrAclCheckpointStatus, PolicyMap::ClassMapTypeConfig,
             PolicyMap::ClassMapConfig, PolicyMap::ClassMapSubConfig, PolicyMap::PolicyMapTypeConfig,
             PolicyMap::PolicyMapConfig, PolicyMap::PolicyMapSubConfig, PolicyMap::ClassAction,
             PolicyMap::PolicyMapStatus, PolicyMap::ClassMapMatchStatus>(entity);
    Vyx::GenericIfEntity self{Vyx::Ptr<Vyx::Entity const>(&entity)};
    for (Vyx::VyxType::AttributeQIteratorConst at(*entity.fwkType()); at; ++at)
      if ((at->flags().low & kStored) && at->ops()) below(entity, self, *at);
  }

  // The children under one attribute, and what is referred to but belongs nowhere.
  void below(Vyx::Entity& entity, Vyx::GenericIfEntity& self, Vyx::VyxAttr const& attr) {
    auto const one = [&](Vyx::Ptr<Vyx::GenericIf> const& value) {
      auto const* const found = dynamic_cast<Vyx::GenericIfEntity const*>(value.ptr());
      Vyx::Entity* const child = found ? const_cast<Vyx::Entity*>(found->entity().ptr()) : nullptr;
      if (child && (!child->parent() || child->parent().ptr() == &entity)) listen(*child);
    };
    if (attr.flags().low & kKeyed)
      for (auto at = self.attributeIteratorConst(attr.id()); at; ++at) one(at.value());
    else
      one(self.attributeOp({attr.id(), Vyx::GenericIf::AttributeOp::read}, {}, {}));
  }

  template <class... X> void listenAs(Vyx::Entity& entity) { (listenAsOne<X>(entity), ...); }
  template <class X> void listenAsOne(Vyx::Entity& entity) {
    if (entity.fwkType() != X::_fwkType()) return;
    auto const reactor = AnyEntry<X>::make();
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(Vyx::Ptr<X>(static_cast<X*>(&entity)));
    counts_.push_back([reactor] { return reactor->take(); });
  }

  static constexpr unsigned kStored = 0x100;
  static constexpr unsigned kKeyed = 0x1800000;

  std::vector<std::function<unsigned()>> counts_;
};

} // namespace replication_test
