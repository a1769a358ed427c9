// A container of a configuration, driven at random beside plain maps that say what must be in it.

#include "PolicyListeners.h"

#include "support/Invariants.h"
#include "support/Random.h"

#include <map>

namespace {

// What a map says of an action: its class and its third parameter.
struct Made {
  unsigned className;
  unsigned value;
  bool operator==(Made const&) const = default;
};
using Model = std::map<unsigned, Made>;

struct Fwd {
  static constexpr char const* name = "fwdAction";
  static constexpr unsigned values = 4;
  static auto is(Pbr::PbrActionContainer& of, unsigned key, Made const& made) {
    return of.fwdActionIs(Vyx::valueToStrep(made.className), actionId(key),
                          static_cast<Pbr::PbrActionType>(made.value));
  }
  static unsigned value(Pbr::PbrFwdAction const& action) { return action.fwdActionType(); }
  static auto get(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdAction(actionId(key)); }
  static auto del(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdActionDel(actionId(key)); }
  static auto at(Pbr::PbrActionContainer& of, unsigned key) { return of.fwdActionIterator(actionId(key)); }
  static auto delAt(Pbr::PbrActionContainer& of, auto& at) { return of.fwdActionDel(at); }
  static void delAll(Pbr::PbrActionContainer& of) { of.fwdActionDelAll(); }
  static unsigned count(Pbr::PbrActionContainer& of) { return of.fwdActions(); }
};

struct Marking {
  static constexpr char const* name = "dscpAction";
  static constexpr unsigned values = 65;
  static auto is(Pbr::PbrActionContainer& of, unsigned key, Made const& made) {
    return of.dscpActionIs(Vyx::valueToStrep(made.className), actionId(key),
                           static_cast<unsigned char>(made.value));
  }
  static unsigned value(Pbr::PbrActionSetDscp const& action) { return action.dscp().value(); }
  static auto get(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpAction(actionId(key)); }
  static auto del(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpActionDel(actionId(key)); }
  static auto at(Pbr::PbrActionContainer& of, unsigned key) { return of.dscpActionIterator(actionId(key)); }
  static auto delAt(Pbr::PbrActionContainer& of, auto& at) { return of.dscpActionDel(at); }
  static void delAll(Pbr::PbrActionContainer& of) { of.dscpActionDelAll(); }
  static unsigned count(Pbr::PbrActionContainer& of) { return of.dscpActions(); }
};

// Counts keyed notifications by kind, and any other.
class Counting : public Pbr::PbrActionContainer::Notifiee {
public:
  std::map<std::string, unsigned> counts;
  void onFwdAction(Kest::UniqueId const&) override { ++counts["fwdAction"]; }
  void onDscpAction(Kest::UniqueId const&) override { ++counts["dscpAction"]; }
  void onFwdAction() override { ++counts["keyless"]; }
  void onDscpAction() override { ++counts["keyless"]; }
};

class ContainerModel : public testing::Test {
protected:
  static constexpr unsigned kKeys = 40;

  Random random;
  Vyx::Ptr<Pbr::Config> const config = Pbr::configFactory("running");
  Pbr::PbrActionContainer& container = *config->pbrActions();
  Vyx::Ptr<Counting> const counting = listen<Counting>(config->pbrActions());
  std::map<std::string, Model> models;
  std::map<std::string, unsigned> owed;

  template <class C> void step() {
    unsigned const key = random.below(kKeys);
    switch (random.below(20)) {
    case 0:
      return removeAll<C>();
    case 1:
    case 2:
    case 3:
      return removeAt<C>(key);
    case 4:
    case 5:
    case 6:
    case 7:
      return remove<C>(key);
    default:
      return instantiate<C>(key, {random.below(2), random.below(C::values)});
    }
  }

  template <class C> void instantiate(unsigned key, Made const& made) {
    Model& model = models[C::name];
    auto const at = model.find(key);
    if (at != model.end() && !(at->second == made)) {
      EXPECT_THROW(C::is(container, key, made), Vyx::NameInUseException);
      return;
    }
    EXPECT_EQ(actionId(key), C::is(container, key, made)->id());
    if (model.emplace(key, made).second) ++owed[C::name];
  }

  template <class C> void remove(unsigned key) {
    bool const there = models[C::name].erase(key) == 1;
    EXPECT_EQ(there, static_cast<bool>(C::del(container, key)));
    owed[C::name] += there;
  }

  // Removes what stands at the key or behind it.
  template <class C> void removeAt(unsigned key) {
    auto at = C::at(container, key);
    if (!at) return;
    auto const action = C::delAt(container, at);
    EXPECT_EQ(1U, models[C::name].erase(number(action->id())));
    ++owed[C::name];
  }

  template <class C> void removeAll() {
    owed[C::name] += static_cast<unsigned>(models[C::name].size());
    models[C::name].clear();
    C::delAll(container);
  }

  // The number that was made an id.
  static unsigned number(Kest::UniqueId const& id) {
    for (unsigned key = 0; key < kKeys; ++key)
      if (actionId(key) == id) return key;
    return kKeys;
  }

  template <class C> void compare() {
    Model const& model = models[C::name];
    ASSERT_EQ(model.size(), C::count(container));
    ASSERT_EQ(owed[C::name], counting->counts[C::name]);
    for (unsigned key = 0; key < kKeys; ++key) {
      auto const action = C::get(container, key);
      auto const at = model.find(key);
      ASSERT_EQ(at != model.end(), static_cast<bool>(action)) << key;
      if (!action) continue;
      EXPECT_EQ(at->second, (Made{action->className() == "1", C::value(*action)}));
    }
  }
};

TEST_F(ContainerModel, HoldsWhatAPlainMapHolds) {
  for (int round = 0; round < 1000 && !HasFatalFailure(); ++round) {
    random.oneIn(2) ? step<Fwd>() : step<Marking>();
    compare<Fwd>();
    compare<Marking>();
    if (round % 50 == 0) checkInvariants(*config);
  }
  EXPECT_EQ(0U, counting->counts["keyless"]);
  checkInvariants(*config);
}

} // namespace
