#include "Script.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/Connector.h"

#include <csignal>
#include <thread>

namespace processes_test {

namespace {

Kest::UniqueId const kWeb(1, 2, 3), kVoice(4, 5, 6), kMap(7, 8, 9), kOther(10, 11, 12);
Lomu::IpGenAddr const kFirst("10.0.0.1"), kSecond("2001:db8::2");
Lomu::IntfId const kUplink("Ethernet1"), kLan("Ethernet2"), kAsks("Ethernet9");

Ptr<Pbr::NexthopIndexAndL2AdjKey> sharedNexthops(unsigned number, Lomu::IpGenAddr const& address) {
  Pbr::NexthopSet set(number, L3::VrfName("default"));
  set.nexthopIs(address, true);
  auto const shared = Pbr::nexthopIndexAndL2AdjKeyFactory(set);
  shared->l2AdjKeyIs(number);
  return shared;
}

Ptr<Pbr::ClassMapCheckpointStatus> checkpointOf(Trees const& trees, char const* name) {
  return trees.checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("edge")->cmapCkptStatusIs(name);
}

void beginConfig(Pbr::Config& config) {
  auto const web = config.pbrActions()->fwdActionIs("web", kWeb, Pbr::nexthopAction);
  web->nexthopIs(kFirst, true);
  web->nexthopGroupIs("group");
  config.pbrActions()->dscpActionIs("voice", kVoice, Pbr::Dscp(46));
  auto const map = config.cmapType()->cmapIs("web")->subconfigIs(kMap);
  PolicyMap::MatchRule rule;
  rule.aclIs("web");
  map->matchIs(10, rule);
  config.cmapType()->cmap("web")->currentSubConfigIs(map);
  auto const policy = config.pmapType()->pmapIs("edge")->subconfigIs(kMap);
  policy->classActionIs("web")->policyActionIs(web);
  config.pmapType()->pmap("edge")->currentSubConfigIs(policy);
  config.pmapType()->intfIs(kUplink, "edge");
}

void stepOfConfig(Pbr::Config& config, unsigned number) {
  auto const actions = config.pbrActions();
  switch (number) {
  case 0:
    actions->fwdAction(kWeb)->nexthopIs(kSecond, true);
    actions->fwdAction(kWeb)->nexthopDel(kFirst);
    return;
  case 1:
    return actions->fwdAction(kWeb)->recursiveIs(true);
  case 2:
    actions->fwdActionIs("mail", kOther, Pbr::dropAction)->nexthopGroupIs("other");
    return;
  case 3:
    return config.pmapType()->pmap("edge")->subconfig(kMap)->classActionIs("mail")->policyActionIs(
        actions->fwdAction(kOther));
  case 4:
    actions->dscpActionDel(kVoice);
    return;
  case 5:
    config.pmapType()->intfDel(kUplink);
    return config.pmapType()->intfIs(kLan, "edge");
  case 6:
    config.cmapType()->cmapDel("web");
    return;
  default:
    config.cmapType()->cmapIs("mail")->subconfigIs(kOther)->dynamicIs(true);
  }
}

void stepOfOthers(Trees const& trees, unsigned number) {
  auto const map = trees.status->pbrClassMapStatus(kWeb);
  switch (number) {
  case 0:
    return trees.status->statusIs("edge")->messageIs("all is well");
  case 1:
    return map->nexthopIndexAndL2AdjKeyIs(sharedNexthops(2, kSecond));
  case 2:
    trees.status->pbrClassMapStatusDel(kVoice);
    return;
  case 3:
    return map->actionTypeIs(Pbr::nexthopAction);
  case 4:
    return checkpointOf(trees, "mail")->pktMatchIs(4711);
  case 5:
    checkpointOf(trees, "web")->aclTypeCkptStatusIs(Acl::AclType{})->aclIs("acl")->timestampIs(2.5);
    return;
  case 6:
    trees.checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatus("edge")->cmapCkptStatusDel("voice");
    return;
  default:
    return trees.status->intfDisallowedIs({kLan, PolicyMap::IntfError{}}, "no room");
  }
}

std::unique_ptr<Transport> reach(std::string const& socket) {
  for (unsigned attempts = 20000;; --attempts) {
    try {
      return connectWithin(UnixAddress{socket}, kLimit);
    } catch (ConnectionException const&) {
      if (attempts == 0) throw;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
}

} // namespace

void watch(Told& told, Trees const& trees) {
  told.watch(trees.config, kPaths[0]);
  told.watch(trees.status, kPaths[1]);
  told.watch(trees.checkpoint, kPaths[2]);
}

void begin(Trees const& trees) {
  beginConfig(*trees.config);
  auto const shared = sharedNexthops(1, kFirst);
  trees.status->pbrClassMapStatusIs("web", kWeb)->nexthopIndexAndL2AdjKeyIs(shared);
  trees.status->pbrClassMapStatusIs("voice", kVoice)->nexthopIndexAndL2AdjKeyIs(shared);
  trees.status->statusIs("edge")->messageIs(Vyx::String8(std::string(9000, 'm'))); // In several pieces.
  checkpointOf(trees, "web")->pktMatchIs(1);
  checkpointOf(trees, "voice")->pktMatchIs(2);
}

void step(Trees const& trees, unsigned number) {
  if (number % 2 == 0)
    stepOfConfig(*trees.config, number / 2);
  else
    stepOfOthers(trees, number / 2);
}

void edits(Pbr::Config& config) {
  auto const maps = config.pmapType();
  maps->intfFallbackIs(kUplink, "a");
  maps->intfFallbackIs(kLan, "b");
  maps->intfFallbackDel(kUplink);
  maps->intfFallbackIs(kLan, "c");
  maps->intfFallbackIs(kAsks, "answer");
}

bool isAsked(Pbr::Config const& config) { return config.pmapType()->intfFallback(kAsks) == "answer"; }
void answer(Pbr::Config& config) { config.bgpPbrRedirectIs(true); }
bool isAnswered(Pbr::Config const& config) { return config.bgpPbrRedirect(); }

Outcome::Outcome() {
  watch(told, trees);
  begin(trees);
  for (unsigned i = 0; i < kSteps; ++i) step(trees, i);
  edits(*trees.config);
  answer(*trees.config);
}

// The server.

ScriptServer::ScriptServer(std::string const& socket, bool isLate, std::shared_ptr<Meter> meter)
    : meter_(std::move(meter)), roots_(Vyx::ptrFromNew(new Roots([this](Link const&, Name const&, MountMode) {
        ++mounts_;
        return std::string();
      }))) {
  watch(told, trees);
  begin(trees);
  while (isLate && steps_ < kSteps) step(trees, steps_++);
  roots_->offerIs(kPaths[0], trees.config);
  roots_->offerIs(kPaths[1], trees.status);
  roots_->offerIs(kPaths[2], trees.checkpoint);
  loop.turnEndIs([this] { goOn(); });
  auto const taken = [this](std::unique_ptr<Transport> transport) { take(std::move(transport)); };
  listener_ = Vyx::ptrFromNew(new Listener(UnixAddress{socket}, taken));
  loop.sourceIs(listener_);
}

void ScriptServer::take(std::unique_ptr<Transport> transport) {
  mounts_ = 0;
  if (auto const meter = std::exchange(meter_, nullptr))
    transport = std::make_unique<MeteredTransport>(std::move(transport), meter);
  peers_.push_back(Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::accepting, roots_)));
  peers_.back()->loopIs(loop);
}

std::size_t ScriptServer::living() const {
  return static_cast<std::size_t>(
      std::count_if(peers_.begin(), peers_.end(), [](auto const& peer) { return !peer->hasEnded(); }));
}

void ScriptServer::goOn() {
  isStarted_ |= mounts_ == std::size(kPaths) && peers_.back()->demuxer()->phase() == Demuxer::live;
  if (isStarted_ && steps_ < kSteps) {
    step(trees, steps_++);
    loop.wake();
  } else if (steps_ == kSteps && isAsked(*trees.config)) {
    answer(*trees.config);
  }
}

// The reader.

ScriptReader::~ScriptReader() {
  letGo();
  roots->dir()->watcherIs(nullptr);
}

void ScriptReader::letGo() {
  if (peer) peer->watcherDel();
  peer = nullptr;
}

void ScriptReader::connect(std::string const& socket, std::shared_ptr<Meter> const& meter) {
  letGo();
  ended.clear();
  synced_ = 0;
  hasEdited_ = false;
  auto transport = std::make_unique<MeteredTransport>(reach(socket), meter);
  peer = Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::connecting, roots, this));
  peer->loopIs(loop);
  for (char const* path : kPaths) peer->mount(path, path == kPaths[0] ? MountMode::write : MountMode::read);
}

