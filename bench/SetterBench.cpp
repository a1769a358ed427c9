// A setter and its round: one entity with n observers against what a user would take instead.
//
// Each subject has the same interface: made for n observers, `set` stores a value that differs and tells
// them. The observers are of four classes in turn, each adds to a sum. Run with --threads, the process has a
// second, idle thread, and all counts are locked operations.

#include "Bench/Bench.h"
#include "Heap.h"

#include <benchmark/benchmark.h>
#include <boost/signals2/signal.hpp>
#include <sigc++/sigc++.h>

#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Bench {

namespace {

std::uint64_t heard = 0;

// The library's own: on the entity that has the list, and on one whose list is typed with its base.

template <unsigned I> class GaugeWatch final : public Gauge::Notifiee {
public:
  void onValue() override { heard += I; }
};

template <unsigned I> class FineWatch final : public FineGauge::Notifiee {
public:
  void onFine() override { heard += I; }
};

template <class Entity, template <unsigned> class Watch, Vyx::Ptr<Entity> (*make)(Vyx::Name)>
class EntitySubject {
public:
  explicit EntitySubject(int observers) : entity_(make("subject")) {
    for (int i = 0; i < observers; ++i) watch(i % 4);
  }
  ~EntitySubject() {
    for (auto const& reactor : reactors_) reactor->notifierIs(nullptr);
  }
  Entity& entity() { return *entity_; }

private:
  template <unsigned I> Vyx::Ptr<typename Entity::Notifiee> made() { return Vyx::ptrFromNew(new Watch<I>); }
  void watch(int kind) {
    auto reactor = kind == 0 ? made<1>() : kind == 1 ? made<2>() : kind == 2 ? made<3>() : made<4>();
    reactor->isRegisteredNotifieeIs(true);
    reactor->notifierIs(Vyx::Ptr<Vyx::PtrInterface const>(entity_.ptr()));
    reactors_.push_back(std::move(reactor));
  }

