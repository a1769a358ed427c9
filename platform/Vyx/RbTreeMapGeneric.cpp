#include "Vyx/RbTreeMapGeneric.h"

#include <utility>

namespace Vyx {

// One rebalancing. Works on the links; the counted pointers move along without a count being touched.
class RbTreeMapGeneric::Balance {
public:
  Balance(RbTreeMapGeneric& tree, unsigned link) : tree_(tree), link_(link) {}

  void inserted(RbTreeLinks* at) {
    while (at->parent && at->parent->red) {
      RbTreeLinks* parent = at->parent;
      RbTreeLinks* above = parent->parent;
      bool const onLeft = links(above->left) == parent;
      RbTreeLinks* uncle = links(onLeft ? above->right : above->left);
      if (uncle && uncle->red) {
        parent->red = uncle->red = 0;
        above->red = 1;
        at = above;
        continue;
      }
      if (at == links(onLeft ? parent->right : parent->left)) {
        rotate(parent, onLeft);
        std::swap(at, parent);
      }
      parent->red = 0;
      above->red = 1;
      rotate(above, !onLeft);
    }
    links(tree_.root_)->red = 0;
  }

  // A black node left from below `parent`; `at`, which may be null, stands in its place.
  void removed(RbTreeLinks* at, RbTreeLinks* parent) {
    while (parent && !(at && at->red)) {
      bool const onLeft = links(parent->left) == at;
      RbTreeLinks* sibling = links(onLeft ? parent->right : parent->left);
      if (sibling->red) {
        sibling->red = 0;
        parent->red = 1;
        rotate(parent, onLeft);
        sibling = links(onLeft ? parent->right : parent->left);
      }
      if (!red(sibling->left) && !red(sibling->right)) {
        sibling->red = 1;
        at = parent;
        parent = at->parent;
        continue;
      }
      if (!red(onLeft ? sibling->right : sibling->left)) {
        links(onLeft ? sibling->left : sibling->right)->red = 0;
        sibling->red = 1;
        rotate(sibling, !onLeft);
        sibling = links(onLeft ? parent->right : parent->left);
      }
      sibling->red = std::exchange(parent->red, 0);
      links(onLeft ? sibling->right : sibling->left)->red = 0;
      rotate(parent, onLeft);
      return;
    }
    if (at) at->red = 0;
  }

private:
  RbTreeLinks* links(Node const& node) const { return node ? linksOf(node.ptr(), link_) : nullptr; }
  bool red(Node const& node) const { return node && links(node)->red; }

  // Turns the node down to the left (or right); its child on the other side comes up.
  void rotate(RbTreeLinks* at, bool toLeft) {
    Node& holder = tree_.holderOf(link_, at);
    Node& inner = toLeft ? at->right : at->left;
    Node down = std::move(holder);
    Node up = std::move(inner);
    RbTreeLinks* rising = links(up);
    Node& handed = toLeft ? rising->left : rising->right;
    inner = std::move(handed);
    if (inner) links(inner)->parent = at;
    rising->parent = at->parent;
    at->parent = rising;
    handed = std::move(down);
    holder = std::move(up);
  }

  RbTreeMapGeneric& tree_;
  unsigned link_;
};

RbTreeMapGeneric::~RbTreeMapGeneric() = default;

RbTreeMapGeneric::Node& RbTreeMapGeneric::holderOf(unsigned link, RbTreeLinks const* links) {
  if (!links->parent) return root_;
  Node& left = links->parent->left;
  return left && linksOf(left.ptr(), link) == links ? left : links->parent->right;
}

void RbTreeMapGeneric::memberNewChild(unsigned link, int, Node const& parent, Node const& member, bool left) {
  RbTreeLinks* links = linksOf(member.ptr(), link);
  links->parent = parent ? linksOf(parent.ptr(), link) : nullptr;
  links->red = 1;
  (parent ? (left ? links->parent->left : links->parent->right) : root_) = member;
  ++count_;
  ++version_;
  Balance(*this, link).inserted(links);
}

void RbTreeMapGeneric::memberReplace(unsigned link, int, Node const& old, Node const& member) {
  if (old == member) return;
  RbTreeLinks* from = linksOf(old.ptr(), link);
  RbTreeLinks* to = linksOf(member.ptr(), link);
  Node& holder = holderOf(link, from);
  Foothold::holdAll();
  Node leaving = std::move(holder);
  to->parent = std::exchange(from->parent, nullptr);
  to->red = std::exchange(from->red, 0);
  to->left = std::move(from->left);
  to->right = std::move(from->right);
  if (to->left) linksOf(to->left.ptr(), link)->parent = to;
  if (to->right) linksOf(to->right.ptr(), link)->parent = to;
  holder = member;
  ++version_;
}

void RbTreeMapGeneric::_memberDelG(unsigned link, int, PtrInterface const* member) {
  RbTreeLinks* at = linksOf(member, link);
  Node& holder = holderOf(link, at);
  if (holder.ptr() != member) return;
  Foothold::holdAll();
  --count_;
  ++version_;
  Node leaving = std::move(holder);
  RbTreeLinks* below = nullptr;
  RbTreeLinks* parent = at->parent;
  std::uint32_t removedRed = at->red;
  if (!at->left || !at->right) {
    holder = std::move(at->left ? at->left : at->right);
    if (holder) (below = linksOf(holder.ptr(), link))->parent = parent;
  } else {
    // The next member in order, which has no left child, takes the place.
    Node* next = &at->right;
    while (linksOf(next->ptr(), link)->left) next = &linksOf(next->ptr(), link)->left;
    Node taking = std::move(*next);
    RbTreeLinks* to = linksOf(taking.ptr(), link);
    parent = to->parent == at ? to : to->parent;
    *next = std::move(to->right);
    if (*next) (below = linksOf(next->ptr(), link))->parent = parent;
    removedRed = to->red;
    to->red = at->red;
    to->parent = at->parent;
    to->left = std::move(at->left);
    to->right = std::move(at->right);
    if (to->left) linksOf(to->left.ptr(), link)->parent = to;
    if (to->right) linksOf(to->right.ptr(), link)->parent = to;
    holder = std::move(taking);
  }
  at->parent = nullptr;
  at->red = 0;
  if (!removedRed) Balance(*this, link).removed(below, parent);
}

void RbTreeMapGeneric::deleteAllG(unsigned link) {
  Foothold::holdAll();
  Node spine = std::move(root_);
  count_ = 0;
  ++version_;
  // Rotates left subtrees up, so that what is left is a list that is released from its head.
  while (spine) {
    RbTreeLinks* links = linksOf(spine.ptr(), link);
    links->parent = nullptr;
    if (links->left) {
      Node up = std::move(links->left);
      RbTreeLinks* rising = linksOf(up.ptr(), link);
      links->left = std::move(rising->right);
      rising->right = std::move(spine);
      spine = std::move(up);
    } else {
      Node rest = std::move(links->right);
      links->red = 0;
      spine = std::move(rest);
    }
  }
}

} // namespace Vyx
