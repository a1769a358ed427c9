#include "pbrctl/Watcher.h"

namespace Pbrctl {

namespace {

class AclWatcher final : public Watcher<Pbr::PbrAclCheckpointStatus> {
public:
  using Pbr::PbrAclCheckpointStatus::NotifieeConst::onRuleStatus;
  using Watcher::Watcher;
  void watchTree(Pbr::PbrAclCheckpointStatus const& on) { watch(on); }
  void onRuleStatus(Acl::UniqueId const& id) override {
    auto const at = notifier()->ruleStatusIteratorConst(id);
    memberIs("ruleStatus", id, at && at.key() == id, notifier()->ruleStatus(id));
  }
  void onTimestamp() override { valueIs("timestamp", notifier()->timestamp()); }
  void onVersion() override { valueIs("version", notifier()->version()); }
};

class AclTypeWatcher final : public Watcher<Pbr::PbrAclTypeCheckpointStatus> {
public:
  using Pbr::PbrAclTypeCheckpointStatus::NotifieeConst::onAcl;
  using Watcher::Watcher;
  void watchTree(Pbr::PbrAclTypeCheckpointStatus const& on) {
    followAll<AclWatcher>("acl", on.aclIteratorConst());
    watch(on);
  }
  void onAcl(Vyx::Name name) override { childIs<AclWatcher>("acl", name, notifier()->acl(name)); }
};

class ClassMapWatcher final : public Watcher<Pbr::ClassMapCheckpointStatus> {
public:
  using Pbr::ClassMapCheckpointStatus::NotifieeConst::onAclTypeCkptStatus;
  using Watcher::Watcher;
  void watchTree(Pbr::ClassMapCheckpointStatus const& on) {
    followAll<AclTypeWatcher>("aclTypeCkptStatus", on.aclTypeCkptStatusIteratorConst());
    watch(on);
  }
  void onPktMatch() override { valueIs("pktMatch", notifier()->pktMatch()); }
  void onVersion() override { valueIs("version", notifier()->version()); }
  void onAclTypeCkptStatus(Acl::AclType type) override {
    childIs<AclTypeWatcher>("aclTypeCkptStatus", type, notifier()->aclTypeCkptStatus(type));
  }
};

class PolicyMapWatcher final : public Watcher<Pbr::PolicyMapCheckpointStatus> {
public:
  using Pbr::PolicyMapCheckpointStatus::NotifieeConst::onCmapCkptStatus;
  using Watcher::Watcher;
  void watchTree(Pbr::PolicyMapCheckpointStatus const& on) {
    followAll<ClassMapWatcher>("cmapCkptStatus", on.cmapCkptStatusIteratorConst());
    watch(on);
  }
  void onCmapCkptStatus(Vyx::Name name) override {
    childIs<ClassMapWatcher>("cmapCkptStatus", name, notifier()->cmapCkptStatus(name));
  }
  void onCkptTimestamp() override { valueIs("ckptTimestamp", notifier()->ckptTimestamp()); }
};

class AgentWatcher final : public Watcher<Pbr::CheckpointAgentStatus> {
public:
  using Pbr::CheckpointAgentStatus::NotifieeConst::onPmapCkptStatus;
  using Watcher::Watcher;
  void watchTree(Pbr::CheckpointAgentStatus const& on) {
    followAll<PolicyMapWatcher>("pmapCkptStatus", on.pmapCkptStatusIteratorConst());
    watch(on);
  }
  void onPmapCkptStatus(Vyx::Name name) override {
    childIs<PolicyMapWatcher>("pmapCkptStatus", name, notifier()->pmapCkptStatus(name));
  }
};

class CheckpointWatcher final : public Watcher<Pbr::CheckpointStatus> {
public:
  using Pbr::CheckpointStatus::NotifieeConst::onCheckpointAgentStatus;
  using Watcher::Watcher;
  void watchTree(Pbr::CheckpointStatus const& on) {
    followAll<AgentWatcher>("checkpointAgentStatus", on.checkpointAgentStatusIteratorConst());
    watch(on);
  }
  void onCheckpointAgentStatus(Vyx::Name name) override {
    childIs<AgentWatcher>("checkpointAgentStatus", name, notifier()->checkpointAgentStatus(name));
  }
};

} // namespace

Reactor watchCheckpoint(Pbr::CheckpointStatus const& checkpoint, ChangeSink const& sink, std::string path) {
  return watchRoot<CheckpointWatcher>(checkpoint, sink, std::move(path));
}

} // namespace Pbrctl
