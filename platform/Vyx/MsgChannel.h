// A channel over which the messages about one entity come on several logs, so that only one of them is
// followed at a time.

#pragma once

#include "Vyx/Entity.h"
#include "Vyx/EntityId.h"

namespace Vyx {

class MsgChannel {
public:
  // What the channel has last seen of an entity. The numbers are known outside of the runtime.
  enum Mode : unsigned { modeIdle = 0, modeAnnounced = 1, modeDeleted = 2, modeSynced = 3 };

  // Says which id the entity gets that is being made, and where it will hang.
  class Constrainer : public PtrInterface {
  public:
    class VyxEntry;

    EntityId deserializingEid() const { return eid_; }
    void deserializingEidIs(EntityId const& eid) { eid_ = eid; }
    Entity* deserializingInParent() const { return parent_; }
    void deserializingInParentIs(Entity* parent) { parent_ = parent; }

  private:
    EntityId eid_;
    Entity* parent_ = nullptr; // Not counted: it lives for as long as the message is being read.
  };

  // Null while the process has none.
  static Ptr<Constrainer> const& constrainer() { return constrainer_; }
  static void constrainerIs(Ptr<Constrainer> constrainer) { constrainer_ = std::move(constrainer); }

  // While it lives, the constrainer tells of that id and parent.
  class DeserializingEidAnchor {
  public:
    DeserializingEidAnchor(EntityId const& eid, Entity* parent);
    DeserializingEidAnchor(DeserializingEidAnchor const&) = delete;
    DeserializingEidAnchor& operator=(DeserializingEidAnchor const&) = delete;
    ~DeserializingEidAnchor();

  private:
    EntityId eid_;
    Entity* parent_ = nullptr;
  };

private:
  static Ptr<Constrainer> constrainer_;
};

// An entity's place on the channel.
class MsgChannel::Constrainer::VyxEntry : public PtrInterface {
public:
  Mode mode() const { return mode_; }
  void modeIs(Mode mode) { mode_ = mode; }

private:
  Mode mode_ = modeIdle;
};

} // namespace Vyx
