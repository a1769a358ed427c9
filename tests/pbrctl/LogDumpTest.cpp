#include "Agent.h"
#include "Program.h"

#include "Pbr/Pbr.h"

#include "pbrctl/Attributes.h"
#include "pbrctl/LogValues.h"
#include "pbrctl/Served.h"

#include <csignal>
#include <fstream>
#include <set>

namespace Pbrctl {
namespace {

constexpr char const* kText =
    "class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\nset nexthop 10.0.0.1\nbgp-redirect\n";

// What a server sends to a watcher.
class LogDumpTest : public testing::Test {
protected:
  LogDumpTest() {
    Program server({"serve", "--socket", socket(), "--config", config_.path()});
    server.waitFor("serving");
    Program watcher({"watch", "config", "--socket", socket(), "--record", recording()});
    watcher.waitFor("end ");
    EXPECT_EQ(0, watcher.end(SIGTERM));
  }
  std::string socket() const { return place_.path() + ".sock"; }
  std::string recording() const { return place_.path() + ".log"; }

  TestFile place_{"log", ""};
  TestFile config_{"a.conf", kText};
};

TEST_F(LogDumpTest, NamesTypesAttributesAndValues) {
  Ran const ran = run({"log", "dump", recording()});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  EXPECT_EQ(0u, ran.out.find("00000000  56 79 78 4c 6f 67 0d 0a   magic")) << ran.out;
  for (char const* const part :
       {"root)", "'pbr/config'", "Pbr::Config", "(bgpPbrRedirect)", "(Pbr::PbrFwdAction)",
        "nexthopAction (2)   (Pbr::PbrActionType)", "10.0.0.1   (Lomu::IpGenAddr)",
        "live: the other side has everything", "ip any any dscp 1"})
    EXPECT_NE(std::string::npos, ran.out.find(part)) << part << " isn't in\n" << ran.out;
  EXPECT_EQ(std::string::npos, ran.out.find("unknown")) << ran.out;
}

TEST_F(LogDumpTest, EveryByteIsShownOnce) {
  Ran const ran = run({"log", "dump", recording()});
  std::size_t next = 0;
  std::istringstream lines(ran.out);
  std::string last;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    std::size_t const offset = std::stoul(line.substr(0, 8), nullptr, 16);
    EXPECT_GT(offset + 1, next) << line;
    next = offset;
    last = line;
  }
  EXPECT_NE(std::string::npos, last.find("checksum"));
  EXPECT_EQ(contentOf(recording()).size(), next + 4);
}

// Its text is longer than a message.
TEST_F(LogDumpTest, ShowsTheTextsOfAStatusPieceByPiece) {
  Program server({"serve", "--socket", socket()});
  server.waitFor("serving");
  auto const status = Pbr::statusFactory("pbr");
  status->statusIs("edge")->messageIs(Vyx::String8(std::string(40000, 'm')));
  status->statusIs("core")->messageIs("all is well");
  Agent agent({Vyx::NboAttrLog::UnixAddress{socket()}, std::chrono::seconds(20)}, "pbr/status", status);
  EXPECT_TRUE(agent.settle());
  Program watcher({"watch", "status", "--socket", socket(), "--record", recording()});
  watcher.waitFor("end ");
  EXPECT_EQ(0, watcher.end(SIGTERM));
  Ran const ran = run({"log", "dump", recording()});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  for (char const* const part :
       {"(the first, more follow)", "(goes on, the last)", "(the first, the last)", "  'all is well'\n"})
    EXPECT_NE(std::string::npos, ran.out.find(part)) << part << " isn't in\n" << ran.out;
  EXPECT_EQ(std::string::npos, ran.out.find("unknown")) << ran.out;
}

// All types that the values of a tree with such a root have.
void addValueTypes(Vyx::VyxType const& type, std::set<Vyx::VyxType const*>& types,
                   std::set<Vyx::VyxType const*>& seen) {
  if (!seen.insert(&type).second) return;
  for (Vyx::Name const& name : type.constructorArgTypeQ()) types.insert(Vyx::VyxType::typeByName(name));
  for (Vyx::VyxType::AttributeQIteratorConst at(type); at; ++at) {
    if (!isState(*at)) continue;
    if (isKeyed(*at)) types.insert(&keyTypeOf(*at));
    if (holdsEntities(*at))
      addValueTypes(*at->valueType(), types, seen);
    else
      types.insert(at->valueType());
  }
}

// Reading itself fails, since there is no message.
TEST(LogValues, EveryTypeThatCrossesALogCanBeRead) {
  std::set<Vyx::VyxType const*> types;
  std::set<Vyx::VyxType const*> seen;
  for (ServedRoot const& root : servedRoots()) addValueTypes(*root.type(), types, seen);
  EXPECT_LT(20u, types.size());
  Vyx::NboAttrLog::In in;
  for (Vyx::VyxType const* type : types) {
    ASSERT_NE(nullptr, type);
    EXPECT_THROW(static_cast<void>(readLogValue(*type, in)), Vyx::Exception) << type->fullTypeName();
  }
}

TEST_F(LogDumpTest, TellsWhereBytesAreWrong) {
  std::string bytes = contentOf(recording());
  TestFile const cut("cut.log", bytes.substr(0, bytes.size() - 1));
  Ran ran = run({"log", "dump", cut.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_NE(std::string::npos, ran.err.find("the recording ends within a message")) << ran.err;
  bytes[20] = static_cast<char>(bytes[20] ^ 1);
  TestFile const bad("bad.log", bytes);
  ran = run({"log", "dump", bad.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ(0u, ran.err.find(bad.path() + ": error: at byte 16: checksum")) << ran.err;
}

TEST(LogDump, RefusesWhatIsNoRecording) {
  TestFile const file("a.log", "GET / HTTP/1.0\r\n\r\n");
  Ran const ran = run({"log", "dump", file.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_NE(std::string::npos, ran.err.find("garbage instead of a hello")) << ran.err;
  EXPECT_EQ(1, run({"log", "dump", file.path() + ".gone"}).exitCode);
  EXPECT_EQ(2, run({"log"}).exitCode);
}

} // namespace
} // namespace Pbrctl
