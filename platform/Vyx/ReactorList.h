// The reactors of one notifier: an intrusive, singly linked list that counts nobody. A reactor leaves it by
// itself when it ends; when the list ends, the reactors in it are left unattached.
//
// Invariants:
// (1) `version` rises with each insertion, each removal and each emptying.
// (2) Before the list changes, every round that is running over it takes hold of what it still has to call.

#pragma once

#include "Vyx/BaseCollection.h"
#include "Vyx/Entity.h"

namespace Vyx {

class ReactorList : public BaseCollection {
public:
  using Link = Entity::NotifieeConst;

  ReactorList() = default;
  ~ReactorList() override { deleteAll(); }

  std::uint32_t version() const { return version_; }
  std::uint32_t count() const { return count_; }
  bool empty() const { return count_ == 0; }
  Link* head() const { return head_; }
  static Link* next(Link const* reactor) { return reactor->next_; }

  void linkHead(Link* reactor);
  void linkTail(Link* reactor);
  // A reactor that isn't in the list is no error.
  void unlink(Link* reactor);
  // Lets every reactor go, by a loop; they are unattached afterwards and told nothing.
  void deleteAll();

private:
  void changing();

  std::uint32_t version_ = 0;
  std::uint32_t count_ = 0;
  Link* head_ = nullptr;
  Link* tail_ = nullptr;
};

} // namespace Vyx
