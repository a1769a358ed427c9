// An exchange between two processes that is the same each time, byte for byte in either direction.
//
// ORDER: the reader mounts three roots, the configuration for writing. Once it has them the server makes its
// steps, one a turn, and the reader its edits, of which the last one asks for the server's answer. The answer
// comes behind all steps.

#pragma once

#include "MeteredTransport.h"
#include "Told.h"

#include "Vyx/NboAttrLog/Listener.h"
#include "replication/Edits.h"
#include "replication/TwoProcesses.h"

namespace processes_test {

using namespace Vyx::NboAttrLog;
using replication_test::Trees;
using Vyx::Name;
using Vyx::Ptr;

constexpr Duration kLimit = std::chrono::seconds(20); // No test waits longer for one thing.
constexpr char const* kPaths[] = {"pbr/config", "pbr/status", "pbr/checkpoint"};

void watch(Told& told, Trees const& trees);

// What the server holds before anybody comes.
void begin(Trees const& trees);
constexpr unsigned kSteps = 16;
void step(Trees const& trees, unsigned number);
// The reader's. Each is one message, about an attribute that no step touches.
constexpr unsigned kEdits = 5;
constexpr char kEdited[] = "intfFallback";
void edits(Pbr::Config& config);
bool isAsked(Pbr::Config const& config);
void answer(Pbr::Config& config);
bool isAnswered(Pbr::Config const& config);

// What all holds when the exchange is over.
struct Outcome {
  Outcome();

  Trees trees = replication_test::newTrees();
  Told told;
};

class ScriptServer {
public:
  // Listens from now on. One that `isLate` has made its steps before anybody comes.
  // The meter is that of its first peer.
  ScriptServer(std::string const& socket, bool isLate, std::shared_ptr<Meter> meter = {});

  std::size_t living() const;
  bool hasServed(std::size_t peers) const { return peers_.size() == peers && living() == 0; }
  std::string text() const { return textOf(trees); }

  Loop loop;
  Trees trees = replication_test::newTrees();
  Told told;

private:
  void take(std::unique_ptr<Transport> transport);
  void goOn();

  unsigned mounts_ = 0;
  unsigned steps_ = 0;
  bool isStarted_ = false;
  std::shared_ptr<Meter> meter_;
  Ptr<Roots> roots_;
  Ptr<Listener> listener_;
  std::vector<Ptr<Peer>> peers_;
};

class ScriptReader : public replication_test::Process, private Vyx::Dir::Watcher {
public:
  ScriptReader() : Process("reader") { roots->dir()->watcherIs(this); }
  ~ScriptReader();

  // A new connection, once the server is there.
  void connect(std::string const& socket, std::shared_ptr<Meter> const& meter);
  void turn();
  // Turns until the exchange is over or the connection is. RETURNS whether it is the former.
  bool finish();
  // Turns until the connection is over. RETURNS whether it is, in time.
  bool loseServer();
  std::string text() const { return textOf(copy()); }

  Loop loop;
  Told told;

private:
  Trees copy() const;
  void onSynced(Peer&, Name const&) override { ++synced_; }
  void onState(Name const& path, Vyx::Dir::State state) override;
  void letGo();

  unsigned synced_ = 0;
  bool hasEdited_ = false;
};

// Runs one, in a process of its own, until its meter is spent, and kills it then.
void serveUntilSpent(std::string const& socket, std::shared_ptr<Meter> const& meter);
void readUntilSpent(std::string const& socket, std::shared_ptr<Meter> const& meter);

} // namespace processes_test
