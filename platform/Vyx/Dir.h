// A directory of root entities, by name, and how complete each is.

#pragma once

#include "Vyx/Entity.h"

#include <memory>
#include <string>
#include <vector>

namespace Vyx {

class Dir final : public Entity {
public:
  // Of an entry. The numbers are known outside of the runtime.
  enum State : unsigned {
    absent = 0,   // Nothing was announced yet.
    partial = 1,  // It is being brought up to date.
    lost = 2,     // The log that it came by has ended; what it held last is kept.
    complete = 3, // It holds what the other side holds.
  };

  // Hears of the entries' states.
  class Watcher {
  public:
    virtual void onState(Name const& name, State state) = 0;

  protected:
    ~Watcher() = default;
  };

  class Entry {
  public:
    Entry(Dir& dir, Name name) : dir_(dir), name_(std::move(name)) {}
    Name const& name() const { return name_; }
    Ptr<Entity> const& entity() const { return entity_; }
    State state() const { return state_; }
    // The entity of an entry has the directory as its parent. `made` tells with what it was made.
    void entityIs(Ptr<Entity> const& entity, std::string made = {});
    // RETURNS the entity if it was made with that, else null.
    Ptr<Entity> reusable(std::string const& made) const { return made == made_ ? entity_ : nullptr; }
    // NOTIFIES: onState, when it changes.
    void stateIs(State state);

  private:
    Dir& dir_;
    Name name_;
    Ptr<Entity> entity_;
    State state_ = absent;
    std::string made_;
  };

  explicit Dir(Name name) : Entity(std::move(name)) {}
  ~Dir() override;

  // RETURNS the entry that holds that entity, or null. Entities of several entries may have one name.
  Entry* entryOf(Entity const& entity) const;
  // RETURNS the entry of that path; a new one when there is none.
  Entry& entryIs(Name const& path);
  // RETURNS null when nothing was ever entered under that path.
  Entry* find(Name const& path) const;

  void watcherIs(Watcher* watcher) { watcher_ = watcher; }

private:
  std::vector<std::unique_ptr<Entry>> entries_;
  Watcher* watcher_ = nullptr; // Not owned.
};

} // namespace Vyx
