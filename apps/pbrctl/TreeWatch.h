// Reactors on a whole tree of entities of any type: every notification of every entity in it, children that
// appear later included, is noted with its path.

#pragma once

#include "Vyx/Entity.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Pbrctl {

// One notification.
struct Change {
  enum class Kind {
    set,     // A value, new or changed; `value` is its text.
    added,   // A child came; its content follows in its own notifications.
    removed, // A member of a collection went.
  };

  // From the root to the attribute, or to the member of that key, as PathAccess reads it.
  std::string path() const;

  Kind kind;
  std::string entity; // The path of the entity; empty for the root.
  std::string attribute;
  std::optional<std::string> key;
  std::string value;
  std::string about; // What an identifier in the path stands for; may be empty.
};

char const* kindName(Change::Kind kind);

using ChangeSink = std::function<void(Change const&)>;

class EntityWatcher;

class TreeWatch {
public:
  // `path` stands in front of every path that the sink hears.
  // ORDER: the sink hears in the order of the notifications. What is there already isn't told.
  // REQUIRES: the root's type is one that a schema declares.
  TreeWatch(Vyx::Ptr<Vyx::Entity> const& root, ChangeSink sink, std::string path = {});
  ~TreeWatch();
  TreeWatch(TreeWatch const&) = delete;
  TreeWatch& operator=(TreeWatch const&) = delete;

private:
  ChangeSink sink_;
  std::unique_ptr<EntityWatcher> root_;
};

} // namespace Pbrctl
