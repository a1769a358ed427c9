// What agents report: a checkpoint tree is built from nothing and taken down, and sets of next hops are
// hashed and compared. Beside each stand plain structs of the same content, which tell nobody of changes:
// with std::unordered_map, whose walks go in no order that another process would have too, and with std::map.

#include "Heap.h"
#include "Processor.h"

#include "Pbr/Pbr.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Bench {

namespace {

constexpr std::uint32_t kAgents = 8;
constexpr std::uint32_t kClassMaps = 10; // In each policy map.
constexpr std::uint32_t kAclTypes = 2;
constexpr std::uint32_t kAcls = 5;
constexpr std::uint32_t kRules = 20;
constexpr std::uint32_t kRulesOfAPolicyMap = kClassMaps * kAclTypes * kAcls * kRules;
constexpr std::uint32_t kRulesOfOnePolicyMapEach = kAgents * kRulesOfAPolicyMap;

constexpr Acl::AclType kTypes[kAclTypes] = {Acl::ip, Acl::ipv6};

// Names as texts of one kind or the other, made before anything is measured.
template <class Text> struct Names {
  std::vector<Text> agents, policyMaps, classMaps, acls;

  explicit Names(std::uint32_t policyMapCount) {
    fill(agents, "Linecard", kAgents);
    fill(policyMaps, "POLICY", policyMapCount);
    fill(classMaps, "CLASS", kClassMaps);
    fill(acls, "acl", kAcls);
  }

private:
  static void fill(std::vector<Text>& names, std::string const& front, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) names.push_back(Text((front + std::to_string(i)).c_str()));
  }
};

Acl::UniqueId ruleId(std::uint32_t number) { return Acl::UniqueId(number, 0, 1); }

struct Model {
  using Tree = Vyx::Ptr<Pbr::CheckpointStatus>;

  static Tree build(Names<Vyx::Name> const& names) {
    auto tree = Pbr::checkpointStatusFactory("checkpoint");
    for (auto const& agentName : names.agents) {
      auto const agent = tree->checkpointAgentStatusIs(agentName);
      for (auto const& pmapName : names.policyMaps) {
        auto const pmap = agent->pmapCkptStatusIs(pmapName);
        pmap->ckptTimestampIs(1.5);
        for (auto const& cmapName : names.classMaps) fillClassMap(*pmap->cmapCkptStatusIs(cmapName), names);
      }
    }
    return tree;
  }

private:
  static void fillClassMap(Pbr::ClassMapCheckpointStatus& cmap, Names<Vyx::Name> const& names) {
    cmap.pktMatchIs(7);
    for (Acl::AclType type : kTypes) {
      auto const ofType = cmap.aclTypeCkptStatusIs(type);
      for (auto const& aclName : names.acls) {
        auto const acl = ofType->aclIs(aclName);
        acl->timestampIs(1.5);
        for (std::uint32_t rule = 0; rule < kRules; ++rule)
          acl->ruleStatusIs(ruleId(rule), Acl::RuleCheckpointStatus(0, rule));
      }
    }
  }
};

struct IdHash {
  std::size_t operator()(Acl::UniqueId const& id) const { return id.hash(); }
};

struct Unordered {
  template <class T> using ByName = std::unordered_map<std::string, T>;
  template <class T> using ByType = std::unordered_map<Acl::AclType, T>;
  template <class T> using ById = std::unordered_map<Acl::UniqueId, T, IdHash>;
};
struct Ordered {
  template <class T> using ByName = std::map<std::string, T>;
  template <class T> using ByType = std::map<Acl::AclType, T>;
  template <class T> using ById = std::map<Acl::UniqueId, T>;
};

template <class Maps> struct Plain {
  struct AclStatus {
    typename Maps::template ById<Acl::RuleCheckpointStatus> rules;
    double timestamp = 0;
    Acl::UniqueId version;
  };
  struct ClassMapStatus {
    unsigned long long pktMatch = 0;
    Kest::UniqueId version;
    typename Maps::template ByType<typename Maps::template ByName<AclStatus>> types;
  };
  struct PolicyMapStatus {
    typename Maps::template ByName<ClassMapStatus> classMaps;
    double timestamp = 0;
  };
  struct Root {
    typename Maps::template ByName<typename Maps::template ByName<PolicyMapStatus>> agents;
  };
  using Tree = std::unique_ptr<Root>;

  static Tree build(Names<std::string> const& names) {
    auto tree = std::make_unique<Root>();
    for (auto const& agentName : names.agents) {
      auto& agent = tree->agents[agentName];
      for (auto const& pmapName : names.policyMaps) {
        auto& pmap = agent[pmapName];
        pmap.timestamp = 1.5;
        for (auto const& cmapName : names.classMaps) fillClassMap(pmap.classMaps[cmapName], names);
      }
    }
    return tree;
  }

private:
  static void fillClassMap(ClassMapStatus& cmap, Names<std::string> const& names) {
    cmap.pktMatch = 7;
    for (Acl::AclType type : kTypes) {
      auto& ofType = cmap.types[type];
      for (auto const& aclName : names.acls) {
        auto& acl = ofType[aclName];
        acl.timestamp = 1.5;
        for (std::uint32_t rule = 0; rule < kRules; ++rule)
          acl.rules[ruleId(rule)] = Acl::RuleCheckpointStatus(0, rule);
      }
    }
  }
};

