#include "ShopListeners.h"

#include "support/Allocations.h"

namespace {

// Fills every attribute of a shelf.
Vyx::Ptr<Shop::Shelf> fullShelf() {
  auto const shelf = Shop::shelfFactory("a shelf with a long name");
  shelf->ownerIs("an owner with a long name");
  shelf->remarkIs("a remark that needs memory of its own");
  shelf->lentIs(Shop::itemFactory("item"));
  for (unsigned n = 0; n < 40; ++n) {
    shelf->priceIs(n, n);
    shelf->labelIs(Vyx::valueToStrep(n), "label");
    shelf->partIs(n);
    shelf->toolIs(Vyx::valueToStrep(n), static_cast<Shop::Grade>(n % 3), n);
    shelf->noteEnq("note");
  }
  shelf->boxIs("box", Shop::plain);
  shelf->bestIs(shelf->tool("3"));
  shelf->byGradeIs(shelf->tool("4"));
  return shelf;
}

class Destruction : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Shop::Shelf> shelf = fullShelf();
  Vyx::Ptr<ShelfListener> weakListener() {
    auto const weak = listen<ShelfListener>(shelf, heard);
    weak->isWeakReferenceIs(true);
    return weak;
  }
};

TEST_F(Destruction, IsSilent) {
  auto const weak = weakListener();
  shelf = nullptr;
  EXPECT_EQ("", heard.take());
  EXPECT_FALSE(weak->notifier());
}

TEST_F(Destruction, GivesEverythingBack) {
  // What the first use of a type makes for good is made before.
  fullShelf() = nullptr;
  std::size_t const before = allocations::living();
  fullShelf() = nullptr;
  EXPECT_EQ(before, allocations::living());
}

TEST_F(Destruction, ChildrenThatSomebodyHoldsHaveNoParentAfterwards) {
  auto const box = shelf->box();
  auto const tool = shelf->tool("7");
  auto const part = shelf->part(7);
  shelf = nullptr;
  EXPECT_FALSE(box->parent());
  EXPECT_FALSE(tool->parent());
  EXPECT_FALSE(part->parent());
  EXPECT_EQ(1U, tool->references());
}

TEST_F(Destruction, HeldMembersAreInNoCollectionAfterwards) {
  auto const tool = shelf->tool("7");
  shelf = nullptr;
  EXPECT_FALSE(tool->fwkHmNext_);
}

TEST_F(Destruction, ReferencesAreLetGo) {
  auto const item = shelf->lent();
  shelf = nullptr;
  EXPECT_EQ(1U, item->references());
}

} // namespace
