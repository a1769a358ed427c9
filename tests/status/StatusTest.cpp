#include "StatusListeners.h"

#include "support/Invariants.h"
#include "support/Refusals.h"

namespace {

class Status : public testing::Test {
protected:
  ~Status() override {
    if (status) checkInvariants(*status);
  }

  Heard heard;
  Vyx::Ptr<Pbr::Status> status = Pbr::statusFactory("pbr/status");
  Vyx::Ptr<StatusListener> const listener = listen<StatusListener>(status, heard);

  std::string told() { return heard.take(); }
  Vyx::Ptr<Pbr::PbrClassMapStatus> web() { return status->pbrClassMapStatusIs("web", classMapId(7)); }
  // The members 1, 2, 3, unheard.
  void fill() {
    for (unsigned n : {1U, 2U, 3U}) status->pbrClassMapStatusIs("web", classMapId(n));
    told();
  }
  std::string linesInOrder() {
    Heard lines;
    for (auto at = status->pbrClassMapStatusIterator(); at; ++at)
      lines.note("pbrClassMapStatus " + std::string(valueToStrep(at.key()).view()));
    return lines.take();
  }
};

TEST_F(Status, StartsEmptyAsAnOrphanOfItsName) {
  EXPECT_EQ("pbr/status", status->name());
  EXPECT_FALSE(status->parent());
  EXPECT_EQ(0U, status->pbrClassMapStatuses());
  EXPECT_FALSE(status->pbrClassMapStatusIterator());
  EXPECT_FALSE(status->pbrClassMapStatus(classMapId(7)));
}

TEST_F(Status, NewMemberIsAttachedAndTold) {
  auto const member = web();
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000", told());
  EXPECT_EQ(member, status->pbrClassMapStatus(classMapId(7)));
  EXPECT_EQ(status, member->parent());
  EXPECT_EQ(386, member->parentAttrId());
  EXPECT_EQ("web", member->className());
  EXPECT_EQ(classMapId(7), member->id());
}

TEST_F(Status, MemberIsThereAndAttachedWhenTheReactorsRun) {
  bool attached = false;
  listener->during = [&] {
    auto const member = status->pbrClassMapStatus(classMapId(7));
    attached = member && member->parent() == status;
  };
  web();
  EXPECT_TRUE(attached);
}

TEST_F(Status, SameParametersFindTheMemberThatIsThere) {
  auto const member = web();
  EXPECT_EQ(member, web());
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000", told());
}

TEST_F(Status, OtherClassNameIsRefusedAndNothingChanges) {
  auto const member = web();
  told();
  EXPECT_EQ("Reinstantiating the entity with name web where constructor parameter attribute _className has a "
            "different value of two words than the current value of web not allowed",
            nameInUse([&] { status->pbrClassMapStatusIs("two words", classMapId(7)); }));
  EXPECT_EQ("", told());
  EXPECT_EQ("web", member->className());
  EXPECT_EQ(member, status->pbrClassMapStatus(classMapId(7)));
}

TEST_F(Status, OneClassNameMayHaveSeveralIds) {
  auto const one = status->pbrClassMapStatusIs("web", classMapId(1));
  EXPECT_NE(one, status->pbrClassMapStatusIs("web", classMapId(2)));
  EXPECT_EQ(2U, status->pbrClassMapStatuses());
}

TEST_F(Status, NewOneIsAttachedAndNobodyIsTold) {
  auto const member = status->newPbrClassMapStatus("web", classMapId(7));
  EXPECT_EQ("", told());
  EXPECT_EQ(member, status->pbrClassMapStatus(classMapId(7)));
  EXPECT_EQ(status, member->parent());
  EXPECT_EQ(386, member->parentAttrId());
}

TEST_F(Status, RemovedMemberIsReturnedDetachedAndTold) {
  auto const member = web();
  told();
  EXPECT_EQ(member, status->pbrClassMapStatusDel(classMapId(7)));
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000", told());
  EXPECT_FALSE(member->parent());
  EXPECT_EQ(1U, member->references());
}

TEST_F(Status, RemovedMemberIsGoneAndHasNoParentWhenTheReactorsRun) {
  auto const member = web();
  bool gone = false;
  listener->during = [&] { gone = !status->pbrClassMapStatus(classMapId(7)) && !member->parent(); };
  status->pbrClassMapStatusDel(classMapId(7));
  EXPECT_TRUE(gone);
}

TEST_F(Status, RemovalOfAnAbsentIdReturnsNullAndIsNotTold) {
  EXPECT_FALSE(status->pbrClassMapStatusDel(classMapId(7)));
  auto at = status->pbrClassMapStatusIterator();
  EXPECT_FALSE(status->pbrClassMapStatusDel(at));
  EXPECT_EQ("", told());
}

TEST_F(Status, RemovalUnderAnIteratorReturnsTheMember) {
  fill();
  auto at = status->pbrClassMapStatusIterator(classMapId(2));
  auto const member = status->pbrClassMapStatusDel(at);
  EXPECT_EQ(classMapId(2), member->id());
  EXPECT_FALSE(member->parent());
  EXPECT_EQ("pbrClassMapStatus 00000002-0000-0000", told());
}

TEST_F(Status, RemovalOfAllTellsOfEachInOrderAndNeverWithoutAKey) {
  fill();
  std::string const each = linesInOrder();
  status->pbrClassMapStatusDelAll();
  EXPECT_EQ(each, told());
  EXPECT_EQ(0U, status->pbrClassMapStatuses());
}

TEST_F(Status, NotifyTellsOfAnyId) {
  status->pbrClassMapStatusNotify(classMapId(9));
  EXPECT_EQ("pbrClassMapStatus 00000009-0000-0000", told());
}

TEST_F(Status, ExceptionComesBackWithTheAttributesId) {
  listener->during = [] { throw 1; };
  auto const member = web();
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000 !386", told());
  EXPECT_EQ(member, status->pbrClassMapStatus(classMapId(7)));
}

TEST_F(Status, ReactorOfTheBaseIsPassedOverAndTheRoundGoesOn) {
  auto const base = listen<BaseTypeStatusListener>(status, heard, "base");
  auto const last = listen<StatusListener>(status, heard, "last");
  web();
  status->pbrClassMapStatusDelAll();
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000 last.pbrClassMapStatus 00000007-0000-0000 "
            "pbrClassMapStatus 00000007-0000-0000 last.pbrClassMapStatus 00000007-0000-0000",
            told());
  status->initializedIs(true);
  EXPECT_EQ("initialized base.initialized last.initialized", told());
}

