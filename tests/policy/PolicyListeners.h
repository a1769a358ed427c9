// Reactors on the types of policy-based routing.

#pragma once

#include "Pbr/Pbr.h"

#include "support/Heard.h"

class FwdListener : public Recorder<Pbr::PbrFwdAction> {
public:
  using Recorder::Recorder;
  void onNexthop(Lomu::IpGenAddr const& key) override { hear("nexthop", key); }
  void onNexthopvyxImmediate() override { hear("nexthop immediate"); }
  void onNexthop() override { hear("nexthop"); }
  void onRecursive() override { hear("recursive"); }
  void onNexthopGroup() override { hear("nexthopGroup"); }
};

class ContainerListener : public Recorder<Pbr::PbrActionContainer> {
public:
  using Recorder::Recorder;
  void onFwdAction(Kest::UniqueId const& key) override { hear("fwdAction", key); }
  void onFwdActionvyxImmediate() override { hear("fwdAction immediate"); }
  void onFwdAction() override { hear("fwdAction"); }
  void onDscpAction(Kest::UniqueId const& key) override { hear("dscpAction", key); }
  void onDscpActionvyxImmediate() override { hear("dscpAction immediate"); }
  void onDscpAction() override { hear("dscpAction"); }
};

class ConfigListener : public Recorder<Pbr::Config> {
public:
  using Recorder::Recorder;
  void onPbrUnresolvedNexthopActionDrop() override { hear("pbrUnresolvedNexthopActionDrop"); }
  void onBgpPbrRedirect() override { hear("bgpPbrRedirect"); }
  void onPbrEnableNonAgingMacAddr() override { hear("pbrEnableNonAgingMacAddr"); }
  void onPbrActions() override { hear("pbrActions"); }
  void onCmapType() override { hear("cmapType"); }
  void onPmapType() override { hear("pmapType"); }
};

// An action's id; its text is "0000000n-0000-0000".
inline Kest::UniqueId actionId(std::uint32_t n) { return Kest::UniqueId(n, 0, 0); }
