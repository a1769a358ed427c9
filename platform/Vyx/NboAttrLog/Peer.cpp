#include "Vyx/NboAttrLog/Peer.h"

#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/ValueCodec.h"
#include "Vyx/VyxType.h"

#include <algorithm>
#include <array>

namespace Vyx::NboAttrLog {

namespace {

// Bytes of answers that may wait for a peer, beyond the capacity of the log. A single long message goes
// there, too.
constexpr std::size_t kMaxAnswers = 2 * kDefaultMaxLength;

// What an adapter of a root, or of an orphan, begins with.
Vyx_BitSet rootFlags(std::initializer_list<StreamAdapter::Flag> more = {}) {
  Vyx_BitSet flags;
  flags.bitIs(StreamAdapter::outAttachedFlag, true);
  flags.bitIs(StreamAdapter::directFlowOutFlag, true);
  for (auto flag : more) flags.bitIs(flag, true);
  return flags;
}

// The flags by which this side holds a root that the other one has given.
Vyx_BitSet flagsOfReader(MountMode mode) {
  return mode == MountMode::write ? rootFlags() : rootFlags({StreamAdapter::readOnlyFlag});
}

MountMode readMode(In& in) {
  unsigned const number = in.nextU8();
  if (number > static_cast<unsigned>(MountMode::publish))
    throwProtocolException(format("mount mode %u is unknown", number));
  return static_cast<MountMode>(number);
}

// RETURNS the first of the names that this process knows as an entity type.
// THROWS: ProtocolException when there is none.
VyxType const& knownType(In& in) {
  VyxType const* known = nullptr;
  String8 first;
  in.sectionIs(Out::kTypeNames);
  while (in.remaining() != 0) {
    String8 const name = in.nextString();
    if (first.empty()) first = name;
    VyxType const* const type = known ? nullptr : VyxType::typeByName(Name(name));
    if (type && type->isEntity()) known = type;
  }
  in.sectionEnd();
  if (!known) throwProtocolException(String8("entity type ") + first + String8(" is unknown"));
  return *known;
}

} // namespace

Peer::Peer(std::unique_ptr<Transport> transport, Demuxer::Side side, Ptr<Roots> const& roots,
           Watcher* watcher, LinkOptions const& options)
    : roots_(roots), watcher_(watcher),
      link_(ptrFromNew(new Link(std::move(transport), static_cast<Receiver&>(*this), options))),
      demuxer_(ptrFromNew(new Demuxer(link_->out(), link_->in(), side))) {
  demuxer_->peerHeardIs(0);
}

Peer::~Peer() {
  link_->receiverDel();
  if (loop_) loop_->sourceDel(link_);
  leave();
}

void Peer::loopIs(Loop& loop) {
  loop_ = &loop;
  turnEnd_ = loop.turnEndIs([this] { writeOwed(); });
  loop.sourceIs(link_);
}

void Peer::mount(Name const& path, MountMode mode) {
  asking_[path] = mode;
  if (isReady_) ask(path, mode);
}

void Peer::publish(Name const& path, Ptr<Entity> const& root) {
  publishing_[path] = root;
  mount(path, MountMode::publish);
}

void Peer::ask(Name const& path, MountMode mode) {
  link_->sendControl(kMountCode, [&](auto const& out) {
    out << path;
    out->put(static_cast<std::uint8_t>(mode));
  });
}

unsigned long long Peer::probe() {
  ++probes_;
  link_->sendControl(kProbeCode, [&](auto const& out) { out->put(probes_); });
  return probes_;
}

void Peer::onHello(Link&) {
  isReady_ = true;
  link_->in()->inReadyFlagIs(1);
  for (auto const& [path, mode] : asking_) ask(path, mode);
  if (watcher_) watcher_->onReady(*this);
}

void Peer::give(Name const& path, Ptr<Entity> const& root, MountMode mode) {
  auto const flags = mode == MountMode::write ? rootFlags() : rootFlags({StreamAdapter::readOnlyProxyFlag});
  Ptr<Entity> const before = std::exchange(given_[path], root);
  if (before && before != root)
    if (Ptr<StreamAdapter> const old = before->vyxNboAttrLogSa(Ptr<Out const>(link_->out())))
      old->doRemountSelf(nullptr);
  Ptr<StreamAdapter> const adapter = root->vyxNboAttrLogSaIs(flags, 0, link_->out(), nullptr);
  if (!adapter) return refuse(path, "the root can't be given over a log");
  link_->sendControl(kRootCode, [&](auto const& out) { out << path; });
  adapter->vyxOnInit();
  adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
  demuxer_->phaseIs(Demuxer::syncing);
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  syncing_.push_back(adapter);
  adapter->doSerializeOrphan();
}

void Peer::refuse(Name const& path, std::string const& words) {
  link_->sendControl(kRefusedCode, [&](auto const& out) { out << path << String8(words); });
}

void Peer::writeOwed() {
  if (link_->hasEnded()) return;
  demuxer_->runFlowOuts();
  if (!demuxer_->failure().empty()) return link_->end(std::string(demuxer_->failure().view()));
  if (!demuxer_->hasQueued()) allWritten();
}

void Peer::allWritten() {
  if (syncing_.empty()) return;
  for (auto const& adapter : std::exchange(syncing_, {})) {
    if (!adapter->vyxDemuxer()) continue;
    adapter->sendSyncMode(StreamAdapter::syncModeLive);
    adapter->syncModeIs(StreamAdapter::syncModeLive);
  }
  demuxer_->phaseIs(Demuxer::live);
}

void Peer::onRoom(Link&) { writeOwed(); }

void Peer::lookAhead(In const& in) {
  if (expected_-- != 0) return;
  expected_ = Demuxer::kExpected - 1;
  std::array<EntityId, Demuxer::kExpected> ids;
  demuxer_->expect({ids.data(), in.upcoming(ids)});
}

void Peer::onMessage(Link&, In& in) {
  lookAhead(in);
  MsgHeader const header = in.header();
  demuxer_->heardInc();
  if (header.messageClass == kControl)
    handleControl(in);
  else if (header.entityId == kOrphanEntityId && header.attrId == kOrphanAttrId)
    handleOrphan(in);
  else
    handleEntity(in, header);
  if (!demuxer_->failure().empty()) throwProtocolException(demuxer_->failure());
}

void Peer::handleEntity(In& in, MsgHeader const& header) {
  Ptr<StreamAdapter> const adapter(demuxer_->reactor(header.entityId));
  if (!adapter) {
    // Both sides may change a tree that is mounted for writing, so a message may come too late.
    if (!demuxer_->wasGiven(header.entityId))
      throwProtocolException(format("entity id %llx is unknown", header.entityId.value()));
    // What is said of a child that was announced there comes too late as well.
    if (header.messageClass == kChildAnnouncement && in.remaining() >= sizeof(std::uint64_t)) {
      in.positionIs(in.payloadBytes() - sizeof(std::uint64_t));
      return demuxer_->peerGave(in.nextEntityId());
    }
    return in.remainingSkip();
  }
  if (header.messageClass == kTransactionMarker) {
    unsigned const type = in.nextU32();
    unsigned const n = in.nextU32();
    in.expectEnd();
    if (type > StreamAdapter::attrTransactionEnd)
      throwProtocolException(format("transaction marker %u is unknown", type));
    adapter->handleAttrTransaction(header.attrId, static_cast<StreamAdapter::AttrTransactionType>(type), n);
  } else if (header.attrId == -kOrphanAttrId) {
    in.expectEnd();
    handleWithdrawal(*adapter);
  } else {
    if (demuxer_->side() == Demuxer::connecting) adapter->vyxChangedByPeer();
    adapter->handleAttrDeserialization(header.attrId, {}, static_cast<unsigned>(in.payloadBytes()), nullptr);
    if (header.attrId == kSyncModeId) noteSynced();
  }
}

// An orphan is no more. A child that was made from an announcement which the other side has taken back is
// announced as this side's own.
void Peer::handleWithdrawal(StreamAdapter& adapter) {
  made_.erase(adapter.entityId().value());
  Ptr<Entity> const entity(adapter.vyxNotifierEntity());
  bool const mayWrite = !adapter.flag(StreamAdapter::readOnlyProxyFlag);
  adapter.doRemountSelf(nullptr);
  Ptr<Entity> const parent = entity && mayWrite ? entity->parent() : nullptr;
  if (!parent) return;
  if (Ptr<StreamAdapter> const above = parent->vyxNboAttrLogSa(Ptr<Out const>(link_->out())))
    demuxer_->writeAll(*above);
}

// THROWS: ProtocolException when the peer asks and asks, and takes no answer. What is owed of a tree waits
// for room; answers are written at once, and would gather.
void Peer::requireReader() const {
  Out const& out = *link_->out();
  if (out.pendingBytes() > out.capacity() + kMaxAnswers)
    throwProtocolException(format("%zu bytes wait for a peer that asks for more", out.pendingBytes()));
}

void Peer::handleControl(In& in) {
  switch (in.header().attrId) {
  case kMountCode:
    return handleMount(in);
  case kRootCode:
    nextRoot_ = Name(in.nextString());
    return;
  case kRefusedCode:
    return handleRefused(in);
  case kProbeCode: {
    requireReader();
    unsigned long long const number = in.nextU64();
    return link_->sendControl(kAnswerCode, [&](auto const& out) { out->put(number); });
  }
  case kAnswerCode: {
    unsigned long long const number = in.nextU64();
    if (watcher_) watcher_->onAnswer(*this, number);
    return;
  }
  case kHeardCode: {
    unsigned long long const number = in.nextU64();
    if (number > link_->out()->messages())
      throwProtocolException(format("%llu messages heard, but only %llu sent", number,
                                    static_cast<unsigned long long>(link_->out()->messages())));
    return demuxer_->peerHeardIs(number);
  }
  default:
    throwProtocolException(format("control message %d is unknown", in.header().attrId));
  }
}

void Peer::handleMount(In& in) {
  requireReader();
  Name const path(in.nextString());
  MountMode const mode = readMode(in);
  if (auto const own = publishing_.find(path); own != publishing_.end() && mode == MountMode::read)
    return give(path, own->second, MountMode::publish);
  if (std::string const words = roots_->refusal(*link_, path, mode); !words.empty())
    return refuse(path, words);
  noteAsked(path, mode);
  if (mode == MountMode::publish)
    ask(path, MountMode::read);
  else if (Ptr<Entity> const root = roots_->offered(path))
    give(path, root, mode);
}

void Peer::noteAsked(Name const& path, MountMode mode) {
  auto const before = std::find_if(asked_.begin(), asked_.end(), [&](Asked const& one) {
    return one.path == path && (one.mode == MountMode::publish) == (mode == MountMode::publish);
  });
  if (before == asked_.end())
    asked_.push_back({path, mode});
  else
    before->mode = mode;
}

void Peer::rootCame(Name const& path) {
  Ptr<Entity> const root = roots_->offered(path);
  if (!root) return;
  if (auto const given = given_.find(path); given != given_.end() && given->second == root) return;
  for (std::size_t i = 0; i < asked_.size(); ++i)
    if (asked_[i].path == path && asked_[i].mode != MountMode::publish)
      return give(path, root, asked_[i].mode);
}

void Peer::handleRefused(In& in) {
  Name const path(in.nextString());
  std::string const words(in.nextString().view());
  asking_.erase(path);
  publishing_.erase(path);
  if (watcher_) watcher_->onRefused(*this, path, words);
}

void Peer::handleOrphan(In& in) {
  std::optional<Name> const path = std::exchange(nextRoot_, std::nullopt);
  if (!path && !mayBring()) throwProtocolException("an entity was announced by a peer that may read only");
  VyxType const& type = knownType(in);
  in.sectionIs(Out::kConstructorValues);
  std::string made(type.fullTypeName().view());
  std::size_t const position = in.position();
  std::string values(in.remaining(), '\0');
  in.bytesTo(values.data(), values.size());
  in.positionIs(position);
  made += '\0' + values;
  MountMode const mode = path ? modeOfComing(*path, type) : MountMode::read;
  if (path)
    if (Peer* const before = roots_->bringer(*path); before && before != this) before->rootTaken(*path);
  Dir::Entry* const entry = path ? &roots_->dir()->entryIs(*path) : nullptr;
  Ptr<Entity> entity = entry ? entry->reusable(made) : roots_->takeLost(made);
  if (!entity) entity = type.newEntity(Ptr<In>(&in), flagsOfReader(mode), 0, nullptr);
  in.sectionEnd();
  in.sectionIs(Out::kEntityIdSection);
  EntityId const id = in.nextEntityId();
  in.sectionEnd();
  in.expectEnd();
  if (!id.isAssigned()) throwProtocolException("an announced entity has no id");
  Ptr<StreamAdapter> const adapter = entity->vyxNboAttrLogSaIs(flagsOfReader(mode), 0, link_->out(), nullptr);
  adapter->doEntityIdIs(id, demuxer_, true);
  if (entry) {
    // The one that it replaces is not followed any more.
    if (entry->entity() && entry->entity() != entity)
      if (Ptr<StreamAdapter> const old = entry->entity()->vyxNboAttrLogSa(Ptr<Out const>(link_->out())))
        old->doRemountSelf(nullptr);
    entry->entityIs(entity, made);
    rootEntered(*path);
  } else {
    made_[id.value()] = made;
  }
}

// Whether anything was asked of the other side, or may be changed by it.
bool Peer::mayBring() const {
  return !asking_.empty() || std::any_of(asked_.begin(), asked_.end(),
                                         [](Asked const& one) { return one.mode != MountMode::read; });
}

// THROWS: ProtocolException for a root that this side hasn't asked for, or of a type that it doesn't accept.
MountMode Peer::modeOfComing(Name const& path, VyxType const& type) const {
  if (auto const asking = asking_.find(path); asking != asking_.end() && asking->second != MountMode::publish)
    return asking->second;
  bool const isAsked = std::any_of(asked_.begin(), asked_.end(), [&](Asked const& one) {
    return one.path == path && one.mode == MountMode::publish;
  });
  if (!isAsked) throwProtocolException(String8("root \"") + path + String8("\" was not asked for"));
  VyxType const* const accepted = roots_->accepted(path);
  if (!accepted || !type.isA(accepted))
    throwProtocolException(String8("root \"") + path + String8("\" can't be a ") + type.fullTypeName());
  return MountMode::read;
}

void Peer::rootEntered(Name const& path) {
  demuxer_->phaseIs(Demuxer::syncing);
  coming_.push_back(path);
  received_.insert(path);
  roots_->bringerIs(path, this);
  roots_->dir()->entryIs(path).stateIs(Dir::partial);
}

// The one who brings the root has come again by another connection before the end of this one was found.
void Peer::rootTaken(Name const& path) {
  received_.erase(path);
  std::erase(coming_, path);
  roots_->bringerIs(path, nullptr);
  Ptr<Entity> const root = roots_->dir()->entryIs(path).entity();
  if (Ptr<StreamAdapter> const adapter = root ? root->vyxNboAttrLogSa(Ptr<Out const>(link_->out())) : nullptr)
    adapter->doRemountSelf(nullptr);
  if (received_.empty()) loseOrphans();
}

// They may be announced again.
void Peer::loseOrphans() {
  for (auto const& [number, made] : std::exchange(made_, {})) {
    Ptr<StreamAdapter> const adapter(demuxer_->reactor(EntityId::fromValue(number)));
    if (!adapter) continue;
    roots_->lostIs(made, Ptr<Entity>(adapter->vyxNotifierEntity()));
    adapter->doRemountSelf(nullptr);
  }
}

void Peer::noteSynced() {
  std::vector<Name> const coming = std::exchange(coming_, {});
  for (auto const& path : coming) {
    bool const isWhole = roots_->dir()->entryIs(path).state() == Dir::complete;
    if (!isWhole) {
      coming_.push_back(path);
    } else if (watcher_) {
      watcher_->onSynced(*this, path);
    }
  }
  if (!coming_.empty()) return;
  demuxer_->phaseIs(Demuxer::live);
  if (hasAllRoots()) roots_->lostDelAll();
}

// A root that is still to come may refer to entities of the connection before.
bool Peer::hasAllRoots() const {
  return std::all_of(asking_.begin(), asking_.end(), [&](auto const& one) {
    Dir::Entry const* const entry = roots_->dir()->find(one.first);
    return one.second == MountMode::publish || (entry && entry->state() == Dir::complete);
  });
}

void Peer::onClosed(Link&, Closing const& closing) {
  Ptr<Peer> const held(this);
  leave();
  if (watcher_) watcher_->onEnded(*this, closing);
}

// What came by this connection stays; what was given goes off it.
void Peer::leave() {
  isReady_ = false;
  link_->in()->inReadyFlagIs(0);
  if (loop_) std::exchange(loop_, nullptr)->turnEndDel(turnEnd_);
  loseOrphans();
  for (auto const& path : std::exchange(received_, {})) {
    roots_->bringerIs(path, nullptr);
    roots_->dir()->entryIs(path).stateIs(Dir::lost);
  }
  demuxer_->close();
  syncing_.clear();
  given_.clear();
}

} // namespace Vyx::NboAttrLog