  Vyx::Ptr<Entity> entity_;
  std::vector<Vyx::Ptr<typename Entity::Notifiee>> reactors_;
};

class OwnList : public EntitySubject<Gauge, GaugeWatch, gaugeFactory> {
public:
  using EntitySubject::EntitySubject;
  void set(unsigned value) { entity().valueIs(value); }
};

class ListOfBase : public EntitySubject<FineGauge, FineWatch, fineGaugeFactory> {
public:
  using EntitySubject::EntitySubject;
  void set(unsigned value) { entity().fineIs(value); }
};

// The public counterparts.

class Observer {
public:
  virtual ~Observer() = default;
  virtual void onValue() = 0;
};

template <unsigned I> class Watcher final : public Observer {
public:
  void onValue() override { heard += I; }
};

std::shared_ptr<Observer> observer(int kind) {
  switch (kind % 4) {
  case 0:
    return std::make_shared<Watcher<1>>();
  case 1:
    return std::make_shared<Watcher<2>>();
  case 2:
    return std::make_shared<Watcher<3>>();
  default:
    return std::make_shared<Watcher<4>>();
  }
}

// The floor: no snapshot, no guard.
class BareLoop {
public:
  explicit BareLoop(int observers) {
    for (int i = 0; i < observers; ++i) {
      owned_.push_back(observer(i));
      observers_.push_back(owned_.back().get());
    }
  }
  void set(unsigned value) {
    if (value == value_) return;
    value_ = value;
    for (Observer* o : observers_) o->onValue();
  }

private:
  unsigned value_ = 0;
  std::vector<Observer*> observers_;
  std::vector<std::shared_ptr<Observer>> owned_;
};

// What is written by hand when a snapshot is wanted.
class CopiedVector {
public:
  explicit CopiedVector(int observers) {
    for (int i = 0; i < observers; ++i) observers_.push_back(observer(i));
  }
  void set(unsigned value) {
    if (value == value_) return;
    value_ = value;
    if (observers_.empty()) return;
    auto const snapshot = observers_;
    for (auto const& o : snapshot) {
      try {
        o->onValue();
      } catch (...) {
      }
    }
  }

private:
  unsigned value_ = 0;
  std::vector<std::shared_ptr<Observer>> observers_;
};

template <class Signal> class SignalSubject {
public:
  explicit SignalSubject(int observers) {
    for (int i = 0; i < observers; ++i) {
      Observer* const o = owned_.emplace_back(observer(i)).get();
      signal_.connect([o] { o->onValue(); });
    }
  }
  void set(unsigned value) {
    if (value == value_) return;
    value_ = value;
    signal_();
  }

private:
  unsigned value_ = 0;
  std::vector<std::shared_ptr<Observer>> owned_;
  Signal signal_;
};

using Signals2 = SignalSubject<boost::signals2::signal<void()>>;
using Sigc = SignalSubject<sigc::signal<void>>;

// The scenarios.

template <class Subject> void changed(benchmark::State& state) {
  Subject subject(static_cast<int>(state.range(0)));
  unsigned value = 0;
  std::uint64_t const before = allocations();
  for (auto _ : state) {
    Subject* s = &subject;
    benchmark::DoNotOptimize(s);
    s->set(++value);
  }
  state.counters["allocations"] = static_cast<double>(allocations() - before) / state.iterations();
}

template <class Subject> void unchanged(benchmark::State& state) {
  Subject subject(4);
  subject.set(7);
  for (auto _ : state) {
    Subject* s = &subject;
    unsigned value = 7;
    benchmark::DoNotOptimize(s);
    benchmark::DoNotOptimize(value);
    s->set(value);
  }
}

// 10,000 entities with four observers each, set in turn: nothing is in the nearest cache.
template <class Subject> void cold(benchmark::State& state) {
  constexpr std::size_t kEntities = 10000;
  std::vector<std::unique_ptr<Subject>> subjects;
  for (std::size_t i = 0; i < kEntities; ++i) subjects.push_back(std::make_unique<Subject>(4));
  unsigned value = 0;
  while (state.KeepRunningBatch(kEntities)) {
    ++value;
    for (auto const& subject : subjects) subject->set(value);
  }
}

template <class Subject> void registerSubject(std::string const& prefix, char const* name) {
  auto const full = [&](char const* scenario) { return prefix + scenario + "/" + name; };
  benchmark::RegisterBenchmark(full("changed").c_str(), changed<Subject>)->Arg(0)->Arg(1)->Arg(4)->Arg(16);
  benchmark::RegisterBenchmark(full("unchanged").c_str(), unchanged<Subject>);
  benchmark::RegisterBenchmark(full("cold").c_str(), cold<Subject>);
}

// Sleeps until the program ends.
class IdleThread {
public:
  IdleThread() : thread_([this] { wait(); }) {}
  ~IdleThread() {
    {
      std::lock_guard const lock(mutex_);
      done_ = true;
    }
    wake_.notify_one();
    thread_.join();
  }

private:
  void wait() {
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return done_; });
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  bool done_ = false;
  std::thread thread_;
};

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  using namespace Bench;
  bool const threads = argc > 1 && std::strcmp(argv[1], "--threads") == 0;
  std::unique_ptr<IdleThread> idle;
  if (threads) {
    argv[1] = argv[0];
    ++argv;
    --argc;
    Vyx::VFPtrInterface::enableThreadSafePointers = true;
    idle = std::make_unique<IdleThread>();
  }
  std::string const prefix = threads ? "threads/" : "";
  registerSubject<OwnList>(prefix, "entity");
  registerSubject<ListOfBase>(prefix, "entity of a base's list");
  registerSubject<BareLoop>(prefix, "bare loop");
  registerSubject<CopiedVector>(prefix, "copied shared_ptr vector");
  registerSubject<Signals2>(prefix, "boost signals2");
  registerSubject<Sigc>(prefix, "sigc++");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
