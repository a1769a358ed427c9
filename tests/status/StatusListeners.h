// Reactors on the types of the status.

#pragma once

#include "Pbr/Pbr.h"

#include "support/Heard.h"

class AdjKeyListener : public Recorder<Pbr::NexthopIndexAndL2AdjKey> {
public:
  using Recorder::Recorder;
  void onNexthopIndex() override { hear("nexthopIndex"); }
  void onNexthopIndexPublishCounter() override { hear("publishCounter"); }
  void onNexthopIndexDelCounter() override { hear("delCounter"); }
  void onL2AdjKey() override { hear("l2AdjKey"); }
  void onViasUsed(Lomu::IpGenAddr const& key) override { hear("viasUsed", key); }
  void onViasUsedvyxImmediate() override { hear("viasUsed immediate"); }
  void onViasUsed() override { hear("viasUsed"); }
};

// What a base's reactor hears, for the base itself and for what derives from it.
template <class X> class OfClassMapStatus : public Recorder<X> {
public:
  using Recorder<X>::Recorder;
  void onMatch(PolicyMap::ClassMapMatchOption key) override { this->hear("match", key); }
  void onMatchvyxImmediate() override { this->hear("match immediate"); }
  void onMatch() override { this->hear("match"); }
  void onRuleStatus() override { this->hear("ruleStatus"); }
};
using BaseClassMapStatusListener = OfClassMapStatus<PolicyMap::ClassMapStatus>;

class ClassMapStatusListener : public OfClassMapStatus<Pbr::PbrClassMapStatus> {
public:
  using OfClassMapStatus::OfClassMapStatus;
  void onActionType() override { hear("actionType"); }
  void onNexthopGroup() override { hear("nexthopGroup"); }
  void onNexthopIndexAndL2AdjKey() override { hear("adjKey"); }
};

template <class X> class OfTypeStatus : public Recorder<X> {
public:
  using Recorder<X>::Recorder;
  void onType() override { this->hear("type"); }
  void onStatus(Vyx::Name key) override { this->hear("status", key); }
  void onStatusvyxImmediate() override { this->hear("status immediate"); }
  void onStatus() override { this->hear("status"); }
  void onIntfDisallowed(PolicyMap::IntfErrorKey const& key) override { this->hear("intfDisallowed", key); }
  void onIntfDisallowedvyxImmediate() override { this->hear("intfDisallowed immediate"); }
  void onIntfDisallowed() override { this->hear("intfDisallowed"); }
  void onResult(Kest::UniqueId const& key) override { this->hear("result", key); }
  void onResultvyxImmediate() override { this->hear("result immediate"); }
  void onResult() override { this->hear("result"); }
  void onCountersPerRule() override { this->hear("countersPerRule"); }
  void onClassMapStatus(Kest::UniqueId const& key) override { this->hear("classMapStatus", key); }
  void onClassMapStatusvyxImmediate() override { this->hear("classMapStatus immediate"); }
  void onClassMapStatus() override { this->hear("classMapStatus"); }
  void onInitialized() override { this->hear("initialized"); }
};
using BaseTypeStatusListener = OfTypeStatus<PolicyMap::PolicyMapTypeStatus>;

class StatusListener : public OfTypeStatus<Pbr::Status> {
public:
  using OfTypeStatus::OfTypeStatus;
  void onPbrClassMapStatus(Kest::UniqueId const& key) override { hear("pbrClassMapStatus", key); }
  void onPbrClassMapStatusvyxImmediate() override { hear("pbrClassMapStatus immediate"); }
  void onPbrClassMapStatus() override { hear("pbrClassMapStatus"); }
};

// Its text is "0000000n-0000-0000".
inline Kest::UniqueId classMapId(std::uint32_t n) { return Kest::UniqueId(n, 0, 0); }
