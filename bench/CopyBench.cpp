// One configuration copied onto another: onto an empty one, onto an equal one, onto one in which one action
// differs. Beside the session copy stand plain structs and protobuf, which tell nobody of changes.

#include "Configurations.h"
#include "Heap.h"
#include "Processor.h"

#include "Cli/Session.h"
#include "Pbr/PbrCopy.h"

#include <google/protobuf/util/message_differencer.h>

#include <string>
#include <utility>
#include <vector>

namespace Bench {

namespace {

// Counts whatever the entities of a tree tell of.
class Watch {
public:
  explicit Watch(Pbr::Config& config);
  ~Watch() {
    for (auto const& reactor : reactors_) reactor->notifierIs(nullptr);
  }
  static std::uint64_t heard;

private:
  template <class Reactor, class Entity> void add(Entity const& entity) {
    auto const reactor = Vyx::ptrFromNew(new Reactor);
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(&entity));
    reactors_.push_back(reactor);
  }
  std::vector<Vyx::Ptr<Vyx::Entity::NotifieeConst>> reactors_;
};

std::uint64_t Watch::heard = 0;

void count() { ++Watch::heard; }

class ConfigWatch final : public Pbr::Config::Notifiee {
  void onPbrUnresolvedNexthopActionDrop() override { count(); }
  void onBgpPbrRedirect() override { count(); }
  void onPbrEnableNonAgingMacAddr() override { count(); }
  void onPbrActions() override { count(); }
  void onCmapType() override { count(); }
  void onPmapType() override { count(); }
};
class ContainerWatch final : public Pbr::PbrActionContainer::Notifiee {
  void onFwdAction(Kest::UniqueId const&) override { count(); }
  void onDscpAction(Kest::UniqueId const&) override { count(); }
};
class ActionWatch final : public Pbr::PbrFwdAction::Notifiee {
  void onNexthop(Lomu::IpGenAddr const&) override { count(); }
  void onRecursive() override { count(); }
  void onNexthopGroup() override { count(); }
};
class ClassMapsWatch final : public PolicyMap::ClassMapTypeConfig::Notifiee {
  void onCmap(Vyx::Name) override { count(); }
};
class ClassMapWatch final : public PolicyMap::ClassMapConfig::Notifiee {
  void onSubconfig(Kest::UniqueId const&) override { count(); }
  void onCurrentSubConfig() override { count(); }
};
class ClassContentWatch final : public PolicyMap::ClassMapSubConfig::Notifiee {
  void onDynamic() override { count(); }
  void onMatch(unsigned) override { count(); }
};
class PolicyMapsWatch final : public PolicyMap::PolicyMapTypeConfig::Notifiee {
  void onPmap(Vyx::Name) override { count(); }
  void onIntf(Lomu::IntfId) override { count(); }
  void onIntfFallback(Lomu::IntfId) override { count(); }
};
class PolicyMapWatch final : public PolicyMap::PolicyMapConfig::Notifiee {
  void onSubconfig(Kest::UniqueId const&) override { count(); }
  void onCurrentSubConfig() override { count(); }
};
class PolicyContentWatch final : public PolicyMap::PolicyMapSubConfig::Notifiee {
  void onDynamic() override { count(); }
  void onClassAction(Vyx::Name) override { count(); }
};
class ClassActionWatch final : public PolicyMap::ClassAction::Notifiee {
  void onSequence() override { count(); }
  void onPolicyAction(PolicyMap::ActionType) override { count(); }
};

Watch::Watch(Pbr::Config& config) {
  heard = 0;
  add<ConfigWatch>(config);
  add<ContainerWatch>(*config.pbrActions());
  for (auto at = config.pbrActions()->fwdActionIteratorConst(); at; ++at) add<ActionWatch>(*at);
  add<ClassMapsWatch>(*config.cmapType());
  for (auto at = config.cmapType()->cmapIteratorConst(); at; ++at) {
    add<ClassMapWatch>(*at);
    for (auto sub = at->subconfigIteratorConst(); sub; ++sub) add<ClassContentWatch>(*sub);
  }
  add<PolicyMapsWatch>(*config.pmapType());
  for (auto at = config.pmapType()->pmapIteratorConst(); at; ++at) {
    add<PolicyMapWatch>(*at);
    for (auto sub = at->subconfigIteratorConst(); sub; ++sub) {
      add<PolicyContentWatch>(*sub);
      for (auto action = sub->classActionIteratorConst(); action; ++action) add<ClassActionWatch>(*action);
    }
  }
}

// Each subject has a source and a destination; `copy` makes the one the other and RETURNS whether it changed.

class ModelSubject {
public:
  explicit ModelSubject(std::uint32_t n) : source_(modelOf(n)) {}
  void empty() { dest_ = Pbr::configFactory("bench"); }
  void change(bool odd) {
    source_->pbrActions()->fwdAction(actionId(0, 0))->nexthopGroupIs(odd ? "odd" : "even");
  }
  bool copy() { return handler_->handleEntity(copy_, dest_, source_, path_); }
  Pbr::Config* watched() { return dest_.ptr(); }

private:
  Vyx::Ptr<Pbr::Config> source_;
  Vyx::Ptr<Pbr::Config> dest_;
  Vyx::Ptr<Pbr::ConfigCopyHandlerDir> dir_ = Pbr::configCopyHandlerDirFactory("bench");
  Vyx::Ptr<Pbr::ConfigCopyHandler> handler_ = dir_->configHandlerIs();
  Vyx::Ptr<Cli::Session::EntityCopy> copy_ = Cli::Session::entityCopyFactory();
  Vyx::String8 const path_ = "bench";
};

class PlainSubject {
public:
  explicit PlainSubject(std::uint32_t n) : source_(plainOf(n)) {}
  void empty() { dest_ = {}; }
  void change(bool odd) { source_.actions.begin()->second.nexthopGroup = odd ? "odd" : "even"; }
  bool copy() {
    if (source_ == dest_) return false;
    dest_ = source_;
    return true;
  }
  Pbr::Config* watched() { return nullptr; }

private:
  plain::Configuration source_;
  plain::Configuration dest_;
};

class MessageSubject {
public:
  explicit MessageSubject(std::uint32_t n) : source_(messageOf(n)) {}
  void empty() { dest_ = std::make_unique<bench_pb::Configuration>(); }
  void change(bool odd) { source_.mutable_action(0)->set_nexthop_group(odd ? "odd" : "even"); }
  bool copy() {
    if (dest_->action_size() != 0 && google::protobuf::util::MessageDifferencer::Equals(source_, *dest_))
      return false;
    dest_->CopyFrom(source_);
    return true;
  }
  Pbr::Config* watched() { return nullptr; }

private:
  bench_pb::Configuration source_;
  std::unique_ptr<bench_pb::Configuration> dest_;
};

// The scenarios.

template <class Subject> void ontoEmpty(benchmark::State& state) {
  Subject subject(static_cast<std::uint32_t>(state.range(0)));
  for (auto _ : state) {
    subject.empty();
    settleHeap();
    timed(state, [&] {
      if (!subject.copy()) state.SkipWithError("the copy says that it changed nothing");
    });
  }
}

// What a copy says and does is checked each time: `changes` is how often the destination must tell of one.
template <class Subject> void ontoFull(benchmark::State& state, unsigned changes) {
  Subject subject(static_cast<std::uint32_t>(state.range(0)));
  subject.empty();
  subject.copy();
  std::unique_ptr<Watch> watch;
  if (subject.watched()) watch = std::make_unique<Watch>(*subject.watched());
  bool odd = false;
  for (auto _ : state) {
    odd = !odd;
    if (changes != 0) subject.change(odd);
    Watch::heard = 0;
    std::uint64_t const before = allocations();
    bool changed = false;
    timed(state, [&] { changed = subject.copy(); });
    state.counters["allocations"] = static_cast<double>(allocations() - before);
    if (changed != (changes != 0)) state.SkipWithError("the copy says the wrong thing");
    if (!watch) continue;
    state.counters["notifications"] = static_cast<double>(Watch::heard);
    if (Watch::heard != changes) state.SkipWithError("the copy notifies of what did not change");
  }
}
template <class Subject> void ontoEqual(benchmark::State& state) { ontoFull<Subject>(state, 0); }
template <class Subject> void oneDiffers(benchmark::State& state) { ontoFull<Subject>(state, 1); }

template <class Subject> void registerSubject(std::string const& name) {
  using Scenario = void (*)(benchmark::State&);
  for (auto const& [scenario, run] : {std::pair<char const*, Scenario>{"onto empty/", ontoEmpty<Subject>},
                                      {"onto equal/", ontoEqual<Subject>},
                                      {"one differs/", oneDiffers<Subject>}})
    benchmark::RegisterBenchmark((scenario + name).c_str(), run)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Arg(1000)
        ->Arg(10000);
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using namespace Bench;
  registerSubject<ModelSubject>("session copy");
  registerSubject<PlainSubject>("plain structs");
  registerSubject<MessageSubject>("protobuf");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
