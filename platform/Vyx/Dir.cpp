#include "Vyx/Dir.h"

namespace Vyx {

Dir::~Dir() {
  for (auto const& entry : entries_) entry->entityIs(nullptr);
}

void Dir::Entry::entityIs(Ptr<Entity> const& entity, std::string made) {
  made_ = std::move(made);
  if (entity_ == entity) return;
  if (entity_) entity_->parentIs(nullptr);
  entity_ = entity;
  if (entity_) entity_->parentIs(Ptr<Entity>(&dir_));
}

void Dir::Entry::stateIs(State state) {
  if (state_ == state) return;
  state_ = state;
  if (dir_.watcher_) dir_.watcher_->onState(name_, state);
}

Dir::Entry* Dir::entryOf(Entity const& entity) const {
  for (auto const& one : entries_)
    if (one->entity().ptr() == &entity) return one.get();
  return nullptr;
}

Dir::Entry* Dir::find(Name const& path) const {
  for (auto const& one : entries_)
    if (one->name() == path) return one.get();
  return nullptr;
}

Dir::Entry& Dir::entryIs(Name const& path) {
  if (Entry* there = find(path)) return *there;
  entries_.push_back(std::make_unique<Entry>(*this, path));
  return *entries_.back();
}

} // namespace Vyx
