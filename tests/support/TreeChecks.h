// What holds of every red-black tree, read from the members' own links.

#pragma once

#include "support/Records.h"

#include <gtest/gtest.h>

template <class Record> class TreeChecks {
public:
  // Fails unless the links below and above every member agree, no red member has a red child, and every way
  // down passes the same number of black members. RETURNS the number of members met.
  template <class Tree> static std::uint32_t check(Tree const& tree) {
    Record const* const root = rootOf(tree);
    if (!root) return 0;
    EXPECT_EQ(0U, root->fwkRbLinks_.red) << "a red root";
    TreeChecks checks;
    checks.blackHeight(*root);
    return checks.met_;
  }

private:
  static Record const* below(Vyx::Ptr<Vyx::PtrInterface> const& link) {
    return static_cast<Record const*>(link.ptr());
  }
  template <class Tree> static Record const* rootOf(Tree const& tree) {
    Record const* at = tree.first();
    while (at && at->fwkRbLinks_.parent) at = holder(*at);
    return at;
  }
  // The member whose links the parent pointer points at.
  static Record const* holder(Record const& member) {
    std::ptrdiff_t const place =
        reinterpret_cast<char const*>(&member.fwkRbLinks_) -
        reinterpret_cast<char const*>(static_cast<Vyx::PtrInterface const*>(&member));
    auto const* parent = reinterpret_cast<char const*>(member.fwkRbLinks_.parent) - place;
    return static_cast<Record const*>(reinterpret_cast<Vyx::PtrInterface const*>(parent));
  }

  int blackHeight(Record const& at) {
    ++met_;
    EXPECT_EQ(1U, at.references()) << at.fwkKey() << " is held by another than its place";
    int const left = checkBelow(at, below(at.fwkRbLinks_.left), true);
    int const right = checkBelow(at, below(at.fwkRbLinks_.right), false);
    EXPECT_EQ(left, right) << "black members below " << at.fwkKey();
    return left + (at.fwkRbLinks_.red ? 0 : 1);
  }
  int checkBelow(Record const& at, Record const* child, bool onLeft) {
    if (!child) return 0;
    EXPECT_EQ(&at, holder(*child)) << "the member above " << child->fwkKey();
    EXPECT_TRUE(onLeft ? child->fwkKey() < at.fwkKey() : at.fwkKey() < child->fwkKey());
    EXPECT_FALSE(at.fwkRbLinks_.red && child->fwkRbLinks_.red) << "two reds at " << child->fwkKey();
    return blackHeight(*child);
  }

  std::uint32_t met_ = 0;
};
