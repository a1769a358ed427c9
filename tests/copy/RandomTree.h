// Random configurations as plain data, from which trees are built and with which a copy's outcome is told
// without copying.

#pragma once

#include "ConfigTree.h"
#include "support/Random.h"

#include <map>
#include <optional>

// An action's identity says all that is fixed in it; the rest may differ from plan to plan.
struct ActionPlan {
  bool recursive = false;
  std::string group;
  std::map<std::string, bool> nexthops;
};

// The numbers of the class's actions; 0 for none.
struct ClassPlan {
  unsigned sequence = 0;
  std::uint32_t forward = 0;
  std::uint32_t setDscp = 0;
};

struct ClassMapVersion {
  bool dynamic = false;
  std::map<unsigned, std::string> rules;
};
struct PolicyMapVersion {
  bool dynamic = false;
  std::map<std::string, ClassPlan> classes;
};
template <class Version> struct MapPlan {
  std::map<std::uint32_t, Version> versions;
  std::uint32_t current = 0; // 0 for none.
  bool dynamic() const { return current && versions.at(current).dynamic; }
};

struct ConfigPlan {
  bool switches[3] = {false, false, true};
  std::map<std::string, MapPlan<ClassMapVersion>> classMaps;
  std::map<std::string, MapPlan<PolicyMapVersion>> policyMaps;
  std::map<std::string, std::string> bindings[2]; // First and fallback.
  std::map<std::uint32_t, ActionPlan> actions;    // Of every class, by number.
};

ConfigPlan randomPlan(Random& random);
// A few places of the plan differ from the given one.
ConfigPlan changedPlan(Random& random, ConfigPlan plan);
ConfigPtr built(ConfigPlan const& plan);
// What a copy of the one onto the other is to leave there.
ConfigPlan copiedPlan(ConfigPlan const& src, ConfigPlan const& dest);
