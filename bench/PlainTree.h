// What others bring their changes to: entities in a hash map, each of which calls one virtual reactor.

#pragma once

#include "Road.h"

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace Bench {

struct PlainEntity;

// Told of each change.
class PlainReactor {
public:
  virtual ~PlainReactor() = default;
  virtual void onValue(PlainEntity const& entity) = 0;
};

struct PlainEntity {
  void valueIs(unsigned attribute, std::uint64_t value) {
    if (values[attribute] == value) return;
    values[attribute] = value;
    if (reactor) reactor->onValue(*this);
  }

  std::array<std::uint64_t, kAttributes> values{};
  PlainReactor* reactor = nullptr;
};

class PlainTree {
public:
  // Makes the entities that changes are about.
  void fill() {
    for (std::size_t i = 0; i < kEntities; ++i) add(i);
  }
  PlainEntity* add(std::uint64_t id) {
    auto& entity = entities_[id];
    entity = std::make_unique<PlainEntity>();
    entity->reactor = &reactor_;
    return entity.get();
  }
  PlainEntity* find(std::uint64_t id) { return entities_.find(id)->second.get(); }
  // How many changes the reactors were told of.
  std::size_t heard() const { return reactor_.heard; }

private:
  class CountingReactor final : public PlainReactor {
  public:
    void onValue(PlainEntity const&) override { ++heard; }
    std::size_t heard = 0;
  };

  CountingReactor reactor_;
  std::unordered_map<std::uint64_t, std::unique_ptr<PlainEntity>> entities_;
};

} // namespace Bench
