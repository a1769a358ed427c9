// The status of policy maps as its users see it.

#include "PolicyMap/PolicyMap.h"
#include "support/Heard.h"
#include "support/Invariants.h"
#include "support/Refusals.h"

namespace {

using namespace PolicyMap;

Kest::UniqueId idOf(std::uint32_t number) { return {number, 0, 0}; }

TEST(TypeStatus, StartsUninitializedAndEmpty) {
  auto const status = policyMapTypeStatusFactory("status");
  EXPECT_EQ("status", status->name());
  EXPECT_EQ(mapControl, status->type());
  EXPECT_FALSE(status->countersPerRule());
  EXPECT_FALSE(status->initialized());
  EXPECT_EQ(0U,
            status->statuses() + status->intfDisalloweds() + status->results() + status->classMapStatuses());
}

TEST(TypeStatus, FaultsOfInterfacesAreWalkedByInterfaceThenError) {
  auto const status = policyMapTypeStatusFactory("status");
  status->intfDisallowedIs({"Ethernet2", intfNotRouted}, "no address");
  status->intfDisallowedIs({"Ethernet1", intfNoResources}, "table full");
  status->intfDisallowedIs({"Ethernet1", intfNotRouted}, "no address");
  std::string walked;
  for (auto at = status->intfDisallowedIteratorConst(); at; ++at)
    walked += std::string(valueToStrep(at.key()).view()) + " ";
  EXPECT_EQ("Ethernet1:intfNotRouted Ethernet1:intfNoResources Ethernet2:intfNotRouted ", walked);
  EXPECT_EQ("table full", status->intfDisallowed({"Ethernet1", intfNoResources}));
  EXPECT_EQ("", status->intfDisallowed({"Ethernet9", intfNotRouted}));
}

TEST(TypeStatus, DefaultKeyIsNoBookmark) {
  auto const status = policyMapTypeStatusFactory("status");
  status->intfDisallowedIs({}, "nowhere");
  status->intfDisallowedIs({"Ethernet1", intfNotRouted}, "no address");
  auto at = status->intfDisallowedIterator();
  EXPECT_FALSE(at.hasBookmark());
  ++at;
  EXPECT_TRUE(at.hasBookmark());
}

TEST(TypeStatus, MapsHaveAStateAMessageAndInterfaces) {
  auto const status = policyMapTypeStatusFactory("status");
  auto const map = status->statusIs("SERVERS");
  EXPECT_EQ(259, map->parentAttrId());
  EXPECT_EQ(notApplied, map->state());
  map->stateIs(applyFailed);
  map->messageIs("table full");
  map->intfIs("Ethernet1", true);
  EXPECT_EQ(map, status->status("SERVERS"));
  EXPECT_TRUE(map->intf("Ethernet1"));
  checkInvariants(*status);
}

TEST(TypeStatus, ResultOfAnUnknownVersionIsNotApplied) {
  auto const status = policyMapTypeStatusFactory("status");
  status->resultIs(idOf(1), applied);
  EXPECT_EQ(applied, status->result(idOf(1)));
  EXPECT_EQ(notApplied, status->result(idOf(2)));
}

TEST(TypeStatus, ClassMapOfAnotherNameIsRefused) {
  auto const status = policyMapTypeStatusFactory("status");
  auto const member = status->classMapStatusIs("web", idOf(1));
  EXPECT_EQ(264, member->parentAttrId());
  EXPECT_EQ("Reinstantiating the entity with name web where constructor parameter attribute _className has a "
            "different value of voice than the current value of web not allowed",
            nameInUse([&] { status->classMapStatusIs("voice", idOf(1)); }));
  checkInvariants(*status);
}

TEST(OfClassMap, HasAMemberForEachKindOfRule) {
  auto const status = classMapStatusFactory("web", idOf(1));
  EXPECT_EQ("web", status->name());
  auto const match = status->matchIs(matchIpv6AccessGroup);
  EXPECT_EQ(match, status->matchIs(matchIpv6AccessGroup));
  EXPECT_EQ(matchIpv6AccessGroup, match->option());
  EXPECT_EQ(260, match->parentAttrId());
  match->rulesIs(12);
  EXPECT_EQ(12U, status->match(matchIpv6AccessGroup)->rules());
  EXPECT_FALSE(status->match(matchIpAccessGroup));
  checkInvariants(*status);
}

TEST(OfClassMap, KindThatIsNoEnumeratorIsOneMoreKey) {
  auto const status = classMapStatusFactory("web", idOf(1));
  auto const kind = static_cast<ClassMapMatchOption>(77);
  EXPECT_EQ(kind, status->matchIs(kind)->option());
}

} // namespace
