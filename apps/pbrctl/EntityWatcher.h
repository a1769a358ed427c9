// The reactor of one entity of any type, and those of all that lies below it.
//
// Invariants:
// (1) Every attribute that is a part of the entity's state is watched. Which there are is read in its type's
//     record.
// (2) There is a watcher below for each child, and for each entity referred to that no other one could own.

#pragma once

#include "Vyx/GenericIfEntity.h"
#include "pbrctl/TreeWatch.h"

#include <map>
#include <memory>

namespace Pbrctl {

class EntityWatcher final : private Vyx::GenericIfEntity::ChangeListener {
public:
  using Object = Vyx::Ptr<Vyx::GenericIf>;

  // Tells changes from now on, with the path in front. `above` is the watcher that this one belongs to, or
  // null.
  // REQUIRES: the sink and the watcher above outlive it.
  EntityWatcher(Object const& entity, ChangeSink const& sink, std::string path, EntityWatcher const* above);
  ~EntityWatcher();
  EntityWatcher(EntityWatcher const&) = delete;
  EntityWatcher& operator=(EntityWatcher const&) = delete;

private:
  using Key = Vyx::Ptr<Vyx::GenericIf const>;

  void onChange(Vyx::AttributeId id, Key const& key) override;

  // Tells what the attribute, or its member of that key, holds now.
  void tell(Vyx::VyxAttr const& attr, Key const& key);
  void tellChild(Change change, Object const& child);
  void tellReference(Change change, Object const& to);
  // What was filled before anybody could hear of it.
  void tellAll();

  // Calls `visit` with each attribute that can change.
  template <class Visit> void eachAttribute(Visit visit) const;
  // Calls `visit` with the key and the content of each member, or with no key and the single value.
  template <class Visit> void eachHeld(Vyx::VyxAttr const& attr, Visit visit) const;

  Object read(Vyx::VyxAttr const& attr, Key const& key) const;
  bool contains(Vyx::VyxAttr const& attr, Key const& key) const;
  Change changeOf(Vyx::VyxAttr const& attr, Key const& key) const;
  // Whether the entity lies on the way from the root to here; to follow it would have no end.
  bool isAbove(Object const& entity) const;
  // Whether it has no place of its own where it would be watched.
  bool isFollowed(Object const& entity) const;
  EntityWatcher& follow(Change const& place, Object const& entity);

  Vyx::Ptr<Vyx::GenericIfEntity> entity_;
  ChangeSink const& sink_;
  std::string path_;
  EntityWatcher const* above_;
  std::string about_;
  std::map<std::string, std::unique_ptr<EntityWatcher>> below_; // By path.
};

} // namespace Pbrctl
