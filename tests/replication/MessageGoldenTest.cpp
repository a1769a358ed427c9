// What each attribute of each type is on the log, byte by byte, and that a reader makes the same of it. A
// frame is told without its length and checksum, which are computed here by other means than the log's own.

#include "OneLog.h"

#include "Pbr/CheckpointAgentStatusSa.h"
#include "Pbr/CheckpointStatusSa.h"
#include "Pbr/ClassMapCheckpointStatusSa.h"
#include "Pbr/ConfigCopyHandlerDirSa.h"
#include "Pbr/ConfigCopyHandlerSa.h"
#include "Pbr/ConfigSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrAclCheckpointStatusSa.h"
#include "Pbr/PbrAclTypeCheckpointStatusSa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PbrCopy.h"
#include "Pbr/PbrFwdActionSa.h"
#include "Pbr/PolicyMapCheckpointStatusSa.h"
#include "Pbr/PolicyMapCopyHandlerSa.h"
#include "Pbr/StatusSa.h"

namespace replication_test {
namespace {

// The first entity on the writer's log, and the next one.
constexpr char const* kMe = "8000000000000003";
constexpr char const* kNext = "8000000000000005";
constexpr char const* kAddress = "00000004 0a000001 00000000 00000000 00000000";
constexpr char const* kId = "00000001 0002 0003";
Kest::UniqueId const id(1, 2, 3);
Acl::UniqueId const aclId(1, 2, 3);
Lomu::IpGenAddr const address("10.0.0.1");

std::string bare(std::string_view hex) {
  std::string digits(hex);
  std::erase(digits, ' ');
  return digits;
}
std::string number(std::size_t value, int digits) {
  char text[17];
  std::snprintf(text, sizeof text, "%0*zx", digits, value);
  return text;
}
std::string text(std::string_view value) {
  auto const* bytes = reinterpret_cast<unsigned char const*>(value.data());
  return number(value.size(), 8) + bare(hexOf({bytes, value.size()}));
}
std::string section(unsigned which, std::string const& body) {
  return number(which, 2) + number(bare(body).size() / 2, 6) + body;
}

class MessageGolden : public TwoEnds {
protected:
  // The first message that is pending is this one of the held entity, and the reader makes the same entity of
  // everything that is.
  void expectFirst(std::string const& attributeFormPayload) {
    expectFrame(kMe + attributeFormPayload, false);
  }
  // The same, where it is the only one.
  void expectOnly(std::string const& attributeFormPayload) { expectFrame(kMe + attributeFormPayload, true); }