void ScriptReader::turn() {
  loop.turn(std::chrono::milliseconds(100));
  if (synced_ != std::size(kPaths) || std::exchange(hasEdited_, true)) return;
  edits(*copy().config);
}

bool ScriptReader::finish() {
  Instant const until = after(Clock::now(), kLimit);
  while (!peer->hasEnded() && Clock::now() < until) {
    if (hasEdited_ && isAnswered(*copy().config)) return true;
    turn();
  }
  return false;
}

bool ScriptReader::loseServer() {
  Instant const until = after(Clock::now(), kLimit);
  while (!peer->hasEnded() && Clock::now() < until) turn();
  return peer->hasEnded();
}

Trees ScriptReader::copy() const {
  return {mounted<Pbr::Config>(kPaths[0]), mounted<Pbr::Status>(kPaths[1]),
          mounted<Pbr::CheckpointStatus>(kPaths[2])};
}

void ScriptReader::onState(Name const& path, Vyx::Dir::State state) {
  if (state == Vyx::Dir::partial) told.watch(roots->dir()->entryIs(path).entity(), std::string(path.view()));
}

// Those that die.

void serveUntilSpent(std::string const& socket, std::shared_ptr<Meter> const& meter) {
  ScriptServer server(socket, false, meter);
  for (bool wasThere = false;; wasThere = wasThere || server.living()) {
    server.loop.turn(kLimit);
    if (server.living() && meter->isSpent()) ::raise(SIGKILL);
    if (wasThere && !server.living()) return;
  }
}

void readUntilSpent(std::string const& socket, std::shared_ptr<Meter> const& meter) {
  ScriptReader reader;
  reader.connect(socket, meter);
  while (!reader.peer->hasEnded()) {
    if (meter->isSpent()) ::raise(SIGKILL);
    reader.turn();
  }
}

} // namespace processes_test
