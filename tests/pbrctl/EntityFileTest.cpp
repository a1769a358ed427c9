#include "Running.h"

#include "Pbr/Pbr.h"
#include "pbrctl/EntityJson.h"
#include "pbrctl/EntityReader.h"
#include "support/TreeText.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace Pbrctl {
namespace {

using Json = nlohmann::json;

constexpr char const* kId = "00000001-0002-0003";
constexpr char const* kOther = "00000004-0005-0006";

Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey> nexthopsOf(char const* address) {
  Pbr::NexthopSet set(1, L3::VrfName("blue"));
  set.nexthopIs(Lomu::IpGenAddr(address), true);
  auto const nexthops = Pbr::nexthopIndexAndL2AdjKeyFactory(set);
  nexthops->nexthopIndexIs(17);
  nexthops->l2AdjKeyIs(0xfffffffffffffffe);
  nexthops->viasUsedIs(Lomu::IpGenAddr(address), false);
  return nexthops;
}

// Two class maps that share their next hops, and everything else that a status has.
Vyx::Ptr<Pbr::Status> fullStatus() {
  auto const status = Pbr::statusFactory("pbr");
  auto const nexthops = nexthopsOf("10.0.0.1");
  status->pbrClassMapStatusIs("VOICE", Kest::UniqueId(1, 2, 3))->nexthopIndexAndL2AdjKeyIs(nexthops);
  auto const other = status->pbrClassMapStatusIs("WEB", Kest::UniqueId(4, 5, 6));
  other->nexthopIndexAndL2AdjKeyIs(nexthops);
  other->nexthopGroupIs("two words");
  other->matchIs(PolicyMap::matchIpAccessGroup)->rulesIs(5);
  status->typeIs(PolicyMap::mapPbr);
  status->statusIs("P")->intfIs(Lomu::IntfId("e1"), true);
  status->intfDisallowedIs(PolicyMap::IntfErrorKey(Lomu::IntfId("e1"), PolicyMap::intfNotRouted), "no route");
  status->resultIs(Kest::UniqueId(7, 8, 9), PolicyMap::applied);
  status->classMapStatusIs("G", Kest::UniqueId(7, 8, 9))->ruleStatusIs(PolicyMap::applyFailed);
  return status;
}

Vyx::Ptr<Pbr::CheckpointStatus> fullCheckpoint() {
  auto const checkpoint = Pbr::checkpointStatusFactory("pbr");
  auto const policyMap = checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("P");
  policyMap->ckptTimestampIs(1700000000.25);
  auto const classMap = policyMap->cmapCkptStatusIs("C");
  classMap->pktMatchIs(0xffffffffffffffff);
  auto const acl = classMap->aclTypeCkptStatusIs(Acl::AclType{})->aclIs("A");
  acl->timestampIs(-1e300);
  acl->ruleStatusIs(Acl::UniqueId(1, 2, 3), Acl::RuleCheckpointStatus());
  checkpoint->checkpointAgentStatusIs("empty");
  return checkpoint;
}

class EntityFileTest : public testing::Test {
protected:
  static std::string written(Vyx::Entity const& root) { return entityDocument(root).dump(1); }
  static Vyx::Ptr<Vyx::Entity> readBack(std::string const& text, Vyx::VyxType const& type) {
    Diagnostics diagnostics("a.json");
    auto const root = readEntityDocument(SourceText("a.json", text), type, diagnostics);
    for (auto const& e : diagnostics.sorted()) ADD_FAILURE() << e.text;
    return root;
  }
  // What the tool says of a status, changed as asked.
  template <class Change> static std::string refusal(Change change) {
    Json document = entityDocument(*fullStatus());
    change(document);
    TestFile const file("a.json", document.dump());
    Ran const ran = run({"show", file.path(), "--as", "status"});
    EXPECT_EQ(1, ran.exitCode);
    EXPECT_EQ("", ran.out);
    EXPECT_EQ(0u, ran.err.find(file.path() + ":1:")) << ran.err;
    return ran.err.substr(std::min(ran.err.find("error: "), ran.err.size()));
  }
  static std::string differences(Vyx::Entity const& before, Vyx::Entity const& after) {
    TestFile const first("a.json", written(before));
    TestFile const second("b.json", written(after));
    return run({"diff", first.path(), second.path(), "--as", "status"}).out;
  }
  static Json& classMap(Json& document) { return document["tree"]["pbrClassMapStatus"][kId]; }
};

TEST_F(EntityFileTest, AStatusReadsBackEqual) {
  auto const status = fullStatus();
  auto const root = readBack(written(*status), *status->fwkType());
  ASSERT_TRUE(root);
  EXPECT_EQ(support::treeText(*status), support::treeText(*root));
  EXPECT_EQ(written(*status), written(*root));
}

TEST_F(EntityFileTest, ACheckpointReadsBackEqual) {
  auto const checkpoint = fullCheckpoint();
  auto const root = readBack(written(*checkpoint), *checkpoint->fwkType());
  ASSERT_TRUE(root);
  EXPECT_EQ(support::treeText(*checkpoint), support::treeText(*root));
  EXPECT_EQ(written(*checkpoint), written(*root));
}

TEST_F(EntityFileTest, AConfigurationsOwnValuesReadBackToo) {
  auto const config = Pbr::configFactory("pbr");
  config->bgpPbrRedirectIs(true);
  config->pmapType()->pmapIs("P")->subconfigIs(Kest::UniqueId(1, 2, 3))->classActionIs("C")->sequenceIs(7);
  config->pmapType()->intfIs(Lomu::IntfId("e"), "P");
  auto const root = readBack(written(*config), *config->fwkType());
  ASSERT_TRUE(root);
  EXPECT_EQ(support::treeText(*config), support::treeText(*root));
}

TEST_F(EntityFileTest, WhatIsSharedStaysShared) {
  auto const status = fullStatus();
  EXPECT_EQ(1u, entityDocument(*status)["entities"].size());
  auto const root = Vyx::dynamicPtrCast<Pbr::Status>(readBack(written(*status), *status->fwkType()));
  auto const nexthops = root->pbrClassMapStatus(Kest::UniqueId(1, 2, 3))->nexthopIndexAndL2AdjKey();
  ASSERT_TRUE(nexthops);
  EXPECT_EQ(nexthops, root->pbrClassMapStatus(Kest::UniqueId(4, 5, 6))->nexthopIndexAndL2AdjKey());
  EXPECT_EQ("blue", std::string(nexthops->nexthopSet().vrfName().stringValue().view()));
  EXPECT_EQ(1u, nexthops->nexthopSet().recursive());
}

TEST_F(EntityFileTest, ShowsTables) {
  TestFile const file("a.json", written(*fullCheckpoint()));
  Ran const ran = run({"show", file.path(), "--as", "checkpoint"});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  EXPECT_EQ(0u, ran.out.find("Pbr::CheckpointStatus pbr\n  checkpointAgentStatus\n    agent\n")) << ran.out;
  EXPECT_NE(std::string::npos, ran.out.find("ckptTimestamp  1700000000.25\n")) << ran.out;
  EXPECT_EQ(written(*fullCheckpoint()),
            Json::parse(run({"show", file.path(), "--as", "checkpoint", "--json"}).out).dump(1));
}

TEST_F(EntityFileTest, GetAndSetByPath) {
  TestFile const file("a.json", written(*fullStatus()));
  std::string const path = std::string("pbrClassMapStatus[") + kId + "].actionType";
  EXPECT_EQ("'noAction'\n", run({"get", file.path(), path, "--as", "status"}).out);
  Ran const ran = run({"set", file.path(), path, "dropAction", "--as", "status"});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  Json document = Json::parse(ran.out);
  EXPECT_EQ("dropAction", classMap(document)["actionType"]);
  EXPECT_EQ(1, run({"set", file.path(), path, "flyAction", "--as", "status"}).exitCode);
  EXPECT_EQ(written(*fullStatus()), contentOf(file.path()));
}

TEST_F(EntityFileTest, ASetOfNoNumberIsRefused) {
  TestFile const file("a.json", written(*fullCheckpoint()));
  Ran const ran = run({"set", file.path(), "checkpointAgentStatus[agent].pmapCkptStatus[P].ckptTimestamp",
                       "nan", "--as", "checkpoint"});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("", ran.out);
}

TEST_F(EntityFileTest, DiffTellsWhatDiffers) {
  auto const changed = fullStatus();
  changed->pbrClassMapStatus(Kest::UniqueId(1, 2, 3))->actionTypeIs(Pbr::dropAction);
  changed->pbrClassMapStatusDel(Kest::UniqueId(4, 5, 6));
  TestFile const before("a.json", written(*fullStatus()));
  TestFile const after("b.json", written(*changed));
  Ran const ran = run({"diff", before.path(), after.path(), "--as", "status"});
  std::string const path = std::string("pbrClassMapStatus[") + kId + "].actionType = ";
  EXPECT_EQ(0u, ran.out.find("- " + path + "\"noAction\"\n+ " + path + "\"dropAction\"\n")) << ran.out;
  EXPECT_NE(std::string::npos, ran.out.find(std::string("- pbrClassMapStatus[") + kOther + "]\n"));
  EXPECT_EQ("pbrctl: no differences\n", run({"diff", before.path(), before.path(), "--as", "status"}).err);
  auto const json = Json::parse(run({"diff", before.path(), after.path(), "--as", "status", "--json"}).out);
  EXPECT_EQ(false, json["equal"]);
}

// A class map in front takes the first number, and the number of what the others refer to is another then.
TEST_F(EntityFileTest, DiffComparesWhatIsReferredTo) {
  auto const changed = fullStatus();
  changed->pbrClassMapStatusIs("FIRST", Kest::UniqueId(0, 0, 1))
      ->nexthopIndexAndL2AdjKeyIs(nexthopsOf("10.0.0.9"));
  std::string const out = differences(*fullStatus(), *changed);
  EXPECT_EQ(std::string::npos, out.find("- ")) << out;
  EXPECT_EQ(std::string::npos, out.find(kId)) << out;
  EXPECT_NE(std::string::npos, out.find(".nexthopIndexAndL2AdjKey.nexthopIndex = \"17\"\n")) << out;
}

TEST_F(EntityFileTest, DiffTellsAChangeOfASharedEntityAtEachReference) {
  auto const changed = fullStatus();
  auto const map = changed->pbrClassMapStatus(Kest::UniqueId(1, 2, 3));
  const_cast<Pbr::NexthopIndexAndL2AdjKey&>(*map->nexthopIndexAndL2AdjKey()).l2AdjKeyIs(5);
  std::string const out = differences(*fullStatus(), *changed);
  for (char const* const id : {kId, kOther}) {
    std::string const path = std::string("pbrClassMapStatus[") + id + "].nexthopIndexAndL2AdjKey.l2AdjKey = ";
    EXPECT_NE(std::string::npos, out.find("- " + path + "18446744073709551614\n+ " + path + "5\n")) << out;
  }
  EXPECT_EQ(4, std::count(out.begin(), out.end(), '\n')) << out;
}

TEST_F(EntityFileTest, DiffTellsTwoOfEqualContentFromOne) {
  auto const changed = fullStatus();
  changed->pbrClassMapStatus(Kest::UniqueId(4, 5, 6))->nexthopIndexAndL2AdjKeyIs(nexthopsOf("10.0.0.1"));
  std::string const path = std::string("pbrClassMapStatus[") + kOther + "].nexthopIndexAndL2AdjKey = ";
  std::string const type = "\"Pbr::NexthopIndexAndL2AdjKey\"";
  EXPECT_EQ("- " + path + type + ", the same as pbrClassMapStatus[" + kId + "].nexthopIndexAndL2AdjKey\n+ " +
                path + type + "\n",
            differences(*fullStatus(), *changed));
}

TEST_F(EntityFileTest, RefusesUnknownEnumerators) {
  std::string const words = refusal([](Json& d) { classMap(d)["actionType"] = "flyAction"; });
  EXPECT_EQ(0u, words.find("error: tree.pbrClassMapStatus['00000001-0002-0003'].actionType: ")) << words;
}

TEST_F(EntityFileTest, RefusesAnEntityOfAnotherType) {
  std::string const words = refusal([](Json& d) {
    d["entities"].push_back({{"type", "Pbr::CheckpointStatus"}, {"name", "x"}});
    classMap(d)["nexthopIndexAndL2AdjKey"] = 2;
  });
  EXPECT_NE(std::string::npos, words.find("entity 2 is a Pbr::CheckpointStatus")) << words;
}

TEST_F(EntityFileTest, RefusesANumberWithoutEntity) {
  for (int const number : {0, 2})
    EXPECT_NE(std::string::npos, refusal([&](Json& d) {
                                   classMap(d)["nexthopIndexAndL2AdjKey"] = number;
                                 }).find("there is no entity " + std::to_string(number)));
}

TEST_F(EntityFileTest, RefusesALongVrf) {
  auto const vrf = [](std::size_t bytes) {
    return [=](Json& d) { d["entities"][0]["nexthopSet"]["vrfName"] = std::string(bytes, 'v'); };
  };
  EXPECT_NE(std::string::npos, refusal(vrf(101)).find("entities[0].nexthopSet.vrfName: "));
  Json document = entityDocument(*fullStatus());
  vrf(100)(document);
  TestFile const file("a.json", document.dump());
  EXPECT_EQ(0, run({"show", file.path(), "--as", "status"}).exitCode);
}

TEST_F(EntityFileTest, RefusesNamesWithBlanks) {
  refusal([](Json& d) { d["tree"]["status"]["two words"] = Json::object(); });
  refusal([](Json& d) { d["tree"]["status"][std::string(101, 'n')] = Json::object(); });
  refusal([](Json& d) { d["name"] = "two words"; });
}

TEST_F(EntityFileTest, RefusesWhatIsMissingOrUnknown) {
  EXPECT_NE(std::string::npos, refusal([](Json& d) {
                                 classMap(d).erase("className");
                               }).find("the member 'className' is missing"));
  EXPECT_NE(std::string::npos,
            refusal([](Json& d) { classMap(d)["colour"] = 1; }).find("has no attribute 'colour'"));
  EXPECT_NE(std::string::npos, refusal([](Json& d) { classMap(d)["id"] = kId; }).find("the key says this"));
  refusal([](Json& d) { d.erase("version"); });
  refusal([](Json& d) { d["version"] = 2; });
  refusal([](Json& d) { d["type"] = "Pbr::CheckpointStatus"; });
  refusal([](Json& d) { d["tree"]["pbrClassMapStatus"]["no id"] = {{"className", "C"}}; });
}

TEST_F(EntityFileTest, RefusesValuesOfAnotherType) {
  refusal([](Json& d) { d["tree"]["initialized"] = "true"; });
  refusal([](Json& d) { d["entities"][0]["l2AdjKey"] = -1; });
  refusal([](Json& d) { d["entities"][0]["l2AdjKey"] = "7"; });
  refusal([](Json& d) { d["entities"][0]["nexthopIndexPublishCounter"] = 4294967296u * 1ull; });
  refusal([](Json& d) { d["entities"][0]["nexthopSet"] = "10.0.0.1"; });
  refusal([](Json& d) { d["tree"]["status"] = Json::array(); });
}

TEST_F(EntityFileTest, RefusesTimeStampsThatAreNoNumbers) {
  for (char const* const bad : {"\"nan\"", "\"1.5\"", "1e999", "null"}) {
    std::string text = entityDocument(*fullCheckpoint()).dump();
    std::string const good = "1700000000.25";
    text.replace(text.find(good), good.size(), bad);
    TestFile const file("a.json", text);
    Ran const ran = run({"show", file.path(), "--as", "checkpoint"});
    EXPECT_EQ(1, ran.exitCode) << bad;
    EXPECT_EQ("", ran.out);
  }
  auto const checkpoint = fullCheckpoint();
  checkpoint->checkpointAgentStatus("agent")->pmapCkptStatus("P")->ckptTimestampIs(std::nan(""));
  EXPECT_NE(std::string::npos, written(*checkpoint).find("\"ckptTimestamp\": \"nan\""));
}

} // namespace
} // namespace Pbrctl