  void expectFrame(std::string const& content, bool alone) {
    Bytes const expected = frameOf(content);
    auto const pending = writer.out->pending();
    if (alone) {
      EXPECT_EQ(hexOf(expected), hexOf(pending));
    }
    ASSERT_LE(expected.size(), pending.size());
    EXPECT_EQ(hexOf(expected), hexOf(pending.first(expected.size())));
    pass();
    expectEqual();
  }
};

Ptr<Pbr::PbrFwdAction> fwdAction() { return Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction); }
Ptr<Pbr::PbrClassMapStatus> classMapStatus() { return Pbr::pbrClassMapStatusFactory("web", id); }
Ptr<Pbr::NexthopIndexAndL2AdjKey> resolved() {
  Pbr::NexthopSet set(1, "blue");
  set.nexthopIs(address, true);
  return Pbr::nexthopIndexAndL2AdjKeyFactory(set);
}
template <class X> Ptr<X> named(char const* name) { return Vyx::ptrFromNew(new X(name)); }
Ptr<Pbr::PbrAclTypeCheckpointStatus> aclType() {
  return Vyx::ptrFromNew(new Pbr::PbrAclTypeCheckpointStatus("x", Acl::ipv6));
}

template <class X> class Nondestructing : public MessageGolden {};
struct FwdAction {
  static auto make() { return fwdAction(); }
};
struct SetDscp {
  static auto make() { return Pbr::pbrActionSetDscpFactory("web", id, Pbr::Dscp(46)); }
};
struct Resolved {
  static auto make() { return resolved(); }
};
struct ClassMapStatus {
  static auto make() { return classMapStatus(); }
};
struct AclType {
  static auto make() { return aclType(); }
};
template <class X> struct Named {
  static auto make() { return named<X>("x"); }
};
template <class X> struct Nameless {
  static auto make() { return Vyx::ptrFromNew(new X); }
};
using AllTypes = testing::Types<
    FwdAction, SetDscp, Resolved, ClassMapStatus, AclType, Named<Pbr::PbrActionContainer>, Named<Pbr::Config>,
    Named<Pbr::Status>, Named<Pbr::PbrAclCheckpointStatus>, Named<Pbr::ClassMapCheckpointStatus>,
    Named<Pbr::PolicyMapCheckpointStatus>, Named<Pbr::CheckpointAgentStatus>, Named<Pbr::CheckpointStatus>,
    Named<Pbr::ConfigCopyHandlerDir>, Nameless<Pbr::ConfigCopyHandler>, Nameless<Pbr::PolicyMapCopyHandler>>;
TYPED_TEST_SUITE(Nondestructing, AllTypes);

TYPED_TEST(Nondestructing, IsOneByteOfAttributeSix) {
  auto const left = TypeParam::make();
  auto const right = TypeParam::make();
  this->hold(left, right);
  left->isNondestructingIs(true);
  this->expectOnly("00000006 02 01");
  EXPECT_TRUE(right->isNondestructing());
  left->isNondestructingIs(false);
  this->expectOnly("00000006 02 00");
  EXPECT_FALSE(right->isNondestructing());
}

TYPED_TEST(Nondestructing, TypeHasALogInterface) { EXPECT_TRUE(TypeParam::make()->vyxHasAttrLogInterface()); }

TEST_F(MessageGolden, FwdActionsAttributes) {
  auto const left = fwdAction();
  hold(left, fwdAction());
  left->nexthopIs(address, true);
  expectOnly("00000183 01" + std::string(kAddress) + "01");
  left->nexthopIs(address, false);
  expectOnly("00000183 01" + std::string(kAddress) + "00");
  left->nexthopDel(address);
  expectOnly("fffffe7d 01" + std::string(kAddress));
  left->recursiveIs(true);
  expectOnly("00000184 02 01");
  left->nexthopGroupIs("group");
  expectOnly("00000185 01" + text("group"));
}

TEST_F(MessageGolden, FalseIsWritten) {
  auto const left = fwdAction();
  hold(left, fwdAction());
  left->recursiveIs(true);
  pass();
  left->recursiveIs(false);
  expectOnly("00000184 02 00");
}

TEST_F(MessageGolden, AnEmptyNameIsAMessage) {
  auto const left = fwdAction();
  hold(left, fwdAction());
  left->nexthopGroupIs("group");
  pass();
  left->nexthopGroupIs("");
  expectOnly("00000185 01 00000000");
}

TEST_F(MessageGolden, ContainersChildren) {
  auto const left = named<Pbr::PbrActionContainer>("x");
  hold(left, named<Pbr::PbrActionContainer>("x"));
  left->fwdActionIs("web", id, Pbr::nexthopAction);
  expectFirst("00000102 11" + text("web") + kId + "00000002" + kNext);
  left->fwdActionDel(id);
  expectOnly("fffffefe 01" + std::string(kId));
  left->dscpActionIs("voice", id, Pbr::Dscp(46));
  expectFirst("00000103 11" + text("voice") + kId + "2e" + "8000000000000007");
  left->dscpActionDel(id);
  expectOnly("fffffefd 01" + std::string(kId));
}

TEST_F(MessageGolden, ConfigsAttributes) {
  auto const left = named<Pbr::Config>("x");
  hold(left, named<Pbr::Config>("x"));
  left->pbrUnresolvedNexthopActionDropIs(true);
  expectOnly("00000102 02 01");
  left->bgpPbrRedirectIs(true);
  expectOnly("00000103 02 01");
  left->pbrEnableNonAgingMacAddrIs(false);
  expectOnly("00000104 02 00");
}

TEST_F(MessageGolden, ConfigsChildren) {
  auto const left = named<Pbr::Config>("x");
  hold(left, named<Pbr::Config>("x"));
  left->pbrActionsDel();
  expectOnly("fffffefb 00");
  left->pbrActionsIs("Pbr");
  expectFirst("00000105 11" + text("Pbr") + kNext);
  left->cmapTypeDel();
  expectOnly("fffffefa 00");
  left->cmapTypeIs("Pbr");
  expectFirst("00000106 11" + text("Pbr") + "8000000000000007");
  left->pmapTypeDel();
  expectOnly("fffffef9 00");
  left->pmapTypeIs("Pbr", PolicyMap::mapPbr);
  expectFirst("00000107 11" + text("Pbr") + "00000001" + "8000000000000009");
}

TEST_F(MessageGolden, ResolvedNexthopsAttributes) {
  auto const left = resolved();
  hold(left, resolved());
  left->nexthopIndexIs(Pbr::NexthopIndex(5));
  expectOnly("00000103 01 0000000000000005");
  left->nexthopIndexPublishCounterIs(6);
  expectOnly("00000104 04 00000006");
  left->nexthopIndexDelCounterIs(7);
  expectOnly("00000105 04 00000007");
  left->l2AdjKeyIs(0x0102030405060708);
  expectOnly("00000106 06 0102030405060708");
  left->viasUsedIs(address, true);
  expectOnly("00000107 01" + std::string(kAddress) + "01");
  left->viasUsedDel(address);
  expectOnly("fffffef9 01" + std::string(kAddress));
}

TEST_F(MessageGolden, ClassMapStatussAttributes) {
  auto const left = classMapStatus();
  hold(left, classMapStatus());
  left->actionTypeIs(Pbr::nexthopGroupAction);
  expectOnly("00000182 01 00000003");
  left->nexthopGroupIs("ab");
  expectOnly("00000183 01 01 6162");
  left->nexthopGroupIs("");
  expectOnly("00000183 01");
}

TEST_F(MessageGolden, ReferenceToWhatTheLogKnowsIsItsNumber) {
  auto const left = classMapStatus();
  auto const right = classMapStatus();
  hold(left, right);
  auto const leftSet = resolved();
  auto const rightSet = resolved();
  writer.join(leftSet)->flagIs(StreamAdapter::childAnnouncedFlag, true);
  reader.joinAs(rightSet, writer.adapter(leftSet)->entityId());
  left->nexthopIndexAndL2AdjKeyIs(leftSet);
  EXPECT_EQ(hexOf(frameOf(kMe + std::string("00000184 01") + kNext)), hexOf(writer.out->pending()));
  pass();
  EXPECT_EQ(rightSet, right->nexthopIndexAndL2AdjKey());
  left->nexthopIndexAndL2AdjKeyIs(nullptr);
  expectOnly("00000184 01 0000000000000000");
}

TEST_F(MessageGolden, PolicyMapCopyHandlersConfig) {
  Ptr<Pbr::PolicyMapCopyHandler> const left = Pbr::policyMapCopyHandlerFactory();
  Ptr<Pbr::PolicyMapCopyHandler> const right = Pbr::policyMapCopyHandlerFactory();
  hold(left, right);
  auto const leftConfig = named<Pbr::Config>("x");
  auto const rightConfig = named<Pbr::Config>("x");
  writer.join(leftConfig)->flagIs(StreamAdapter::childAnnouncedFlag, true);
  reader.joinAs(rightConfig, writer.adapter(leftConfig)->entityId());
  left->configIs(leftConfig);
  EXPECT_EQ(hexOf(frameOf(kMe + std::string("00000282 01") + kNext)), hexOf(writer.out->pending()));
  pass();
  EXPECT_EQ(rightConfig, right->config());
}

TEST_F(MessageGolden, StatussClassMap) {
  auto const left = named<Pbr::Status>("x");
  hold(left, named<Pbr::Status>("x"));
  left->pbrClassMapStatusIs("web", id);
  expectFirst("00000182 11" + text("web") + kId + kNext);
  left->pbrClassMapStatusDel(id);
  expectOnly("fffffe7e 01" + std::string(kId));
}

TEST_F(MessageGolden, AclCheckpointsAttributes) {
  auto const left = named<Pbr::PbrAclCheckpointStatus>("x");
  hold(left, named<Pbr::PbrAclCheckpointStatus>("x"));
  left->ruleStatusIs(aclId, Acl::RuleCheckpointStatus(1, 2));
  expectOnly("00000102 01" + std::string(kId) + "00000001 00000002");
  left->ruleStatusDel(aclId);
  expectOnly("fffffefe 01" + std::string(kId));
  left->timestampIs(1.5);
  expectOnly("00000103 01 3ff8000000000000");
  left->versionIs(aclId);
  expectOnly("00000104 01" + std::string(kId));
}

TEST_F(MessageGolden, AclTypeCheckpointsAcl) {
  auto const left = aclType();
  hold(left, aclType());
  left->aclIs("in");
  expectFirst("00000103 11" + text("in") + kNext);
  left->aclDel("in");
  expectOnly("fffffefd 01" + text("in"));
}

TEST_F(MessageGolden, ClassMapCheckpointsAttributes) {
  auto const left = named<Pbr::ClassMapCheckpointStatus>("x");
  hold(left, named<Pbr::ClassMapCheckpointStatus>("x"));
  left->pktMatchIs(9);
  expectOnly("00000102 06 0000000000000009");
  left->versionIs(id);
  expectOnly("00000103 01" + std::string(kId));
  left->aclTypeCkptStatusIs(Acl::ipv6);
  expectFirst("00000104 11 00000001" + std::string(kNext));
  left->aclTypeCkptStatusDel(Acl::ipv6);
  expectOnly("fffffefc 01 00000001");
}

TEST_F(MessageGolden, PolicyMapCheckpointsAttributes) {
  auto const left = named<Pbr::PolicyMapCheckpointStatus>("x");
  hold(left, named<Pbr::PolicyMapCheckpointStatus>("x"));
  left->cmapCkptStatusIs("web");
  expectFirst("00000102 11" + text("web") + kNext);
  left->cmapCkptStatusDel("web");
  expectOnly("fffffefe 01" + text("web"));
  left->ckptTimestampIs(1.5);
  expectOnly("00000103 01 3ff8000000000000");
}

TEST_F(MessageGolden, CheckpointAgentsPolicyMap) {
  auto const left = named<Pbr::CheckpointAgentStatus>("x");
  hold(left, named<Pbr::CheckpointAgentStatus>("x"));
  left->pmapCkptStatusIs("map");
  expectFirst("00000102 11" + text("map") + kNext);
  left->pmapCkptStatusDel("map");
  expectOnly("fffffefe 01" + text("map"));
}

TEST_F(MessageGolden, CheckpointsAgent) {
  auto const left = named<Pbr::CheckpointStatus>("x");
  hold(left, named<Pbr::CheckpointStatus>("x"));
  left->checkpointAgentStatusIs("agent");
  expectFirst("00000102 11" + text("agent") + kNext);
  left->checkpointAgentStatusDel("agent");
  expectOnly("fffffefe 01" + text("agent"));
}

TEST_F(MessageGolden, HandlerDirsHandler) {
  auto const left = named<Pbr::ConfigCopyHandlerDir>("x");
  hold(left, named<Pbr::ConfigCopyHandlerDir>("x"));
  left->configHandlerDel();
  writer.sent();
  left->configHandlerIs();
  expectFirst("00000102 11" + std::string(kNext));
  left->configHandlerDel();
  expectOnly("fffffefe 00");
}

// Orphans.
class OrphanGolden : public testing::Test {
protected:
  // The announcement is that of these types and values; a reader makes the same entity of it.
  template <class X>
  void expectOrphan(Ptr<X> const& entity, std::initializer_list<char const*> types,
                    std::string const& values) {
    std::string names;
    for (char const* type : types) names += text(type);
    Bytes const expected =
        frameOf("0000000000000001 00000088 01" + section(1, names) + section(3, values) + section(4, kMe));
    writer.join(entity)->doSerializeOrphan();
    auto const pending = writer.out->pending();
    ASSERT_LE(expected.size(), pending.size());
    EXPECT_EQ(hexOf(expected), hexOf(pending.first(expected.size())));
    reader.receive(writer.sent());
    Ptr<Vyx::Entity> const made = readOrphan();
    reader.apply();
    EXPECT_EQ(treeText(*entity), treeText(*made));
  }

