#include "ShopListeners.h"

#include "Vyx/VyxType.h"
#include "support/Invariants.h"
#include "support/Refusals.h"
#include "support/Walks.h"

namespace {

class ChildCollection : public ShelfTest {
protected:
  ~ChildCollection() override {
    listener->during = {};
    checkInvariants(*shelf);
  }

  Vyx::Ptr<Shop::Tool> saw() { return shelf->toolIs("saw", Shop::fine, 5); }
  // Three tools, unheard.
  void fill() {
    for (char const* name : {"axe", "saw", "file"}) shelf->toolIs(name, Shop::fine, 5);
    told();
  }
  std::string toolsInOrder() {
    Heard lines;
    for (auto at = shelf->toolIterator(); at; ++at) lines.note("tool " + std::string(at.key().view()));
    return lines.take();
  }
};

TEST_F(ChildCollection, NewKeyIsMadeAttachedAndTold) {
  auto const tool = saw();
  EXPECT_EQ("tool saw", told());
  EXPECT_EQ(tool, shelf->tool("saw"));
  EXPECT_EQ(shelf, tool->parent());
  EXPECT_EQ(271, tool->parentAttrId());
  EXPECT_EQ(2U, tool->references());
}

TEST_F(ChildCollection, SameParametersFindTheMemberThatIsThere) {
  auto const tool = saw();
  told();
  EXPECT_EQ(tool, saw());
  EXPECT_EQ("", told());
  EXPECT_EQ(1U, shelf->tools());
}

TEST_F(ChildCollection, OtherParameterIsRefusedByNameAndNothingChanges) {
  auto const tool = saw();
  told();
  EXPECT_EQ("Reinstantiating the entity with name saw where constructor parameter attribute _weight has a "
            "different value of 6 than the current value of 5 not allowed",
            nameInUse([&] { shelf->toolIs("saw", Shop::fine, 6); }));
  EXPECT_EQ("", told());
  EXPECT_EQ(tool, shelf->tool("saw"));
  EXPECT_EQ(5U, tool->weight());
  EXPECT_EQ(shelf, tool->parent());
}

TEST_F(ChildCollection, FirstParameterThatDiffersIsNamed) {
  saw();
  EXPECT_EQ("Reinstantiating the entity with name saw where constructor parameter attribute _grade has a "
            "different value of 'finest' than the current value of 'fine' not allowed",
            nameInUse([&] { shelf->toolIs("saw", Shop::finest, 6); }));
}

TEST_F(ChildCollection, NewMemberIsEnteredAttachedAndNobodyIsTold) {
  auto const tool = shelf->newTool("saw", Shop::fine, 5);
  EXPECT_EQ("", told());
  EXPECT_EQ(tool, shelf->tool("saw"));
  EXPECT_EQ(shelf, tool->parent());
  EXPECT_EQ(271, tool->parentAttrId());
}

TEST_F(ChildCollection, MemberIsThereAndAttachedWhenTheReactorsRun) {
  bool attached = false;
  listener->during = [&] { attached = shelf->tool("saw") && shelf->tool("saw")->parent() == shelf; };
  saw();
  EXPECT_TRUE(attached);
}

TEST_F(ChildCollection, RemovedMemberIsReturnedDetachedAndTold) {
  auto const tool = saw();
  told();
  EXPECT_EQ(tool, shelf->toolDel("saw"));
  EXPECT_EQ("tool saw", told());
  EXPECT_FALSE(shelf->tool("saw"));
  EXPECT_FALSE(tool->parent());
  EXPECT_EQ(1U, tool->references());
}

TEST_F(ChildCollection, RemovedMemberIsGoneAndHasNoParentWhenTheReactorsRun) {
  auto const tool = saw();
  bool gone = false;
  listener->during = [&] { gone = !shelf->tool("saw") && !tool->parent(); };
  shelf->toolDel("saw");
  EXPECT_TRUE(gone);
}

TEST_F(ChildCollection, RemovalOfAnAbsentKeyReturnsNullAndIsNotTold) {
  EXPECT_FALSE(shelf->toolDel("saw"));
  EXPECT_EQ("", told());
}

TEST_F(ChildCollection, RemovalUnderAnIteratorReturnsTheMember) {
  fill();
  auto at = shelf->toolIterator("saw");
  auto const tool = shelf->toolDel(at);
  EXPECT_EQ("saw", tool->name());
  EXPECT_FALSE(tool->parent());
  EXPECT_EQ("tool saw", told());
}

TEST_F(ChildCollection, RemovalUnderAnIteratorOnNoMemberReturnsNull) {
  auto at = shelf->toolIterator();
  EXPECT_FALSE(shelf->toolDel(at));
  EXPECT_EQ("", told());
}

TEST_F(ChildCollection, RemovalOfAllTellsOfEachKeyInOrderAndNeverWithoutAKey) {
  fill();
  std::string const each = toolsInOrder();
  auto const tool = shelf->tool("axe");
  shelf->toolDelAll();
  EXPECT_EQ(each, told());
  EXPECT_EQ(0U, shelf->tools());
  EXPECT_FALSE(tool->parent());
}

TEST_F(ChildCollection, RemovalOfAllFromNothingIsNotTold) {
  shelf->toolDelAll();
  shelf->partDelAll();
  EXPECT_EQ("", told());
}

TEST_F(ChildCollection, RemovalOfAllBearsAReactorThatRemovesAndEnters) {
  fill();
  auto at = shelf->toolIterator();
  Vyx::Name const last = (++ ++at).key();
  bool once = true;
  listener->during = [&] {
    if (!std::exchange(once, false)) return;
    shelf->toolDel(last);
    shelf->partIs(1);
  };
  shelf->toolDelAll();
  EXPECT_EQ(0U, shelf->tools());
  EXPECT_EQ(1U, shelf->parts());
}

TEST_F(ChildCollection, RemovedKeyMayComeBackWithOtherParameters) {
  saw();
  shelf->toolDel("saw");
  EXPECT_EQ(9U, shelf->toolIs("saw", Shop::plain, 9)->weight());
}

TEST_F(ChildCollection, MemberOfATreeIsFoundMadeAndRemovedAlike) {
  auto const part = shelf->partIs(7);
  EXPECT_EQ(part, shelf->partIs(7));
  EXPECT_EQ(272, part->parentAttrId());
  EXPECT_EQ(part, shelf->partDel(7));
  EXPECT_FALSE(part->parent());
  EXPECT_EQ("part 7 part 7", told());
}

TEST_F(ChildCollection, TreeIsWalkedByAscendingKey) {
  for (unsigned number : {5U, 1U, 9U, 3U}) shelf->partIs(number);
  told();
  EXPECT_EQ("1 3 5 9", keysFrom(shelf->partIterator()));
  EXPECT_EQ("5 9", keysFrom(shelf->partIterator(4)));
  shelf->partDelAll();
  EXPECT_EQ("part 1 part 3 part 5 part 9", told());
}

TEST_F(ChildCollection, ExceptionOfAReactorComesBackWithTheAttributesId) {
  listener->during = [] { throw 1; };
  saw();
  shelf->partIs(1);
  EXPECT_EQ("tool saw !271 part 1 !272", told());
}

class MadeName : public ChildCollection {};

TEST_F(MadeName, IsTheTextOfOneParameter) {
  auto const sign = shelf->signIs(true, 42);
  EXPECT_EQ("42", sign->name());
  EXPECT_TRUE(sign->wide());
  EXPECT_EQ(42U, sign->number());
  EXPECT_EQ(shelf, sign->parent());
  EXPECT_EQ("sign 42", told());
  EXPECT_EQ("43", shelf->newSign(true, 43)->name());
}

TEST_F(MadeName, IsNoReasonToRefuseWhatIsThere) {
  auto const sign = shelf->signIs(true, 42);
  told();
  EXPECT_EQ(sign, shelf->signIs(true, 42));
  EXPECT_EQ("", told());
}

TEST_F(MadeName, LeavesTheOtherParametersToBeCompared) {
  shelf->signIs(true, 42);
  EXPECT_EQ("Reinstantiating the entity with name 42 where constructor parameter attribute _wide has a "
            "different value of false than the current value of true not allowed",
            nameInUse([&] { shelf->signIs(false, 42); }));
}

TEST_F(MadeName, IsNoArgumentOfTheAttribute) {
  auto const& arguments = Shop::Shelf::_fwkType()->attr(Vyx::Name("sign"))->arguments();
  ASSERT_EQ(2U, arguments.size());
  EXPECT_EQ("wide", arguments[0].name);
  EXPECT_EQ("number", arguments[1].name);
}

TEST_F(MadeName, MembersVersionIsToldByTheEntryOfAllReactors) {
  auto const sign = shelf->newSign(true, 42);
  auto const reactor = listen<SignListener>(sign, heard);
  sign->versionIs(3);
  sign->versionIs(3);
  EXPECT_EQ("version", told());
}

class ReferenceCollection : public ShelfTest {
protected:
  Vyx::Ptr<Shop::Tool> const saw = Shop::toolFactory("saw", Shop::fine, 5);
  Vyx::Ptr<Shop::Tool> const axe = Shop::toolFactory("axe", Shop::fine, 7);
};

TEST_F(ReferenceCollection, KeyIsReadFromTheEntity) {
  shelf->byGradeIs(saw);
  EXPECT_EQ("byGrade 'fine'", told());
  EXPECT_EQ(saw, shelf->byGrade(Shop::fine));
  EXPECT_FALSE(shelf->byGrade(Shop::plain));
}

TEST_F(ReferenceCollection, AnotherEntityOfTheKeyTakesThePlace) {
  shelf->byGradeIs(saw);
  shelf->byGradeIs(saw);
  shelf->byGradeIs(axe);
  EXPECT_EQ("byGrade 'fine' byGrade 'fine'", told());
  EXPECT_EQ(1U, shelf->byGrades());
  EXPECT_EQ(1U, saw->references());
  EXPECT_EQ(2U, axe->references());
}

TEST_F(ReferenceCollection, EntityIsNeitherAttachedNorDetached) {
  auto const own = shelf->toolIs("file", Shop::plain, 1);
  shelf->byGradeIs(saw);
  shelf->byGradeIs(own);
  shelf->byGradeDelAll();
  EXPECT_FALSE(saw->parent());
  EXPECT_EQ(shelf, own->parent());
}

class Queue : public ShelfTest {};

TEST_F(Queue, IsTakenInTheOrderOfEnteringAndToldEachTime) {
  unsigned const first = shelf->noteEnq("a");
  unsigned const second = shelf->noteEnq("b");
  EXPECT_LT(first, second);
  EXPECT_EQ("note 1 note 2", told());
  EXPECT_EQ("a", shelf->noteDeq());
  EXPECT_EQ("b", shelf->noteDeq());
  EXPECT_EQ("note 1 note 2", told());
}

TEST_F(Queue, EmptyOneGivesZeroAndIsNotTold) {
  EXPECT_EQ("", shelf->noteDeq());
  EXPECT_EQ("", shelf->noteDel(3));
  EXPECT_FALSE(shelf->noteIs(3, "c"));
  EXPECT_EQ("", told());
}

TEST_F(Queue, ValueUnderAKeyIsChangedInPlace) {
  unsigned const key = shelf->noteEnq("a");
  told();
  EXPECT_TRUE(shelf->noteIs(key, "a"));
  EXPECT_EQ("", told());
  EXPECT_TRUE(shelf->noteIs(key, "b"));
  EXPECT_EQ("note 1", told());
  EXPECT_EQ("b", shelf->note(key));
}

} // namespace
