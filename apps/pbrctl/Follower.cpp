#include "pbrctl/Follower.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "pbrctl/Io.h"

namespace Pbrctl {

using namespace Vyx::NboAttrLog;

namespace {

constexpr auto kRetryPause = std::chrono::milliseconds(250);

} // namespace

Follower::Follower(Loop& loop, Remote const& remote, std::vector<Vyx::Name> paths, Listener& listener)
    : loop_(loop), remote_(remote), paths_(std::move(paths)), listener_(listener),
      roots_(Vyx::ptrFromNew(new Roots)) {
  roots_->dir()->watcherIs(this);
}

Follower::~Follower() {
  roots_->dir()->watcherIs(nullptr);
  if (connector_) loop_.sourceDel(connector_);
  if (retry_) loop_.timerDel(retry_);
  if (!peer_) return;
  peer_->watcherDel();
  peer_->end("done");
}

void Follower::connect() {
  retry_ = 0;
  connector_ =
      Vyx::ptrFromNew(new Connector(remote_.address, remote_.timeout,
                                    [this](std::unique_ptr<Transport> transport, std::string const& failure) {
                                      connected(std::move(transport), failure);
                                    }));
  loop_.sourceIs(connector_);
}

void Follower::connectLater() {
  retry_ = loop_.timerIn(kRetryPause, [this] { connect(); });
}

void Follower::connected(std::unique_ptr<Transport> transport, std::string const& failure) {
  connector_ = nullptr;
  if (transport) {
    LinkOptions options;
    options.helloLimit = std::min(options.helloLimit, remote_.timeout);
    peer_ = Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::connecting, roots_, this, options));
    record();
    for (auto const& path : paths_) peer_->mount(path, MountMode::read);
    peer_->loopIs(loop_);
  } else if (wasReady_) {
    connectLater();
  } else {
    failure_ = RemoteError{kUnreachable, failure};
  }
}

void Follower::record() {
  if (recordFile_.empty()) return;
  ++recordings_;
  std::string const file = recordings_ == 1 ? recordFile_ : recordFile_ + "." + std::to_string(recordings_);
  try {
    peer_->link()->recordingsAre(std::make_unique<Recording>(file), nullptr);
  } catch (ConnectionException const& e) {
    failure_ = RemoteError{kRefused, e.what()};
  }
}

void Follower::onRefused(Peer&, Vyx::Name const& path, std::string const& words) {
  failure_ = refusal(path, words);
}

void Follower::onEnded(Peer&, Closing const& closing) {
  if (!wasReady_) {
    failure_ = RemoteError{kUnreachable, closing.words};
    return;
  }
  listener_.onTrouble(closing.words);
  connectLater();
}

void Follower::onState(Vyx::Name const& path, Vyx::Dir::State state) {
  std::string const text(path.view());
  if (state == Vyx::Dir::partial) {
    listener_.onBegin(text);
    watch(path);
  } else if (state == Vyx::Dir::complete) {
    listener_.onEnd(text);
  } else if (state == Vyx::Dir::lost) {
    listener_.onLost(text);
  }
}

// A root that is another entity than before has nothing of what was told.
void Follower::watch(Vyx::Name const& path) {
  auto const root = roots_->dir()->entryIs(path).entity();
  Followed& followed = followed_[path];
  if (followed.root == root) return;
  followed.watch = std::make_unique<TreeWatch>(
      root, [this](Change const& change) { listener_.onChange(change); }, std::string(path.view()));
  followed.root = root;
}

} // namespace Pbrctl
