// One connection's share in the trees of two processes: mounts roots in either direction, gives incoming
// messages to the adapters, and writes what is owed.
//
// A side that offers to bring a root does so once the other one asks for it in turn.
//
// ORDER: a side that gives a root says which path it belongs to (kRootCode), announces it, sends the sync
// mode "full", everything that the root holds, then the sync mode "live".
//
// Invariants:
// (1) A root that came from the peer is kept when the connection ends, with state `lost`; the next one that
//     is announced for its path is the same entity again, if it is made with the same values.
// (2) What one message says is applied whole or not at all; one that can't be applied ends the connection.

#pragma once

#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/NboAttrLog/Link.h"
#include "Vyx/NboAttrLog/Roots.h"

namespace Vyx::NboAttrLog {

class Loop;

// Control messages of mounting; see Link.h for kByeCode.
inline constexpr AttributeId kMountCode = 2;   // path, mode: asks for a root, or offers to bring one
inline constexpr AttributeId kRootCode = 3;    // path: the entity that is announced next
inline constexpr AttributeId kRefusedCode = 4; // path, text: what was asked for isn't given
inline constexpr AttributeId kProbeCode = 5;   // number: asks for an answer behind everything written before
inline constexpr AttributeId kAnswerCode = 6;  // number
// kHeardCode, 7, is the demuxer's.

class Peer final : public PtrInterface, private Receiver {
public:
  // Hears of what happens; every entry is empty.
  class Watcher {
  public:
    virtual void onReady(Peer&) {}
    // A root has come whole.
    virtual void onSynced(Peer&, Name const& /*path*/) {}
    virtual void onRefused(Peer&, Name const& /*path*/, std::string const& /*words*/) {}
    virtual void onAnswer(Peer&, unsigned long long /*number*/) {}
    // The last call. The peer is off the loop and off all logs already.
    virtual void onEnded(Peer&, Closing const&) {}

  protected:
    ~Watcher() = default;
  };

  // REQUIRES: the watcher outlives this object, or `watcherDel` was called.
  Peer(std::unique_ptr<Transport> transport, Demuxer::Side side, Ptr<Roots> const& roots,
       Watcher* watcher = nullptr, LinkOptions const& options = {});
  ~Peer() override;

  Ptr<Link> const& link() const { return link_; }
  Ptr<Demuxer> const& demuxer() const { return demuxer_; }
  Ptr<Roots> const& roots() const { return roots_; }
  void watcherDel() { watcher_ = nullptr; }
  bool hasEnded() const { return link_->hasEnded(); }

  // Has the link and the end of each turn served by that loop, until the connection ends.
  void loopIs(Loop& loop);

  // Asks the other side for a root, to follow or to change it. It comes into `roots().dir()` under the path.
  void mount(Name const& path, MountMode mode);
  // Brings a root to the other side.
  void publish(Name const& path, Ptr<Entity> const& root);
  // Gives the root of that path to a peer that has asked for it, unless it has that very root.
  void rootCame(Name const& path);
  // The other side answers once it has applied everything that was written before. RETURNS the number.
  unsigned long long probe();

  // Writes what is owed. Belongs at the end of each turn, before that of the link.
  void writeOwed();
  void end(std::string const& words) { link_->end(words); }

private:
  struct Asked {
    Name path;
    MountMode mode;
  };

  void onHello(Link& link) override;
  void onMessage(Link& link, In& in) override;
  void onRoom(Link& link) override;
  bool wantsTurn() const override { return !demuxer_->failure().empty(); }
  void onClosed(Link& link, Closing const& closing) override;

  void handleControl(In& in);
  void handleMount(In& in);
  void noteAsked(Name const& path, MountMode mode);
  void requireReader() const;
  bool mayBring() const;
  void handleRefused(In& in);
  void handleOrphan(In& in);
  void handleWithdrawal(StreamAdapter& adapter);
  void handleEntity(In& in, MsgHeader const& header);
  void lookAhead(In const& in);
  void give(Name const& path, Ptr<Entity> const& root, MountMode mode);
  void refuse(Name const& path, std::string const& words);
  void ask(Name const& path, MountMode mode);
  MountMode modeOfComing(Name const& path, VyxType const& type) const;
  void rootEntered(Name const& path);
  void rootTaken(Name const& path);
  void loseOrphans();
  void leave();
  void allWritten();
  void noteSynced();
  bool hasAllRoots() const;

  Ptr<Roots> roots_;
  Watcher* watcher_;
  Ptr<Link> link_;
  Ptr<Demuxer> demuxer_;
  Loop* loop_ = nullptr;
  std::uint64_t turnEnd_ = 0;
  bool isReady_ = false;
  unsigned expected_ = 0; // How many of the coming messages the demuxer may know of.
  unsigned long long probes_ = 0;
  std::vector<Asked> asked_;          // By the other side, a path once; those without a root wait for one.
  std::map<Name, Ptr<Entity>> given_; // To the other side.
  std::map<Name, MountMode> asking_;  // By this side.
  std::map<Name, Ptr<Entity>> publishing_;  // By this side.
  std::vector<Ptr<StreamAdapter>> syncing_; // Roots that are being written for the first time.
  std::optional<Name> nextRoot_;            // The path of the entity that is announced next.
  std::set<Name> received_;                 // Roots that came from the other side.
  std::vector<Name> coming_;                // Roots that are being received for the first time.
  // With what the peer's orphans were made, by their ids and so in the order of their announcements. Of equal
  // ones each is known again by that order.
  std::map<unsigned long long, std::string> made_;
};

} // namespace Vyx::NboAttrLog
