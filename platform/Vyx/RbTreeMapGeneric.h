// The part of the ordered tree that is the same for all members: linking, unlinking, balance.
//
// Invariants:
// (1) A red node has no red child; every way from the root down passes the same number of black nodes.
// (2) A member is held by exactly one counted pointer: the root, or `left` or `right` of the member above it.
// (3) `version_` starts at 1 and rises with each insertion, replacement and removal.

#pragma once

#include "Vyx/BaseCollection.h"

namespace Vyx {

// The links of a member, behind its key and value.
struct RbTreeLinks {
  RbTreeLinks* parent = nullptr; // The links of the member above; null at the root and when in no tree.
  Ptr<PtrInterface> left;
  Ptr<PtrInterface> right;
  std::uint32_t red = 0;
};

class RbTreeMapGeneric : public BaseCollection {
public:
  using Node = Ptr<PtrInterface>;

  std::uint32_t version() const { return version_; }
  std::uint32_t count() const { return count_; }

  // In each of these, `link` is the place of the links in a member, in bytes; the integer behind it is 0.

  // Links the member below the parent, on the side told, or as the root when the parent is null.
  void memberNewChild(unsigned link, int, Node const& parent, Node const& member, bool left);
  // Puts the member in the place of the old one, which leaves.
  void memberReplace(unsigned link, int, Node const& old, Node const& member);
  void _memberDelG(unsigned link, int, PtrInterface const* member);

protected:
  ~RbTreeMapGeneric() override;

  static RbTreeLinks* linksOf(PtrInterface const* member, unsigned link) {
    return reinterpret_cast<RbTreeLinks*>(const_cast<char*>(reinterpret_cast<char const*>(member)) + link);
  }
  static PtrInterface* memberOf(RbTreeLinks const* links, unsigned link) {
    return reinterpret_cast<PtrInterface*>(const_cast<char*>(reinterpret_cast<char const*>(links)) - link);
  }
  // Releases every member by a loop, however deep the tree.
  void deleteAllG(unsigned link);

  std::uint32_t version_ = 1;
  std::uint32_t count_ = 0;
  Node root_;

private:
  class Balance;
  Node& holderOf(unsigned link, RbTreeLinks const* links);
};

} // namespace Vyx
