#include "pbrctl/Watcher.h"

namespace Pbrctl {

namespace {

// What several class maps may share is told at each of them.
class NexthopIndexWatcher final : public Watcher<Pbr::NexthopIndexAndL2AdjKey> {
public:
  using Pbr::NexthopIndexAndL2AdjKey::NotifieeConst::onViasUsed;
  using Watcher::Watcher;
  void watchTree(Pbr::NexthopIndexAndL2AdjKey const& on) { watch(on); }
  // It was filled before anybody referred to it.
  void tellAll() {
    onNexthopIndex();
    onNexthopIndexPublishCounter();
    onNexthopIndexDelCounter();
    onL2AdjKey();
    for (auto at = notifier()->viasUsedIteratorConst(); at; ++at) onViasUsed(at.key());
  }
  void onNexthopIndex() override { valueIs("nexthopIndex", notifier()->nexthopIndex()); }
  void onNexthopIndexPublishCounter() override {
    valueIs("nexthopIndexPublishCounter", notifier()->nexthopIndexPublishCounter());
  }
  void onNexthopIndexDelCounter() override {
    valueIs("nexthopIndexDelCounter", notifier()->nexthopIndexDelCounter());
  }
  void onL2AdjKey() override { valueIs("l2AdjKey", notifier()->l2AdjKey()); }
  void onViasUsed(Lomu::IpGenAddr const& key) override {
    auto const at = notifier()->viasUsedIteratorConst(key);
    memberIs("viasUsed", key, at && at.key() == key, notifier()->viasUsed(key));
  }
};

class MatchStatusWatcher final : public Watcher<PolicyMap::ClassMapMatchStatus> {
public:
  using Watcher::Watcher;
  void watchTree(PolicyMap::ClassMapMatchStatus const& on) { watch(on); }
  void onState() override { valueIs("state", notifier()->state()); }
  void onRules() override { valueIs("rules", notifier()->rules()); }
};

// What the status of a class map has whatever the feature.
template <class X> class ClassMapStatusWatcher : public Watcher<X> {
public:
  using PolicyMap::ClassMapStatus::NotifieeConst::onMatch;
  using Watcher<X>::Watcher;
  void watchTree(X const& on) {
    this->template followAll<MatchStatusWatcher>("match", on.matchIteratorConst());
    this->watch(on);
  }
  void onMatch(PolicyMap::ClassMapMatchOption option) override {
    this->template childIs<MatchStatusWatcher>("match", option, this->notifier()->match(option));
  }
  void onRuleStatus() override { this->valueIs("ruleStatus", this->notifier()->ruleStatus()); }

private:
  std::string about() const override { return "class " + textOf(this->notifier()->className()); }
};

class PbrClassMapStatusWatcher final : public ClassMapStatusWatcher<Pbr::PbrClassMapStatus> {
public:
  using ClassMapStatusWatcher::ClassMapStatusWatcher;
  void watchTree(Pbr::PbrClassMapStatus const& on) {
    if (on.nexthopIndexAndL2AdjKey()) follow<NexthopIndexWatcher>(kNexthops, *on.nexthopIndexAndL2AdjKey());
    ClassMapStatusWatcher::watchTree(on);
  }
  void onActionType() override { valueIs("actionType", notifier()->actionType()); }
  void onNexthopGroup() override { valueIs("nexthopGroup", notifier()->nexthopGroup()); }
  void onNexthopIndexAndL2AdjKey() override {
    auto const nexthops = notifier()->nexthopIndexAndL2AdjKey();
    valueIs(kNexthops, nexthops ? textOf(nexthops->nexthopSet()) : "none");
    if (nexthops)
      follow<NexthopIndexWatcher>(kNexthops, *nexthops).tellAll();
    else
      unfollow(kNexthops);
  }

private:
  static constexpr char const* kNexthops = "nexthopIndexAndL2AdjKey";
};

class PolicyMapStatusWatcher final : public Watcher<PolicyMap::PolicyMapStatus> {
public:
  using PolicyMap::PolicyMapStatus::NotifieeConst::onIntf;
  using Watcher::Watcher;
  void watchTree(PolicyMap::PolicyMapStatus const& on) { watch(on); }
  void onState() override { valueIs("state", notifier()->state()); }
  void onMessage() override { valueIs("message", notifier()->message()); }
  void onIntf(Lomu::IntfId id) override {
    auto const at = notifier()->intfIteratorConst(id);
    memberIs("intf", id, at && at.key() == id, notifier()->intf(id));
  }
};

class StatusWatcher final : public Watcher<Pbr::Status> {
public:
  using Pbr::Status::NotifieeConst::onPbrClassMapStatus;
  using PolicyMap::PolicyMapTypeStatus::NotifieeConst::onClassMapStatus;
  using PolicyMap::PolicyMapTypeStatus::NotifieeConst::onIntfDisallowed;
  using PolicyMap::PolicyMapTypeStatus::NotifieeConst::onResult;
  using PolicyMap::PolicyMapTypeStatus::NotifieeConst::onStatus;
  using Watcher::Watcher;
  using GenericWatcher = ClassMapStatusWatcher<PolicyMap::GenericClassMapStatus>;
  void watchTree(Pbr::Status const& on) {
    followAll<PolicyMapStatusWatcher>("status", on.statusIteratorConst());
    followAll<GenericWatcher>("classMapStatus", on.classMapStatusIteratorConst());
    followAll<PbrClassMapStatusWatcher>("pbrClassMapStatus", on.pbrClassMapStatusIteratorConst());
    watch(on);
  }
  void onType() override { valueIs("type", notifier()->type()); }
  void onStatus(Vyx::Name name) override {
    childIs<PolicyMapStatusWatcher>("status", name, notifier()->status(name));
  }
  void onIntfDisallowed(PolicyMap::IntfErrorKey const& key) override {
    auto const at = notifier()->intfDisallowedIteratorConst(key);
    memberIs("intfDisallowed", key, at && at.key() == key, notifier()->intfDisallowed(key));
  }
  void onResult(Kest::UniqueId const& id) override {
    auto const at = notifier()->resultIteratorConst(id);
    memberIs("result", id, at && at.key() == id, notifier()->result(id));
  }
  void onCountersPerRule() override { valueIs("countersPerRule", notifier()->countersPerRule()); }
  void onClassMapStatus(Kest::UniqueId const& id) override {
    childIs<GenericWatcher>("classMapStatus", id, notifier()->classMapStatus(id));
  }
  void onInitialized() override { valueIs("initialized", notifier()->initialized()); }
  void onPbrClassMapStatus(Kest::UniqueId const& id) override {
    childIs<PbrClassMapStatusWatcher>("pbrClassMapStatus", id, notifier()->pbrClassMapStatus(id));
  }
};

} // namespace

Reactor watchStatus(Pbr::Status const& status, ChangeSink const& sink, std::string path) {
  return watchRoot<StatusWatcher>(status, sink, std::move(path));
}

} // namespace Pbrctl
