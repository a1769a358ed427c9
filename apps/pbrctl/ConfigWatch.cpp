#include "pbrctl/RootWatches.h"
#include "pbrctl/Watcher.h"

namespace Pbrctl {

namespace {

class FwdActionWatcher final : public Watcher<Pbr::PbrFwdAction> {
public:
  using Pbr::PbrFwdAction::NotifieeConst::onNexthop;
  using Watcher::Watcher;
  void watchTree(Pbr::PbrFwdAction const& on) { watch(on); }
  void onNexthop(Lomu::IpGenAddr const& key) override {
    auto const at = notifier()->nexthopIterator(key);
    memberIs("nexthop", key, at && at.key() == key, notifier()->nexthop(key));
  }
  void onRecursive() override { valueIs("recursive", notifier()->recursive()); }
  void onNexthopGroup() override { valueIs("nexthopGroup", notifier()->nexthopGroup()); }

private:
  std::string about() const override { return "class " + textOf(notifier()->className()); }
};

class DscpActionWatcher final : public Watcher<Pbr::PbrActionSetDscp> {
public:
  using Watcher::Watcher;
  void watchTree(Pbr::PbrActionSetDscp const& on) { watch(on); }
};

class ContainerWatcher final : public Watcher<Pbr::PbrActionContainer> {
public:
  using Pbr::PbrActionContainer::NotifieeConst::onDscpAction;
  using Pbr::PbrActionContainer::NotifieeConst::onFwdAction;
  using Watcher::Watcher;
  void watchTree(Pbr::PbrActionContainer const& on) {
    followAll<FwdActionWatcher>("fwdAction", on.fwdActionIteratorConst());
    followAll<DscpActionWatcher>("dscpAction", on.dscpActionIteratorConst());
    watch(on);
  }
  void onFwdAction(Kest::UniqueId const& id) override {
    childIs<FwdActionWatcher>("fwdAction", id, notifier()->fwdAction(id));
  }
  void onDscpAction(Kest::UniqueId const& id) override {
    childIs<DscpActionWatcher>("dscpAction", id, notifier()->dscpAction(id));
  }
};

class ClassMapContentWatcher final : public Watcher<PolicyMap::ClassMapSubConfig> {
public:
  using PolicyMap::ClassMapSubConfig::NotifieeConst::onMatch;
  using Watcher::Watcher;
  void watchTree(PolicyMap::ClassMapSubConfig const& on) { watch(on); }
  void onDynamic() override { valueIs("dynamic", notifier()->dynamic()); }
  void onMatch(std::uint32_t sequence) override {
    auto const at = notifier()->matchIterator(sequence);
    memberIs("match", sequence, at && at.key() == sequence, notifier()->match(sequence));
  }
};

class ClassActionWatcher final : public Watcher<PolicyMap::ClassAction> {
public:
  using PolicyMap::ClassAction::NotifieeConst::onPolicyAction;
  using Watcher::Watcher;
  void watchTree(PolicyMap::ClassAction const& on) { watch(on); }
  void onSequence() override { valueIs("sequence", notifier()->sequence()); }
  void onPolicyAction(PolicyMap::ActionType type) override {
    if (auto const action = notifier()->policyAction(type))
      valueIs("policyAction", type, action->id());
    else
      gone("policyAction", type);
  }
};

class PolicyMapContentWatcher final : public Watcher<PolicyMap::PolicyMapSubConfig> {
public:
  using PolicyMap::PolicyMapSubConfig::NotifieeConst::onClassAction;
  using Watcher::Watcher;
  void watchTree(PolicyMap::PolicyMapSubConfig const& on) {
    followAll<ClassActionWatcher>("classAction", on.classActionIteratorConst());
    watch(on);
  }
  void onDynamic() override { valueIs("dynamic", notifier()->dynamic()); }
  void onClassAction(Vyx::Name name) override {
    childIs<ClassActionWatcher>("classAction", name, notifier()->classAction(name));
  }
};

// Class maps and policy maps have the same shape.
template <class Map, class ContentWatcher> class MapWatcher final : public Watcher<Map> {
public:
  using Watcher<Map>::Watcher;
  using Map::NotifieeConst::onSubconfig;
  void watchTree(Map const& on) {
    this->template followAll<ContentWatcher>("subconfig", on.subconfigIteratorConst());
    this->watch(on);
  }
  void onSubconfig(Kest::UniqueId const& id) override {
    this->template childIs<ContentWatcher>("subconfig", id, this->notifier()->subconfig(id));
  }
  void onCurrentSubConfig() override {
    auto const current = this->notifier()->currentSubConfig();
    this->valueIs("currentSubConfig", current ? textOf(current->id()) : "none");
  }
};

using ClassMapWatcher = MapWatcher<PolicyMap::ClassMapConfig, ClassMapContentWatcher>;
using PolicyMapWatcher = MapWatcher<PolicyMap::PolicyMapConfig, PolicyMapContentWatcher>;

class ClassMapTypeWatcher final : public Watcher<PolicyMap::ClassMapTypeConfig> {
public:
  using PolicyMap::ClassMapTypeConfig::NotifieeConst::onCmap;
  using Watcher::Watcher;
  void watchTree(PolicyMap::ClassMapTypeConfig const& on) {
    followAll<ClassMapWatcher>("cmap", on.cmapIteratorConst());
    watch(on);
  }
  void onCmap(Vyx::Name name) override { childIs<ClassMapWatcher>("cmap", name, notifier()->cmap(name)); }
};

class PolicyMapTypeWatcher final : public Watcher<PolicyMap::PolicyMapTypeConfig> {
public:
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onIntf;
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onIntfFallback;
  using PolicyMap::PolicyMapTypeConfig::NotifieeConst::onPmap;
  using Watcher::Watcher;
  void watchTree(PolicyMap::PolicyMapTypeConfig const& on) {
    followAll<PolicyMapWatcher>("pmap", on.pmapIteratorConst());
    watch(on);
  }
  void onPmap(Vyx::Name name) override { childIs<PolicyMapWatcher>("pmap", name, notifier()->pmap(name)); }
  void onIntf(Lomu::IntfId id) override {
    auto const at = notifier()->intfIterator(id);
    memberIs("intf", id, at && at.key() == id, notifier()->intf(id));
  }
  void onIntfFallback(Lomu::IntfId id) override {
    auto const at = notifier()->intfFallbackIterator(id);
    memberIs("intfFallback", id, at && at.key() == id, notifier()->intfFallback(id));
  }
};

class ConfigWatcher final : public Watcher<Pbr::Config> {
public:
  using Watcher::Watcher;
  void watchTree(Pbr::Config const& on) {
    if (auto const child = on.pbrActions()) follow<ContainerWatcher>("pbrActions", *child);
    if (auto const child = on.cmapType()) follow<ClassMapTypeWatcher>("cmapType", *child);
    if (auto const child = on.pmapType()) follow<PolicyMapTypeWatcher>("pmapType", *child);
    watch(on);
  }
  void onPbrUnresolvedNexthopActionDrop() override {
    valueIs("pbrUnresolvedNexthopActionDrop", notifier()->pbrUnresolvedNexthopActionDrop());
  }
  void onBgpPbrRedirect() override { valueIs("bgpPbrRedirect", notifier()->bgpPbrRedirect()); }
  void onPbrEnableNonAgingMacAddr() override {
    valueIs("pbrEnableNonAgingMacAddr", notifier()->pbrEnableNonAgingMacAddr());
  }
  void onPbrActions() override { onlyChildIs<ContainerWatcher>("pbrActions", notifier()->pbrActions()); }
  void onCmapType() override { onlyChildIs<ClassMapTypeWatcher>("cmapType", notifier()->cmapType()); }
  void onPmapType() override { onlyChildIs<PolicyMapTypeWatcher>("pmapType", notifier()->pmapType()); }
};

} // namespace

Reactor watchConfig(Pbr::Config const& config, ChangeSink const& sink, std::string path) {
  return watchRoot<ConfigWatcher>(config, sink, std::move(path));
}

} // namespace Pbrctl
