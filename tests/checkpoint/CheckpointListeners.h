// Reactors on the levels of the checkpoint tree, from the root down.

#pragma once

#include "Pbr/Pbr.h"

#include "support/Heard.h"

class RootListener : public Recorder<Pbr::CheckpointStatus> {
public:
  using Recorder::Recorder;
  void onCheckpointAgentStatus(Vyx::Name key) override { hear("agent", key); }
  void onCheckpointAgentStatusvyxImmediate() override { hear("agent immediate"); }
  void onCheckpointAgentStatus() override { hear("agent"); }
};

class AgentListener : public Recorder<Pbr::CheckpointAgentStatus> {
public:
  using Recorder::Recorder;
  void onPmapCkptStatus(Vyx::Name key) override { hear("pmap", key); }
  void onPmapCkptStatusvyxImmediate() override { hear("pmap immediate"); }
  void onPmapCkptStatus() override { hear("pmap"); }
};

class PmapListener : public Recorder<Pbr::PolicyMapCheckpointStatus> {
public:
  using Recorder::Recorder;
  void onCmapCkptStatus(Vyx::Name key) override { hear("cmap", key); }
  void onCmapCkptStatusvyxImmediate() override { hear("cmap immediate"); }
  void onCmapCkptStatus() override { hear("cmap"); }
  void onCkptTimestamp() override { hear("ckptTimestamp"); }
};

class CmapListener : public Recorder<Pbr::ClassMapCheckpointStatus> {
public:
  using Recorder::Recorder;
  void onPktMatch() override { hear("pktMatch"); }
  void onVersion() override { hear("version"); }
  void onAclTypeCkptStatus(Acl::AclType key) override { hear("aclType", key); }
  void onAclTypeCkptStatusvyxImmediate() override { hear("aclType immediate"); }
  void onAclTypeCkptStatus() override { hear("aclType"); }
};

class AclTypeListener : public Recorder<Pbr::PbrAclTypeCheckpointStatus> {
public:
  using Recorder::Recorder;
  void onAcl(Vyx::Name key) override { hear("acl", key); }
  void onAclvyxImmediate() override { hear("acl immediate"); }
  void onAcl() override { hear("acl"); }
};

class AclListener : public Recorder<Pbr::PbrAclCheckpointStatus> {
public:
  using Recorder::Recorder;
  void onRuleStatus(Acl::UniqueId const& key) override { hear("rule", key); }
  void onRuleStatusvyxImmediate() override { hear("rule immediate"); }
  void onRuleStatus() override { hear("rule"); }
  void onTimestamp() override { hear("timestamp"); }
  void onVersion() override { hear("version"); }
};

// A rule's id; its text is "0000000n-0000-0000".
inline Acl::UniqueId ruleId(std::uint32_t n) { return Acl::UniqueId(n, 0, 0); }