TEST_F(Status, ClassMapsOfTheBaseAreAnotherCollection) {
  auto const routed = web();
  auto const generic = status->classMapStatusIs("voice", classMapId(7));
  EXPECT_EQ("pbrClassMapStatus 00000007-0000-0000 classMapStatus 00000007-0000-0000", told());
  EXPECT_EQ(264, generic->parentAttrId());
  status->classMapStatusDel(classMapId(7));
  EXPECT_EQ(routed, status->pbrClassMapStatus(classMapId(7)));
}

TEST_F(Status, DestructorTellsOfEachMember) {
  fill();
  std::string const each = linesInOrder();
  auto const member = status->pbrClassMapStatus(classMapId(2));
  listener->isWeakReferenceIs(true);
  std::string parents;
  listener->during = [&] { parents += member->parent() ? 'p' : '-'; };
  status = nullptr;
  EXPECT_EQ(each, told());
  EXPECT_FALSE(member->parent());
  EXPECT_EQ('-', parents.back());
}

TEST_F(Status, WithoutMembersEndsSilently) {
  listener->isWeakReferenceIs(true);
  status->intfDisallowedIs({"Ethernet1", PolicyMap::intfNotRouted}, "no address");
  told();
  status = nullptr;
  EXPECT_EQ("", told());
}

TEST_F(Status, FrameRoundsAreThoseOfTheBase) {
  auto const base = listen<BaseTypeStatusListener>(status, heard, "base");
  status->isNondestructingIs(true);
  status->isNondestructingIs(true);
  status->zeroReferencesIs(false);
  EXPECT_EQ("isNondestructing base.isNondestructing zeroReferences base.zeroReferences", told());
  status->isNondestructingIs(false);
}

} // namespace
