// Keyed collections of an entity against the containers that a user would take instead, for 8-byte
// identifiers and 20-byte addresses.
//
// Each store has the same interface: `insert` an absent key with a value, `find` a value, `sum` all values by
// a walk, `eraseAll` by a walk. A scenario measures many stores of n members each, so that a small one is
// measured as well as a large one.

#include "Bench/Bench.h"
#include "Heap.h"
#include "Processor.h"

#include <boost/intrusive/unordered_set.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace Bench {

namespace {

using Value = unsigned long long;

template <class K> K keyOf(std::uint32_t i);
template <> Kest::UniqueId keyOf(std::uint32_t i) {
  return {i * 2654435761U, static_cast<std::uint16_t>(i >> 16), 0};
}
// Addresses of a network that is filled from its start.
template <> Lomu::IpGenAddr keyOf(std::uint32_t i) {
  unsigned char bytes[Lomu::Ip6Addr::kBytes] = {0x20, 0x01, 0x0d, 0xb8};
  for (std::size_t b = 0; b < 4; ++b) bytes[15 - b] = static_cast<unsigned char>(i >> (8 * b));
  return {6, Lomu::Ip6Addr(bytes)};
}

// The library's: the attribute of an entity through its setters and iterators.
template <class K> class EntityStore;

template <> class EntityStore<Kest::UniqueId> {
public:
  void insert(Kest::UniqueId const& key, Value value) { shelf_->itemIs(key, value); }
  Value find(Kest::UniqueId const& key) const { return shelf_->item(key); }
  [[gnu::noinline]] Value sum() const {
    Value all = 0;
    for (auto at = shelf_->itemIteratorConst(); at; ++at) all += at.value();
    return all;
  }
  void eraseAll() {
    for (auto at = shelf_->itemIterator(); at; ++at) shelf_->itemDel(at);
  }

private:
  Vyx::Ptr<Shelf> shelf_ = shelfFactory("shelf");
};

template <> class EntityStore<Lomu::IpGenAddr> {
public:
  void insert(Lomu::IpGenAddr const& key, Value value) { shelf_->addressIs(key, value); }
  Value find(Lomu::IpGenAddr const& key) const { return shelf_->address(key); }
  [[gnu::noinline]] Value sum() const {
    Value all = 0;
    for (auto at = shelf_->addressIteratorConst(); at; ++at) all += at.value();
    return all;
  }
  void eraseAll() {
    for (auto at = shelf_->addressIterator(); at; ++at) shelf_->addressDel(at);
  }

private:
  Vyx::Ptr<Shelf> shelf_ = shelfFactory("shelf");
};

// The standard containers, with the same hash.
struct Hash {
  template <class K> std::size_t operator()(K const& key) const { return key.hash(); }
};

template <class Map, class K> class StandardStore {
public:
  void insert(K const& key, Value value) { map_.insert_or_assign(key, value); }
  Value find(K const& key) const {
    auto const at = map_.find(key);
    return at == map_.end() ? 0 : at->second;
  }
  [[gnu::noinline]] Value sum() const {
    Value all = 0;
    for (auto const& [key, value] : map_) all += value;
    return all;
  }
  void eraseAll() {
    for (auto at = map_.begin(); at != map_.end();) at = map_.erase(at);
  }

private:
  Map map_;
};

template <class K> using UnorderedStore = StandardStore<std::unordered_map<K, Value, Hash>, K>;
template <class K> using OrderedStore = StandardStore<std::map<K, Value>, K>;

// Boost's intrusive set of members that are held like ours: a counted object with its key and value.
template <class K> class IntrusiveStore {
public:
  IntrusiveStore() = default;
  IntrusiveStore(IntrusiveStore const&) = delete;
  IntrusiveStore& operator=(IntrusiveStore const&) = delete;
  ~IntrusiveStore() { set_.clear_and_dispose(std::default_delete<Member>()); }

  void insert(K const& key, Value value) {
    typename Set::insert_commit_data place;
    auto const [at, fresh] = set_.insert_check(key, Hash(), std::equal_to<K>(), place);
    if (!fresh) {
      at->value = value;
      return;
    }
    set_.insert_commit(*new Member(key, value), place);
    if (set_.size() > buckets_.size()) grow();
  }
  Value find(K const& key) const {
    auto const at = set_.find(key, Hash(), std::equal_to<K>());
    return at == set_.end() ? 0 : at->value;
  }
  [[gnu::noinline]] Value sum() const {
    Value all = 0;
    for (Member const& member : set_) all += member.value;
    return all;
  }
  void eraseAll() {
    for (auto at = set_.begin(); at != set_.end();)
      set_.erase_and_dispose(at++, std::default_delete<Member>());
  }

private:
  struct Member : boost::intrusive::unordered_set_base_hook<> {
    Member(K const& k, Value v) : key(k), value(v) {}
    virtual ~Member() = default;
    std::uint32_t count = 1;
    K key;
    Value value;
  };
  struct KeyOf {
    using type = K;
    K const& operator()(Member const& member) const { return member.key; }
  };
  using Set =
      boost::intrusive::unordered_set<Member, boost::intrusive::key_of_value<KeyOf>,
                                      boost::intrusive::hash<Hash>, boost::intrusive::power_2_buckets<true>>;
  using Buckets = std::vector<typename Set::bucket_type>;

  void grow() {
    Buckets wider(buckets_.size() * 2);
    set_.rehash(typename Set::bucket_traits(wider.data(), wider.size()));
    buckets_.swap(wider);
  }

  Buckets buckets_ = Buckets(8);
  Set set_{typename Set::bucket_traits(buckets_.data(), buckets_.size())};
};

// Members lie in memory in the order of their making while the heap is young, and anywhere once it is old.
enum class Age { young, old };

// What the members of all stores ask the allocator for.
template <class K>
constexpr std::initializer_list<std::size_t> kMemberSizes = {sizeof(K) + 32, sizeof(K) + 48};

// The scenarios. Only what `timed` encloses is measured.

template <class Store, class K> class Stores {
public:
  explicit Stores(std::uint32_t n) : n_(n), stores_(std::max<std::uint32_t>(1, kAtLeast / n)) {
    renew();
    for (std::uint32_t i = 0; i < n; ++i) keys_.push_back(keyOf<K>(i));
    std::shuffle(keys_.begin(), keys_.end(), std::mt19937(1));
  }
  // The keys come in another order than they were inserted in.
  void look(Value& all) const {
    for (auto const& store : stores_)
      for (std::uint32_t i = 0; i < n_; ++i) all += store->find(keys_[i]);
  }
  void fill() {
    for (auto& store : stores_)
      for (std::uint32_t i = 0; i < n_; ++i) store->insert(keyOf<K>(i), i);
  }
  void walk(Value& all) const {
    for (auto const& store : stores_) all += store->sum();
  }
  void eraseAll() {
    for (auto& store : stores_) store->eraseAll();
  }
  void renew() {
    for (auto& store : stores_) store.reset();
    settleHeap();
    for (auto& store : stores_) store = std::make_unique<Store>();
  }
  std::int64_t members() const { return static_cast<std::int64_t>(n_) * stores_.size(); }

private:
  static constexpr std::uint32_t kAtLeast = 1024;

  std::uint32_t n_;
  std::vector<K> keys_;
  std::vector<std::unique_ptr<Store>> stores_;
};

// The ratios are made of the time of one member.
void perMember(benchmark::State& state, std::int64_t members) {
  state.SetItemsProcessed(state.iterations() * members);
}

// A pass over members that change nothing is so short that several are measured together.
template <class Stores, class Pass>
void passes(benchmark::State& state, Stores const& stores, Pass const& pass) {
  std::int64_t const together = std::max<std::int64_t>(1, 16384 / stores.members());
  Value all = 0;
  for (auto _ : state)
    timed(state, [&] {
      for (std::int64_t i = 0; i < together; ++i) pass(all);
    });
  benchmark::DoNotOptimize(all);
  perMember(state, together * stores.members());
}

template <class Store, class K, Age age> void insert(benchmark::State& state) {
  auto const n = static_cast<std::uint32_t>(state.range(0));
  AgedHeap const heap(age == Age::old ? n : 0, kMemberSizes<K>);
  Stores<Store, K> stores(n);
  for (auto _ : state) {
    stores.renew();
    timed(state, [&] { stores.fill(); });
  }
  perMember(state, stores.members());
}

template <class Store, class K, Age age> void hit(benchmark::State& state) {
  auto const n = static_cast<std::uint32_t>(state.range(0));
  AgedHeap const heap(age == Age::old ? n : 0, kMemberSizes<K>);
  Stores<Store, K> stores(n);
  stores.fill();
  passes(state, stores, [&](Value& all) { stores.look(all); });
}

template <class Store, class K, Age age> void iterate(benchmark::State& state) {
  auto const n = static_cast<std::uint32_t>(state.range(0));
  AgedHeap const heap(age == Age::old ? n : 0, kMemberSizes<K>);
  Stores<Store, K> stores(n);
  stores.fill();
  passes(state, stores, [&](Value& all) { stores.walk(all); });
}

template <class Store, class K, Age age> void erase(benchmark::State& state) {
  auto const n = static_cast<std::uint32_t>(state.range(0));
  AgedHeap const heap(age == Age::old ? n : 0, kMemberSizes<K>);
  Stores<Store, K> stores(n);
  for (auto _ : state) {
    stores.renew();
    stores.fill();
    timed(state, [&] { stores.eraseAll(); });
  }
  perMember(state, stores.members());
}

// No time: the bytes that one member takes, its share of the table included.
template <class Store, class K, Age age> void bytes(benchmark::State& state) {
  auto const n = static_cast<std::uint32_t>(state.range(0));
  AgedHeap const heap(age == Age::old ? n : 0, kMemberSizes<K>);
  Stores<Store, K> stores(n);
  for (auto _ : state) {
    stores.renew();
    std::size_t const before = heapBytes();
    timed(state, [&] { stores.fill(); });
    state.counters["bytes"] = static_cast<double>(heapBytes() - before) / stores.members();
  }
}

template <class Store, class K, Age age> void registerScenarios(std::string const& key, char const* name) {
  using Scenario = void (*)(benchmark::State&);
  auto const add = [&](std::string const& scenario, Scenario run, int members, int rounds) {
    auto const full = scenario + (age == Age::old ? "/old heap/" : "/young heap/") + key + "/" + name;
    benchmark::RegisterBenchmark(full.c_str(), run)->UseManualTime()->Arg(members)->Iterations(rounds);
  };
  // So few rounds of the large ones that filling them doesn't take all the time.
  struct Size {
    int members;
    int rounds;
  };
  for (auto const [members, rounds] : {Size{16, 20}, Size{1000, 20}, Size{100000, 3}, Size{1000000, 1}}) {
    add("insert", insert<Store, K, age>, members, rounds);
    add("hit", hit<Store, K, age>, members, rounds);
    add("iterate", iterate<Store, K, age>, members, rounds);
    add("erase", erase<Store, K, age>, members, rounds);
  }
  if (age == Age::young) add("bytes", bytes<Store, K, age>, 1000000, 1);
}

template <class Store, class K> void registerStore(std::string const& key, char const* name) {
  registerScenarios<Store, K, Age::young>(key, name);
  registerScenarios<Store, K, Age::old>(key, name);
}

template <class K> void registerStores(std::string const& key) {
  registerStore<EntityStore<K>, K>(key, "entity");
  registerStore<UnorderedStore<K>, K>(key, "std::unordered_map");
  registerStore<IntrusiveStore<K>, K>(key, "boost intrusive");
  registerStore<OrderedStore<K>, K>(key, "std::map");
}

} // namespace

} // namespace Bench

int main(int argc, char** argv) {
  Bench::registerStores<Kest::UniqueId>("id");
  Bench::registerStores<Lomu::IpGenAddr>("address");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
