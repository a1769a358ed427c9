// The order of fields, seen in the objects' own bytes: each structure below has the fields of a type in the
// order that they are promised in, and is laid over an object. Holds for 64 and for 32 bits alike.

#include "Sets.h"
#include "StatusListeners.h"

#include "support/Fields.h"

namespace {

struct Set {
  fields::Tree tree;
  std::uint32_t recursive;
  void* vrfName;
};
struct Entry {
  void* operations;
  std::uint32_t word;
  std::uint32_t family;
  unsigned char address[16];
  unsigned char value;
  void const* parent;
  void const* left;
  void const* right;
  std::uint32_t red;
};
struct AdjKey {
  fields::Entity entity;
  Set nexthopSet;
  std::uint64_t nexthopIndex;
  std::uint32_t publishCounter;
  std::uint32_t delCounter;
  std::uint64_t l2AdjKey;
  fields::Table<Pbr::NexthopIndexAndL2AdjKey::VyxViasUsedMap> viasUsed;
  fields::List reactors;
};
struct ViasUsed {
  void* operations;
  std::uint32_t word;
  std::uint32_t family;
  unsigned char address[16];
  unsigned char value;
  void const* fwkHmNext;
};
struct OfClassMap {
  alignas(PolicyMap::ClassMapStatus) unsigned char base[sizeof(PolicyMap::ClassMapStatus)];
  void const* fwkHmNext;
  std::uint32_t actionType;
  void* nexthopGroup;
  void const* adjKey;
};
struct Status {
  alignas(PolicyMap::PolicyMapTypeStatus) unsigned char base[sizeof(PolicyMap::PolicyMapTypeStatus)];
  fields::Table<Pbr::Status::VyxPbrClassMapStatusMap> pbrClassMapStatus;
};

TEST(Layout, SetHasItsTreeThenTheTwoOthers) {
  auto const set = setOf({{"10.0.0.1", true}, {"10.0.0.2", true}}, 7, "blue");
  auto const laid = fields::over<Set>(set);
  EXPECT_EQ(2U, laid.tree.count);
  EXPECT_EQ(set.version(), laid.tree.version);
  EXPECT_EQ(7U, laid.recursive);
  EXPECT_NE(nullptr, laid.vrfName);
}

TEST(Layout, EntryHasKeyValueAndLinks) {
  auto const set = setOf({{"10.0.0.1", true}});
  auto const laid = fields::over<Entry>(*set.first());
  EXPECT_EQ(1U, laid.word);
  EXPECT_EQ(4U, laid.family);
  EXPECT_EQ(10, laid.address[0]);
  EXPECT_EQ(1, laid.value);
  EXPECT_EQ(nullptr, laid.parent);
  EXPECT_EQ(nullptr, laid.left);
  EXPECT_EQ(nullptr, laid.right);
  EXPECT_EQ(0U, laid.red);
}

TEST(Layout, AdjKeyHasItsAttributesInOrderThenItsList) {
  Heard heard;
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory(setOf({{"10.0.0.1", true}}, 7));
  key->nexthopIndexIs(0x1122334455667788ULL);
  key->nexthopIndexPublishCounterIs(11);
  key->nexthopIndexDelCounterIs(12);
  key->l2AdjKeyIs(0x8877665544332211ULL);
  key->viasUsedIs("10.0.0.1", true);
  auto const reactor = listen<AdjKeyListener>(key, heard);
  auto const laid = fields::over<AdjKey>(*key);
  EXPECT_EQ(1U, laid.nexthopSet.tree.count);
  EXPECT_EQ(7U, laid.nexthopSet.recursive);
  EXPECT_EQ(0x1122334455667788ULL, laid.nexthopIndex);
  EXPECT_EQ(11U, laid.publishCounter);
  EXPECT_EQ(12U, laid.delCounter);
  EXPECT_EQ(0x8877665544332211ULL, laid.l2AdjKey);
  EXPECT_EQ(1U, laid.viasUsed.count);
  EXPECT_EQ(reactor.ptr(), laid.reactors.head);
}

TEST(Layout, RecordOfAViaHasKeyValueAndLink) {
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory({});
  auto const laid = fields::over<ViasUsed>(*key->newViasUsed("10.0.0.1", true));
  EXPECT_EQ(4U, laid.family);
  EXPECT_EQ(10, laid.address[0]);
  EXPECT_EQ(1, laid.value);
  EXPECT_EQ(nullptr, laid.fwkHmNext);
}

TEST(Layout, ClassMapStatusHasTheLinkBeforeItsAttributes) {
  auto const status = Pbr::statusFactory("status");
  auto const key = Pbr::nexthopIndexAndL2AdjKeyFactory({});
  for (unsigned n : {1U, 2U}) {
    auto const member = status->pbrClassMapStatusIs("web", classMapId(n));
    member->actionTypeIs(Pbr::nexthopAction);
    member->nexthopGroupIs("gold");
    member->nexthopIndexAndL2AdjKeyIs(key);
  }
  auto const laid = fields::over<OfClassMap>(*status->pbrClassMapStatusIterator());
  EXPECT_EQ((++status->pbrClassMapStatusIterator()).member().ptr(), laid.fwkHmNext);
  EXPECT_EQ(2U, laid.actionType);
  EXPECT_NE(nullptr, laid.nexthopGroup);
  EXPECT_EQ(key.ptr(), laid.adjKey);
}

TEST(Layout, StatusHasItsTableBehindTheBase) {
  auto const status = Pbr::statusFactory("status");
  status->pbrClassMapStatusIs("web", classMapId(1));
  EXPECT_EQ(1U, fields::over<Status>(*status).pbrClassMapStatus.count);
}

TEST(Layout, ReactorInterfacesAddNoField) {
  EXPECT_EQ(sizeof(Vyx::Entity::NotifieeConst), sizeof(Pbr::Status::Notifiee));
  EXPECT_EQ(sizeof(Vyx::Entity::NotifieeConst), sizeof(Pbr::PbrClassMapStatus::Notifiee));
  EXPECT_EQ(sizeof(Vyx::Entity::NotifieeConst), sizeof(Pbr::NexthopIndexAndL2AdjKey::Notifiee));
}

} // namespace