// The argument is the number of rules in the whole tree.
std::uint32_t policyMapsOf(benchmark::State const& state) {
  return static_cast<std::uint32_t>(state.range(0)) / kRulesOfOnePolicyMapEach;
}

template <class Kind, class Text> void build(benchmark::State& state) {
  Names<Text> const names(policyMapsOf(state));
  Kind::build(Names<Text>(1)); // What the first use makes for good isn't of the tree.
  for (auto _ : state) {
    settleHeap();
    std::size_t const before = heapBytes();
    typename Kind::Tree tree;
    timed(state, [&] { tree = Kind::build(names); });
    state.counters["bytes"] = static_cast<double>(heapBytes() - before) / static_cast<double>(state.range(0));
  }
}

template <class Kind, class Text> void takeDown(benchmark::State& state) {
  Names<Text> const names(policyMapsOf(state));
  for (auto _ : state) {
    settleHeap();
    auto tree = Kind::build(names);
    timed(state, [&] { tree = nullptr; });
  }
}

template <class Kind, class Text> void addTree(std::string const& subject) {
  for (std::int64_t rules : {160000, 1600000}) {
    benchmark::RegisterBenchmark(("build/" + subject).c_str(), build<Kind, Text>)
        ->Arg(rules)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("take down/" + subject).c_str(), takeDown<Kind, Text>)
        ->Arg(rules)
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
}

// The same content and the same mix, in the containers of the standard library.
struct PlainSet {
  std::map<Lomu::IpGenAddr, bool> nexthop;
  std::uint32_t recursive = 0;
  std::string vrfName = "default";

  void add(Lomu::IpGenAddr const& address) { nexthop[address] = true; }
  std::uint32_t hash() const {
    std::uint32_t h = 0;
    auto mix = [&h](std::uint32_t word) {
      for (int shift = 0; shift < 32; shift += 8) {
        h = (h + (word >> shift & 0xffU)) * 1025U;
        h ^= h >> 6;
      }
    };
    for (auto const& [address, value] : nexthop) mix(address.hash());
    mix(recursive);
    mix(static_cast<std::uint32_t>(std::hash<std::string>()(vrfName)));
    h *= 9U;
    return (h ^ h >> 11) * 32769U;
  }
  bool operator==(PlainSet const&) const = default;
};
struct ModelSet : Pbr::NexthopSet {
  void add(Lomu::IpGenAddr const& address) { newNexthop(address, true); }
};

template <class Set> Set setOf(std::int64_t members) {
  Set set;
  for (std::int64_t i = 0; i < members; ++i) {
    unsigned char bytes[16] = {10, 0, static_cast<unsigned char>(i >> 8), static_cast<unsigned char>(i)};
    set.add(Lomu::IpGenAddr(4, Lomu::Ip6Addr(bytes)));
  }
  return set;
}

template <class Set> void hashOf(benchmark::State& state) {
  Set const set = setOf<Set>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(set.hash());
  state.SetItemsProcessed(state.iterations());
}
template <class Set> void compare(benchmark::State& state) {
  Set const set = setOf<Set>(state.range(0));
  Set const other(set);
  for (auto _ : state) benchmark::DoNotOptimize(set == other);
  state.SetItemsProcessed(state.iterations());
}

template <class Set> void addSet(std::string const& subject) {
  for (std::int64_t members : {2, 16, 128}) {
    benchmark::RegisterBenchmark(("set hash/" + subject).c_str(), hashOf<Set>)->Arg(members);
    benchmark::RegisterBenchmark(("set equality/" + subject).c_str(), compare<Set>)->Arg(members);
  }
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using namespace Bench;
  addTree<Model, Vyx::Name>("checkpoint tree");
  addTree<Plain<Unordered>, std::string>("std::unordered_map");
  addTree<Plain<Ordered>, std::string>("std::map");
  addSet<ModelSet>("next-hop set");
  addSet<PlainSet>("std::map");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