  Ptr<Vyx::Entity> readOrphan() {
    In& in = *reader.in;
    EXPECT_TRUE(in.nextMessage());
    in.sectionIs(Out::kTypeNames);
    auto const* type = Vyx::VyxType::typeByName(Name(in.nextString()));
    in.sectionEnd();
    in.sectionIs(Out::kConstructorValues);
    Ptr<Vyx::Entity> const made = type->newEntity(reader.in, followerFlags(), 0, nullptr);
    EXPECT_EQ(0U, in.remaining());
    in.sectionEnd();
    in.sectionIs(Out::kEntityIdSection);
    reader.joinAs(made, in.nextEntityId());
    in.sectionEnd();
    in.expectEnd();
    return made;
  }

  LogEnd writer{Demuxer::accepting};
  LogEnd reader{Demuxer::connecting};
};

TEST_F(OrphanGolden, Actions) {
  expectOrphan(fwdAction(), {"Pbr::PbrFwdAction", "PolicyMap::Action"}, text("web") + kId + "00000002");
}
TEST_F(OrphanGolden, SetDscp) {
  expectOrphan(Pbr::pbrActionSetDscpFactory("web", id, Pbr::Dscp(46)),
               {"Pbr::PbrActionSetDscp", "PolicyMap::Action"}, text("web") + kId + "2e");
}
TEST_F(OrphanGolden, Container) {
  expectOrphan(named<Pbr::PbrActionContainer>("x"), {"Pbr::PbrActionContainer"}, text("x"));
}
TEST_F(OrphanGolden, Config) { expectOrphan(named<Pbr::Config>("x"), {"Pbr::Config"}, text("x")); }
TEST_F(OrphanGolden, ResolvedNexthop) {
  expectOrphan(resolved(), {"Pbr::NexthopIndexAndL2AdjKey"},
               std::string(kAddress) + "01" + "00000000 00000000 00000000 00000000 00000000" + "00000001" +
                   text("blue"));
}
TEST_F(OrphanGolden, EmptyNexthopSetIsTheEndMarkAlone) {
  expectOrphan(Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet(0, "")), {"Pbr::NexthopIndexAndL2AdjKey"},
               std::string("00000000 00000000 00000000 00000000 00000000") + "00000000" + text(""));
}
TEST_F(OrphanGolden, ClassMapStatus) {
  expectOrphan(classMapStatus(), {"Pbr::PbrClassMapStatus", "PolicyMap::ClassMapStatus"}, text("web") + kId);
}
TEST_F(OrphanGolden, Status) {
  expectOrphan(named<Pbr::Status>("x"), {"Pbr::Status", "PolicyMap::PolicyMapTypeStatus"}, text("x"));
}
TEST_F(OrphanGolden, AclCheckpoint) {
  expectOrphan(named<Pbr::PbrAclCheckpointStatus>("x"), {"Pbr::PbrAclCheckpointStatus"}, text("x"));
}
TEST_F(OrphanGolden, AclTypeCheckpoint) {
  expectOrphan(aclType(), {"Pbr::PbrAclTypeCheckpointStatus"}, text("x") + "00000001");
}
TEST_F(OrphanGolden, ClassMapCheckpoint) {
  expectOrphan(named<Pbr::ClassMapCheckpointStatus>("x"), {"Pbr::ClassMapCheckpointStatus"}, text("x"));
}
TEST_F(OrphanGolden, PolicyMapCheckpoint) {
  expectOrphan(named<Pbr::PolicyMapCheckpointStatus>("x"), {"Pbr::PolicyMapCheckpointStatus"}, text("x"));
}
TEST_F(OrphanGolden, CheckpointAgent) {
  expectOrphan(named<Pbr::CheckpointAgentStatus>("x"), {"Pbr::CheckpointAgentStatus"}, text("x"));
}
TEST_F(OrphanGolden, Checkpoint) {
  expectOrphan(named<Pbr::CheckpointStatus>("x"), {"Pbr::CheckpointStatus"}, text("x"));
}
TEST_F(OrphanGolden, PolicyMapCopyHandler) {
  expectOrphan(Pbr::policyMapCopyHandlerFactory(),
               {"Pbr::PolicyMapCopyHandler", "PolicyMap::PolicyMapCopyHandler",
                "Cli::Session::EntityCopyGlobalSessionHandler", "Cli::Session::EntityCopyHandler"},
               "");
}
TEST_F(OrphanGolden, ConfigCopyHandler) {
  expectOrphan(Vyx::ptrFromNew(new Pbr::ConfigCopyHandler),
               {"Pbr::ConfigCopyHandler", "Cli::Session::EntityCopyGlobalSessionHandler",
                "Cli::Session::EntityCopyHandler"},
               "");
}
TEST_F(OrphanGolden, HandlerDir) {
  expectOrphan(named<Pbr::ConfigCopyHandlerDir>("x"), {"Pbr::ConfigCopyHandlerDir"}, text("x"));
}

} // namespace
} // namespace replication_test
