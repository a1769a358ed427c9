// What things take from the heap, with what the allocator keeps beside them. Times mean nothing here.

#include "Bench/Bench.h"
#include "Configurations.h"
#include "Heap.h"

#include <benchmark/benchmark.h>
#include <boost/signals2/signal.hpp>

#include <memory>
#include <vector>

namespace Bench {

namespace {

// The bytes of one of `count` things that `make` makes and that live as long as its result.
template <class Make> void bytesOf(benchmark::State& state, std::size_t count, Make const& make) {
  for (auto _ : state) {
    std::size_t const before = heapBytes();
    auto const made = make();
    benchmark::DoNotOptimize(made);
    state.counters["bytes"] = static_cast<double>(heapBytes() - before) / static_cast<double>(count);
  }
}

// `count` pointers in one block of memory that is there before.
template <class P, class Make> void bytesOfEach(benchmark::State& state, Make const& make) {
  constexpr std::size_t kCount = 1000;
  std::vector<P> each(kCount);
  bytesOf(state, kCount, [&] {
    for (P& one : each) one = make();
    return 0;
  });
}

constexpr std::uint32_t kPolicyMaps = 10000;

void modelTree(benchmark::State& state) {
  modelOf(10); // What the first use makes for good isn't of the tree.
  bytesOf(state, kPolicyMaps, [] { return modelOf(kPolicyMaps); });
}
void plainTree(benchmark::State& state) {
  bytesOf(state, kPolicyMaps, [] { return std::make_unique<plain::Configuration>(plainOf(kPolicyMaps)); });
}
void messageTree(benchmark::State& state) {
  bytesOf(state, kPolicyMaps,
          [] { return std::make_unique<bench_pb::Configuration>(messageOf(kPolicyMaps)); });
}

class GaugeWatch final : public Gauge::Notifiee {};

void entity(benchmark::State& state) {
  Vyx::Name const name("gauge");
  bytesOfEach<Vyx::Ptr<Gauge>>(state, [&] { return gaugeFactory(name); });
}
void reactor(benchmark::State& state) {
  auto const gauge = gaugeFactory("gauge");
  bytesOfEach<Vyx::Ptr<GaugeWatch>>(state, [&] {
    auto watch = Vyx::ptrFromNew(new GaugeWatch);
    watch->isRegisteredNotifieeIs(true);
    watch->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(gauge.ptr()));
    return watch;
  });
}

struct SignalGauge {
  unsigned value = 0;
  boost::signals2::signal<void()> changed;
};

void signalEntity(benchmark::State& state) {
  bytesOfEach<std::unique_ptr<SignalGauge>>(state, [] { return std::make_unique<SignalGauge>(); });
}
void slot(benchmark::State& state) {
  SignalGauge gauge;
  bytesOfEach<int>(state, [&] {
    gauge.changed.connect([] {});
    return 0;
  });
}

void add(char const* name, void (*run)(benchmark::State&)) {
  benchmark::RegisterBenchmark(name, run)->Iterations(1);
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using namespace Bench;
  add("policy map/model", modelTree);
  add("policy map/plain structs", plainTree);
  add("policy map/protobuf", messageTree);
  add("entity/entity", entity);
  add("entity/boost signals2", signalEntity);
  add("reactor/entity", reactor);
  add("reactor/boost signals2", slot);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
