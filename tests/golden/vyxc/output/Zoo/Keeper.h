// Made by vyxc from zoo.vyx; do not edit.

#pragma once

#include "Kest/UniqueId.h"
#include "Vyx/Entity.h"
#include "Zoo/Animal.h"
#include "frame/EntityFrame.h"

static_assert(frame::kVersion == 1, "made for another version of the frame");

namespace Zoo {

class Keeper : public Vyx::Entity {
public:
  using VyxBase = Vyx::Entity;
  class NotifieeConst;
  class Notifiee;
  class VyxNboAttrLogSa;
  class GenericIf_;
  class _Type;

  explicit Keeper(Kest::UniqueId const& id) : Vyx::Entity(), id_(id) {}
  static constexpr std::array<char const*, 1> kVyxParameterNames{"id"};
  static constexpr std::array<char const*, 1> kVyxParameterTypes{"Kest::UniqueId"};
  using VyxParameterTuple = std::tuple<Kest::UniqueId>;
  static auto vyxParameters(Keeper const& of) { return VyxParameterTuple(of.id()); }

  static Vyx::VyxType const* _fwkType();
  Vyx::VyxType const* fwkType() const override { return _fwkType(); }
  Vyx::String8 attributeString(Vyx::AttributeId id) const override;
  VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) const override;
  bool vyxHasAttrLogInterface() const override { return true; }
  VyxAdapter vyxNboAttrLogSa(VyxConstLog const& out) override;
  VyxAdapter vyxNboAttrLogSaForMsgChannel(VyxAdapter const& other) const override;
  VyxAdapter vyxNboAttrLogSaIs(Vyx_BitSet flags, unsigned int options, VyxLog const& out,
                               Vyx::PtrInterface* channelEntry) override;
  VyxAdapter vyxNboAttrLogSaDel(VyxConstLog const& out) override;
  void isNondestructingIs(bool value) override { frame::isNondestructingIs(*this, value); }
  void zeroReferencesIs(bool) override { frame::zeroReferencesIs(*this); }
  Vyx::ListRaw<NotifieeConst>& vyxReactors() const { return reactors_; }

  // The key under which a collection of the parent holds this entity.
  Kest::UniqueId const& fwkKey() const { return id(); }

  // id, id 258
  Kest::UniqueId const& id() const { return id_; }
  struct VyxAttrId : frame::Constant<Keeper, Kest::UniqueId, 258> {
    static constexpr char const* name = "id";
    static auto& field(auto& of) { return of.id_; }
  };

  // task, id 259
  class VyxTask final : public frame::QueueRecord<Vyx::String8> {
    using QueueRecord::QueueRecord;
  };
  using VyxTaskMap = Vyx::LinkQueue<VyxTask, unsigned int>;
  struct VyxAttrTask : frame::Queue<Keeper, Vyx::String8, VyxTask, 259> {
    static constexpr char const* name = "task";
    static auto& field(auto& of) { return of.task_; }
    static void tell(auto& reactor, unsigned int key) { reactor.onTask(key); }
  };
  using TaskIteratorConst = frame::IteratorConst<VyxTaskMap>;
  using TaskIterator = frame::Iterator<Keeper, VyxTaskMap>;
  using VyxTaskIterator = TaskIterator;
  Vyx::String8 task(unsigned int key) const { return frame::value<VyxAttrTask>(*this, key); }
  std::uint32_t tasks() const { return task_.count(); }
  virtual Vyx::String8 taskDel(unsigned int key) { return frame::queueDel<VyxAttrTask>(*this, key); }
  virtual Vyx::String8 taskDel(TaskIterator& at) { return frame::queueDelAt<VyxAttrTask>(*this, at); }
  virtual void taskNotify(unsigned int key) { frame::notify<VyxAttrTask>(*this, key); }
  virtual unsigned int taskEnq(Vyx::String8 value) { return frame::queueEnq<VyxAttrTask>(*this, value); }
  virtual Vyx::String8 taskDeq() { return frame::queueDeq<VyxAttrTask>(*this); }
  virtual bool taskIs(unsigned int key, Vyx::String8 value) {
    return frame::queueIs<VyxAttrTask>(*this, key, value);
  }
  TaskIteratorConst taskIteratorConst() const { return TaskIteratorConst(task_); }
  TaskIteratorConst taskIteratorConst(unsigned int key) const { return {task_, key}; }
  TaskIterator taskIterator() { return {this, task_}; }
  TaskIterator taskIterator(unsigned int key) { return {this, task_, key}; }

  // favourite, id 260
  Vyx::Ptr<Animal const> const& favourite() const { return favourite_; }
  void favouriteIs(Vyx::Ptr<Animal const> const& value) { frame::set<VyxAttrFavourite>(*this, value); }
  struct VyxAttrFavourite : frame::Reference<Keeper, Animal const, 260> {
    static constexpr char const* name = "favourite";
    static auto& field(auto& of) { return of.favourite_; }
    static void tell(auto& reactor) { reactor.onFavourite(); }
  };

  using VyxAttributes = frame::AttributeList<VyxAttrId, VyxAttrTask, VyxAttrFavourite>;

public:
  Vyx::HashLink fwkHmNext_; // Written by the table that holds this entity.

private:
  Kest::UniqueId id_;
  VyxTaskMap task_;
  Vyx::Ptr<Animal const> favourite_;
  mutable Vyx::ListRaw<NotifieeConst> reactors_;
};

// Hears of changes of a Keeper; every entry is empty.
class Keeper::NotifieeConst : public frame::ReactorOn<Keeper, Vyx::Entity::NotifieeConst> {
public:
  virtual void onIsNondestructing() {}
  virtual void onTask(unsigned int) {}
  virtual void onTaskvyxImmediate() {}
  virtual void onTask() {}
  virtual void onFavourite() {}

protected:
  NotifieeConst() = default;
};

class Keeper::Notifiee : public frame::WritableReactorOn<Keeper> {
protected:
  Notifiee() = default;
};

Vyx::Ptr<Keeper> keeperFactory(Kest::UniqueId const& id);

} // namespace Zoo
