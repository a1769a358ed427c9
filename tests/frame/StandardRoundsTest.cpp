// The rounds that every entity has: isNondestructing and zeroReferences.

#include "ShopListeners.h"

namespace {

class Standard : public ShelfTest {};

TEST_F(Standard, NondestructingIsToldOnceForEachChange) {
  shelf->isNondestructingIs(true);
  shelf->isNondestructingIs(true);
  EXPECT_EQ("isNondestructing", told());
  shelf->isNondestructingIs(false);
  shelf->isNondestructingIs(false);
  EXPECT_EQ("isNondestructing", told());
}

TEST_F(Standard, NondestructingIsTheTopByteOfTheWord) {
  EXPECT_FALSE(shelf->isNondestructing());
  shelf->isNondestructingIs(true);
  EXPECT_EQ(0x1fU, shelf->vyxReferenceWord() >> 24);
  EXPECT_TRUE(shelf->isNondestructing());
  shelf->isNondestructingIs(false);
  EXPECT_EQ(2U, shelf->vyxReferenceWord());
}

TEST_F(Standard, NondestructingIsSetBeforeTheReactorsRun) {
  bool seen = false;
  listener->during = [&] { seen = shelf->isNondestructing(); };
  shelf->isNondestructingIs(true);
  EXPECT_TRUE(seen);
  listener->during = {};
  shelf->isNondestructingIs(false);
}

TEST_F(Standard, NondestructingEntityOutlivesItsHolders) {
  Vyx::Ptr<Shop::Shelf> kept = Shop::shelfFactory("kept");
  kept->isNondestructingIs(true);
  Shop::Shelf* const raw = kept.ptr();
  kept = nullptr;
  EXPECT_EQ("kept", raw->name());
  raw->isNondestructingIs(false);
}

TEST_F(Standard, EntityThatNobodyHoldsEndsWhenItBecomesDestructible) {
  Vyx::Ptr<Shop::Shelf> kept = Shop::shelfFactory("kept");
  auto const box = kept->boxIs("box", Shop::plain);
  kept->isNondestructingIs(true);
  Shop::Shelf* const raw = kept.ptr();
  kept = nullptr;
  EXPECT_TRUE(box->parent());
  raw->isNondestructingIs(false);
  EXPECT_FALSE(box->parent());
}

TEST_F(Standard, ExceptionComesBackWithIdSix) {
  listener->during = [] { throw 1; };
  shelf->isNondestructingIs(true);
  EXPECT_EQ("isNondestructing !6", told());
  EXPECT_TRUE(shelf->isNondestructing());
  listener->during = {};
  shelf->isNondestructingIs(false);
}

TEST_F(Standard, ZeroReferencesAreToldWhateverTheArgument) {
  shelf->zeroReferencesIs(true);
  shelf->zeroReferencesIs(true);
  shelf->zeroReferencesIs(false);
  EXPECT_EQ("zeroReferences zeroReferences zeroReferences", told());
}

TEST_F(Standard, ExceptionOfZeroReferencesComesBackWithIdFive) {
  listener->during = [] { throw 1; };
  shelf->zeroReferencesIs(true);
  EXPECT_EQ("zeroReferences !5", told());
}

TEST_F(Standard, WithoutReactorsNothingIsTold) {
  listener->notifierIs(nullptr);
  shelf->zeroReferencesIs(true);
  shelf->isNondestructingIs(true);
  shelf->isNondestructingIs(false);
  EXPECT_EQ("", told());
}

TEST(StandardOfALine, DerivedTypeUsesTheRoundsOfItsBase) {
  Heard heard;
  auto const drill = Shop::drillFactory("drill");
  auto const base = listen<ItemListener>(drill, heard, "item");
  auto const derived = listen<DrillListener>(drill, heard, "drill");
  drill->isNondestructingIs(true);
  drill->isNondestructingIs(true);
  drill->zeroReferencesIs(true);
  EXPECT_EQ("item.isNondestructing drill.isNondestructing item.zeroReferences drill.zeroReferences",
            heard.take());
  drill->isNondestructingIs(false);
}

} // namespace
