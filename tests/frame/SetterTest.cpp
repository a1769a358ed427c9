#include "ShopListeners.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

class Setter : public ShelfTest {
protected:
  // Sets every plain attribute, to values that depend on `round` alone.
  void setAll(unsigned round) {
    shelf->litIs(round % 2 == 0);
    shelf->smallIs(static_cast<unsigned char>(round));
    shelf->mediumIs(static_cast<unsigned short>(round));
    shelf->largeIs(round);
    shelf->hugeIs(round);
    shelf->widthIs(round);
    shelf->ownerIs(Vyx::valueToStrep(round));
    shelf->remarkIs(Vyx::valueToStrep(round));
    shelf->gradeIs(static_cast<Shop::Grade>(round));
  }
};

TEST_F(Setter, ChangedValueIsToldOnce) {
  setAll(1);
  EXPECT_EQ("lit small medium large huge width owner remark grade", told());
}

TEST_F(Setter, EqualValueStartsNoRound) {
  setAll(1);
  told();
  setAll(1);
  EXPECT_EQ("", told());
}

TEST_F(Setter, DefaultOfAnAttributeThatWasNeverSetStartsNoRound) {
  shelf->litIs(true);
  shelf->smallIs(0);
  shelf->mediumIs(0);
  shelf->largeIs(0);
  shelf->hugeIs(0);
  shelf->widthIs(0);
  shelf->ownerIs({});
  shelf->remarkIs("");
  shelf->gradeIs(Shop::plain);
  shelf->lentIs(nullptr);
  shelf->bestIs(nullptr);
  EXPECT_EQ("", told());
}

TEST_F(Setter, ValueIsStoredBeforeAnyReactorRuns) {
  unsigned seen = 0;
  listener->during = [&] { seen = shelf->large(); };
  shelf->largeIs(7);
  EXPECT_EQ(7U, seen);
}

TEST_F(Setter, StoresWithoutReactors) {
  listener->notifierIs(nullptr);
  setAll(2);
  EXPECT_EQ("2", shelf->owner());
  EXPECT_EQ(2U, shelf->huge());
  EXPECT_EQ("", told());
}

TEST_F(Setter, ExceptionOfAReactorNeverRollsBack) {
  listener->during = [] { throw 1; };
  EXPECT_NO_THROW(shelf->largeIs(7));
  EXPECT_EQ(7U, shelf->large());
  EXPECT_EQ("large !261", told());
}

TEST_F(Setter, NoNumberDiffersFromItself) {
  shelf->widthIs(kNoNumber);
  shelf->widthIs(kNoNumber);
  EXPECT_EQ("width width", told());
  EXPECT_NE(shelf->width(), shelf->width());
}

TEST_F(Setter, NegativeZeroEqualsZero) {
  shelf->widthIs(-0.0);
  EXPECT_EQ("", told());
  EXPECT_FALSE(std::signbit(shelf->width()));
}

TEST_F(Setter, TextsAreComparedByTheirBytes) {
  shelf->ownerIs("ann");
  told();
  char const* const stored = shelf->owner().charPtr();
  shelf->ownerIs(std::string_view("anna").substr(0, 3));
  EXPECT_EQ("", told());
  EXPECT_EQ(stored, shelf->owner().charPtr());
  shelf->ownerIs("Ann");
  EXPECT_EQ("owner", told());
}

TEST_F(Setter, TextMayBeSetToItself) {
  shelf->ownerIs("ann");
  told();
  shelf->ownerIs(shelf->owner());
  EXPECT_EQ("ann", shelf->owner());
  EXPECT_EQ("", told());
}

TEST_F(Setter, ReactorThatSetsTheAttributeNestsARound) {
  listener->during = [&] {
    if (shelf->large() < 3) shelf->largeIs(shelf->large() + 1);
  };
  shelf->largeIs(1);
  EXPECT_EQ("large large large", told());
  EXPECT_EQ(3U, shelf->large());
}

class ReferenceSetter : public ShelfTest {
protected:
  Vyx::Ptr<Shop::Item> const one = Shop::itemFactory("item");
  Vyx::Ptr<Shop::Item> const other = Shop::itemFactory("item");
};

TEST_F(ReferenceSetter, ComparesEntitiesNotTheirContent) {
  shelf->lentIs(one);
  shelf->lentIs(one);
  EXPECT_EQ("lent", told());
  shelf->lentIs(other);
  EXPECT_EQ("lent", told());
  EXPECT_EQ(other, shelf->lent());
}

TEST_F(ReferenceSetter, HoldsTheNewEntityAndLetsTheOldGo) {
  shelf->lentIs(one);
  EXPECT_EQ(2U, one->references());
  shelf->lentIs(other);
  EXPECT_EQ(1U, one->references());
  EXPECT_EQ(2U, other->references());
  shelf->lentIs(nullptr);
  EXPECT_EQ(1U, other->references());
  EXPECT_EQ("lent lent lent", told());
}

TEST_F(ReferenceSetter, LeavesTheParentOfTheEntityAlone) {
  shelf->lentIs(one);
  EXPECT_FALSE(one->parent());
}

TEST_F(ReferenceSetter, EntityMayLoseItsLastOtherHolder) {
  shelf->lentIs(Shop::itemFactory("only"));
  EXPECT_EQ(1U, shelf->lent()->references());
  EXPECT_EQ("only", shelf->lent()->name());
}

} // namespace
