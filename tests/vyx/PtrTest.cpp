#include "Vyx/Ptr.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using Vyx::Ptr;
using Vyx::ptrFromNew;
using Vyx::PtrInterface;

class Thing : public PtrInterface {
public:
  explicit Thing(int& deaths) : deaths_(deaths) {}
  ~Thing() override {
    ++deaths_;
    if (atEnd) atEnd(*this);
  }
  std::function<void(Thing&)> atEnd;

private:
  int& deaths_;
};

class SpecialThing final : public Thing {
public:
  using Thing::Thing;
};

class PtrTest : public testing::Test {
protected:
  int deaths = 0;
  Ptr<Thing> thing = ptrFromNew(new Thing(deaths));
};

TEST_F(PtrTest, FreshObjectHasItsBirthReference) {
  Thing* const fresh = new Thing(deaths);
  EXPECT_EQ(1U, fresh->vyxReferenceWord());
  ptrFromNew(fresh) = nullptr;
  EXPECT_EQ(1, deaths);
}

TEST_F(PtrTest, MakersPointerRaisesUntilTheBirthReferenceIsDropped) {
  Thing* const fresh = new Thing(deaths);
  Ptr<Thing> const held(fresh);
  EXPECT_EQ(2U, fresh->references());
  fresh->vyxReferenceDec();
  EXPECT_EQ(1U, held->references());
}

TEST_F(PtrTest, CopyRaisesAndItsEndLowers) {
  {
    Ptr<Thing> const copy = thing;
    EXPECT_EQ(2U, thing->references());
    EXPECT_EQ(copy, thing);
  }
  EXPECT_EQ(1U, thing->references());
}

TEST_F(PtrTest, MoveCountsNothing) {
  Ptr<Thing> moved = std::move(thing);
  EXPECT_FALSE(thing);
  EXPECT_EQ(1U, moved->references());
  Ptr<PtrInterface> const base = std::move(moved);
  EXPECT_FALSE(moved);
  EXPECT_EQ(1U, base->references());
}

TEST_F(PtrTest, LastReleaseDestroysOnce) {
  Ptr<Thing> other = thing;
  thing = nullptr;
  EXPECT_EQ(0, deaths);
  other = nullptr;
  EXPECT_EQ(1, deaths);
}

TEST_F(PtrTest, AssignmentHoldsTheNewBeforeItLetsTheOldGo) {
  auto const next = ptrFromNew(new Thing(deaths));
  std::uint32_t seen = 0;
  thing->atEnd = [&](Thing&) { seen = next->references(); };
  thing = next;
  EXPECT_EQ(2U, seen);
}

TEST_F(PtrTest, AssigningToItselfChangesNothing) {
  thing = *&thing;
  EXPECT_EQ(1U, thing->references());
  EXPECT_EQ(0, deaths);
}

TEST_F(PtrTest, ReleaseInTheMiddleOfAnAssignmentSeesTheNewPointer) {
  bool seen = true;
  thing->atEnd = [&](Thing&) { seen = static_cast<bool>(thing); };
  thing = nullptr;
  EXPECT_FALSE(seen);
}

TEST_F(PtrTest, NullIsNotTouched) {
  Ptr<Thing> none;
  Ptr<Thing> const copy = none;
  none = copy;
  EXPECT_FALSE(none);
  EXPECT_EQ(nullptr, Ptr<Thing>(nullptr).ptr());
}

TEST_F(PtrTest, PointersOfRelatedTypesCompareByObject) {
  auto const special = ptrFromNew(new SpecialThing(deaths));
  Ptr<Thing> const base = special;
  EXPECT_EQ(2U, special->references());
  EXPECT_TRUE(base == special);
  EXPECT_FALSE(thing == special);
}

TEST_F(PtrTest, CastToAnotherTypeIsNullAndCountsNothing) {
  EXPECT_FALSE(Vyx::dynamicPtrCast<SpecialThing>(thing));
  EXPECT_EQ(1U, thing->references());
  Ptr<Thing> const special = ptrFromNew(new SpecialThing(deaths));
  EXPECT_EQ(special, Vyx::dynamicPtrCast<SpecialThing>(special));
  EXPECT_FALSE(Vyx::dynamicPtrCast<SpecialThing>(Ptr<Thing>()));
}

