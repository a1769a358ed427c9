// Random changes of the three trees that a process of policy-based routing holds.

#pragma once

#include "Pbr/Pbr.h"
#include "support/Random.h"

#include <string>
#include <vector>

namespace replication_test {

// The roots, and the entities without a parent that the status refers to.
struct Trees {
  Vyx::Ptr<Pbr::Config> config;
  Vyx::Ptr<Pbr::Status> status;
  Vyx::Ptr<Pbr::CheckpointStatus> checkpoint;
};
Trees newTrees();

// RETURNS all that the trees hold, a line an attribute, entities that the status refers to included. Equal
// exactly if the trees are.
std::string textOf(Trees const& trees);

// Names and ids come from small pools, so that what was deleted often comes back.
class Edits {
public:
  Edits(Random& random, Trees const& trees);

  // One change, of any kind. It may be one that changes nothing.
  void one();
  // Takes away references to what was deleted. Such an entity has no place any more by which a reader could
  // know it again.
  void dropDangling();
  void many(unsigned count) {
    for (unsigned i = 0; i < count; ++i) one();
  }

private:
  void editConfig();
  void editActions();
  void editClassMaps();
  void editClassMap(Vyx::Ptr<PolicyMap::ClassMapConfig> const& map);
  void editPolicyMaps();
  void editSubConfig(Vyx::Ptr<PolicyMap::PolicyMapSubConfig> const& sub);
  void editStatus();
  void editPolicyMapStatus();
  void editClassMapStatus();
  void editNexthops(Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey>& shared);
  void editCheckpoint();
  void editClassMapCheckpoint(Vyx::Ptr<Pbr::ClassMapCheckpointStatus> const& map);

  bool toss() { return random_.oneIn(2); }
  Vyx::Name name();
  Kest::UniqueId id() { return {random_.below(6) + 1, 2, 3}; }
  Lomu::IpGenAddr address();
  Lomu::IntfId interface();
  Vyx::String8 text();
  template <class E> E oneOf(unsigned count) { return static_cast<E>(random_.below(count)); }

  Random& random_;
  Trees trees_;
  std::vector<Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey>> shared_{4};
  unsigned sets_ = 0; // Made so far; no two are equal.
};

} // namespace replication_test
