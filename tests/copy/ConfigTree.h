// Building a configuration in a test's words, and telling what stands in one.

#pragma once

#include "Pbr/Pbr.h"

#include <string>
#include <vector>

using ConfigPtr = Vyx::Ptr<Pbr::Config>;
using ClassContent = Vyx::Ptr<PolicyMap::ClassMapSubConfig>;
using PolicyContent = Vyx::Ptr<PolicyMap::PolicyMapSubConfig>;

inline Kest::UniqueId idOf(std::uint32_t number) { return {number, 0, 0}; }

// The version of that number, made when it isn't there, becomes the map's current one.
ClassContent addClassMap(Pbr::Config& to, Vyx::Name const& name, std::uint32_t version = 1);
PolicyContent addPolicyMap(Pbr::Config& to, Vyx::Name const& name, std::uint32_t version = 1);

// The rules get the sequence numbers 10, 20 and so on.
void addRules(PolicyMap::ClassMapSubConfig& to, std::vector<char const*> const& rules);

// Makes the action in the container and points the class action at it, which is made when it isn't there.
Vyx::Ptr<Pbr::PbrFwdAction> addForward(Pbr::Config& in, PolicyMap::PolicyMapSubConfig& to,
                                       Vyx::Name const& className, std::uint32_t id,
                                       std::vector<char const*> const& nexthops = {},
                                       Pbr::PbrActionType type = Pbr::nexthopAction);
Vyx::Ptr<Pbr::PbrActionSetDscp> addSetDscp(Pbr::Config& in, PolicyMap::PolicyMapSubConfig& to,
                                           Vyx::Name const& className, std::uint32_t id, unsigned char dscp);

// All that stands in the configuration, a line each; equal configurations have equal texts.
std::string contentOf(Pbr::Config const& config);

// What is wrong in the tree, as invariantFaults says, and beyond it: a current version that isn't one of the
// map's, an action under another type's key, an action that isn't the container's of that id.
std::vector<std::string> configFaults(Pbr::Config const& config);

// The ids of the container's actions that no class action names.
std::vector<std::string> strayActions(Pbr::Config const& config);
