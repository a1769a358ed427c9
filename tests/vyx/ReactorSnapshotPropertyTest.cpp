// Random scripts in the reactors' entries: a round tells the same story as one over an eagerly copied vector
// of counted pointers.

#include "support/Random.h"
#include "support/Reactors.h"

#include <memory>
#include <vector>

namespace {

using Vyx::Ptr;

// The plain model: copies first, looks at the list never again.
void runEagerRound(Listeners const& list) {
  std::vector<Ptr<Listener>> slots;
  for (Listeners::LrIteratorConst at(list); at; ++at) slots.push_back(Ptr<Listener>(&*at));
  std::size_t i = 0;
  while (i < slots.size()) {
    slots[i]->call();
    slots[i++] = nullptr;
    while (i < slots.size() && slots[i]->references() == 1) slots[i++] = nullptr;
  }
}

// Reactors whose entries change everything at will. Two worlds of one seed take the same decisions as long as
// they hear the same.
class World {
public:
  using RunRound = void (*)(Listeners const&);

  World(std::uint32_t seed, RunRound run) : decisions_(seed), run_(run) {
    for (unsigned n = 1 + below(24); n > 0; --n) add();
  }
  World(World const&) = delete;
  World& operator=(World const&) = delete;
  ~World() {
    for (auto& holder : holders_)
      if (holder && holder->linked()) holder->unlink();
  }

  std::string const& story() {
    for (int round = 0; round < 3; ++round) runRound();
    told_ += "| " + idsOf(*list_);
    return told_;
  }

private:
  unsigned below(unsigned count) { return static_cast<unsigned>(decisions_() % count); }

  void add() {
    holders_.push_back(Vyx::ptrFromNew(new Listener(std::to_string(made_++), &told_)));
    holders_.back()->entry = [this](Listener& self) { act(self); };
    holders_.back()->linkTo(*list_);
  }
  Ptr<Listener>& anyHolder() { return holders_[below(static_cast<unsigned>(holders_.size()))]; }

  void runRound() {
    told_ += "( ";
    ++depth_;
    try {
      run_(*list_);
    } catch (int) {
      told_ += "left ";
    }
    --depth_;
    told_ += ") ";
  }

  void act(Listener& self) {
    if (budget_ <= 0) return;
    for (unsigned n = below(4); n > 0; --n, --budget_) actOnce(self);
  }
  void actOnce(Listener& self) {
    switch (below(11)) {
    case 0:
      return add();
    case 1:
    case 2:
    case 3:
      return drop(anyHolder());
    case 4:
      if (anyHolder()) holders_.push_back(anyHolder());
      return;
    case 5:
      if (Ptr<Listener> const one = anyHolder(); one) one->unlink();
      return;
    case 6:
      if (Ptr<Listener> const one = anyHolder(); one && !one->linked()) one->linkTo(*list_);
      return;
    case 7:
      for (auto& holder : holders_)
        if (holder.ptr() == &self) drop(holder);
      return;
    case 8:
      if (depth_ < 4) runRound();
      return;
    case 9:
      if (below(4) == 0) throw 1;
      return;
    default:
      if (below(8) == 0) forgetAll();
      return;
    }
  }
  // What the holder's end tells is told after the holder is empty.
  static void drop(Ptr<Listener>& holder) { Ptr<Listener> const gone = std::move(holder); }
  void forgetAll() {
    std::vector<Ptr<Listener>> linked;
    for (Listeners::LrIteratorConst at(*list_); at; ++at) linked.push_back(Ptr<Listener>(&*at));
    list_ = std::make_unique<Listeners>();
    for (auto const& listener : linked) listener->listIsGone();
    told_ += "gone ";
  }

  std::mt19937 decisions_;
  RunRound run_;
  std::string told_;
  int made_ = 0;
  int depth_ = 0;
  int budget_ = 200;
  std::unique_ptr<Listeners> list_ = std::make_unique<Listeners>();
  std::vector<Ptr<Listener>> holders_;
};

TEST(ReactorSnapshotProperty, TellsTheStoryOfACopiedVector) {
  Random random;
  for (int script = 0; script < 1500; ++script) {
    std::uint32_t const seed = random.bits();
    World eager(seed, runEagerRound), lazy(seed, runLazyRound);
    ASSERT_EQ(eager.story(), lazy.story()) << "script " << seed;
    ASSERT_FALSE(Vyx::ReactorSnapshot::anyActive());
  }
}

} // namespace
