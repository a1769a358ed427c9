// The root of all entities: named, counted, with numbered attributes, in a tree by parent and path.
//
// Invariants:
// (1) A child's parent holds the child, never the other way round: `parent()` is a plain pointer, cleared
//     when the child leaves or the parent ends.
// (2) `parentAttrId()` is set before the parent, so that nobody sees a child in an unknown place.

#pragma once

#include "Vyx/EntityId.h"
#include "Vyx/NotifieeConst.h"

namespace Vyx {

class Entity : public PtrInterface {
public:
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;

  // What the operations around attribute logs take and give.
  using VyxAdapter = Ptr<VyxNboAttrLogSa>;
  using VyxLog = Ptr<NboAttrLog::Out>;
  using VyxConstLog = Ptr<NboAttrLog::Out const>;

  // ORDER: the slots of this table are relied on by every derived class.
  virtual Name name() const;
  virtual Ptr<Entity const> parent() const;
  virtual Ptr<Entity> parent();
  virtual void parentIs(Ptr<Entity> const& parent);
  // The parent's record of the attribute that holds this entity; null without a parent.
  virtual VyxAttr const* parentAttr() const;
  virtual AttributeId parentAttrId() const;
  virtual void parentAttrIdIs(AttributeId id);
  // The way from the root: "root/attribute/key/…"; every piece is escaped, see PathPiece.h.
  virtual String8 uriPath() const;
  // The way from the root for people: "root.attribute[key].attribute".
  virtual String8 fullName() const;
  // The attribute's name in the schema; "unknown" for an id that the type doesn't have.
  virtual String8 attributeString(AttributeId id) const;
  virtual void vyxNotifieeAdapterIs(Ptr<Entity const> const& adapter);
  // Called by parentIs, after the store.
  virtual void handleParent(Ptr<Entity> const& parent);

  // The stream adapter that joins this entity to a log, and whether the type can have one. Null while the
  // entity is on no such log.
  virtual Ptr<VyxNboAttrLogSa> vyxNboAttrLogSa(Ptr<NboAttrLog::Out const> const& out) const;
  virtual bool vyxHasAttrLogInterface() const;
  virtual Ptr<VyxNboAttrLogSa> vyxNboAttrLogSa(Ptr<NboAttrLog::Out const> const& out);
  virtual Ptr<VyxNboAttrLogSa> vyxNboAttrLogSaForMsgChannel(Ptr<VyxNboAttrLogSa> const& other) const;
  virtual Ptr<VyxNboAttrLogSa> vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned options,
                                                 Ptr<NboAttrLog::Out> const& out, PtrInterface* context);
  virtual Ptr<VyxNboAttrLogSa> vyxNboAttrLogSaDel(Ptr<NboAttrLog::Out const> const& out);

  ~Entity() override;

  // The number by which a reference to this entity is written on that log. With `announces` and `asOrphan` an
  // entity that the log doesn't know, and that hangs nowhere below one it knows, is announced by this.
  // THROWS: EntityIdUnavailableException when the log is going to know the entity, but doesn't yet.
  EntityId entityId(Ptr<NboAttrLog::Out> const& out, bool unified, bool announces, bool asOrphan) const;

  static VyxType const* _fwkType();
  VyxType const* fwkType() const override;

  Entity* vyxParent() const { return parent_; }
  // The parent has ended or lets go without a word: no hook is called.
  void vyxParentGone() { parent_ = nullptr; }

protected:
  explicit Entity(Name name = {});

private:
  Name name_;
  Entity* parent_ = nullptr; // Not counted; the parent's attribute holds this entity.
  AttributeId parentAttrId_ = kNoParentAttributeId;
  std::uint32_t reserved_ = 0;
};

// A reactor on an entity. The notifier is counted, unless the reactor is weak.
class Entity::NotifieeConst : public PtrInterface::NotifieeConst {
public:
  virtual void onParent();
  virtual void onVersion();

  ~NotifieeConst() override;

  // Stores the notifier, counting the new before it lets the old go.
  void notifierIs(Ptr<PtrInterface const> const& notifier) override;

  Ptr<Entity const> notifier() const;

  bool isRegisteredNotifiee() const { return isRegistered_; }
  bool isWeakReference() const { return isWeak_; }
  // A weak reactor doesn't keep its notifier alive: when the notifier ends, a linked one is unattached.
  // REQUIRES: one that is unregistered or a zombie gets another notifier, or none, before that.
  void isWeakReferenceIs(bool weak);

  // Brings on or ends the life in the shadow: a zombie is in no list, hears nothing, and its end doesn't
  // unlink it again. It keeps its notifier and whether it is registered.
  void vyxDoZombieReactors(bool zombie);

  PtrInterface const* vyxNotifier() const { return notifier_; }
  void vyxIsRegistered(bool registered) const { isRegistered_ = registered; }

protected:
  NotifieeConst() = default;

private:
  friend class ReactorList;
  friend class ReactorSnapshot;

  PtrInterface const* notifier_ = nullptr; // Counted, unless isWeak_.
  bool isWeak_ = false;
  mutable bool isRegistered_ = false;
  mutable NotifieeConst* next_ = nullptr; // In the notifier's list; null when last or not linked.
};

class Entity::Notifiee : public Entity::NotifieeConst {
protected:
  Notifiee() = default;
};

} // namespace Vyx