TEST_F(PtrTest, AdoptedAndDetachedPointersCountNothing) {
  Thing* const raw = thing.vyxDetach();
  EXPECT_FALSE(thing);
  EXPECT_EQ(1U, raw->references());
  thing = Ptr<Thing>::vyxAdopt(raw);
  EXPECT_EQ(1U, thing->references());
}

TEST_F(PtrTest, ObjectInDestructionNeverReadsAsZero) {
  std::uint32_t word = 0;
  thing->atEnd = [&](Thing& self) {
    word = self.vyxReferenceWord();
    Ptr<Thing> const again(&self);
  };
  thing = nullptr;
  EXPECT_EQ(1, deaths);
  EXPECT_EQ(1U << 30, word);
}

TEST_F(PtrTest, FlagsOutsideTheCountDoNotHoldAnObject) {
  thing->hasNotificationActiveIs(true);
  thing->vyxMarkedForDeletionIs(true);
  EXPECT_EQ(0xa0000001U, thing->vyxReferenceWord());
  thing = nullptr;
  EXPECT_EQ(1, deaths);
}

TEST_F(PtrTest, FlagsAreSetAndClearedAlone) {
  thing->hasNotificationActiveIs(true);
  EXPECT_TRUE(thing->hasNotificationActive());
  EXPECT_EQ(1U << 29 | 1U, thing->vyxReferenceWord());
  thing->vyxMarkedForDeletionIs(true);
  thing->hasNotificationActiveIs(false);
  EXPECT_TRUE(thing->vyxMarkedForDeletion());
  EXPECT_EQ(1U << 31 | 1U, thing->vyxReferenceWord());
  thing->vyxMarkedForDeletionIs(false);
  EXPECT_EQ(1U, thing->vyxReferenceWord());
}

TEST_F(PtrTest, NondestructingIsATopByteOf1f) {
  EXPECT_FALSE(thing->isNondestructing());
  thing->isNondestructingIs(true);
  EXPECT_TRUE(thing->isNondestructing());
  EXPECT_EQ(0x1f000001U, thing->vyxReferenceWord());
  thing->isNondestructingIs(false);
  EXPECT_EQ(1U, thing->vyxReferenceWord());
}

TEST_F(PtrTest, NondestructingLooksAtTheWholeTopByte) {
  thing->isNondestructingIs(true);
  thing->hasNotificationActiveIs(true);
  EXPECT_FALSE(thing->isNondestructing());
  thing->hasNotificationActiveIs(false);
  EXPECT_TRUE(thing->isNondestructing());
  thing->isNondestructingIs(false);
}

TEST_F(PtrTest, NondestructingObjectOutlivesItsHolders) {
  Thing* const raw = thing.ptr();
  raw->isNondestructingIs(true);
  thing = nullptr;
  EXPECT_EQ(0, deaths);
  EXPECT_TRUE(raw->isNondestructing());
  raw->isNondestructingIs(false);
  EXPECT_EQ(1, deaths);
}

TEST_F(PtrTest, DestructibleAgainIsKeptByItsHolders) {
  thing->isNondestructingIs(true);
  Ptr<Thing> const other = thing;
  thing->isNondestructingIs(false);
  EXPECT_EQ(0, deaths);
  EXPECT_EQ(2U, thing->references());
}

TEST_F(PtrTest, DestructibleTwiceDestroysNothing) {
  thing->isNondestructingIs(false);
  EXPECT_EQ(1U, thing->vyxReferenceWord());
  EXPECT_EQ(0, deaths);
}

TEST_F(PtrTest, DefaultsOfTheTableDoNothing) {
  thing->zeroReferencesIs(true);
  thing->vyxAuditErrors(1);
  EXPECT_EQ(nullptr, thing->fwkType());
  EXPECT_EQ(1U, thing->vyxReferenceWord());
}

} // namespace
