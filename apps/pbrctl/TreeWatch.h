// Reactors on a whole tree: every notification of every entity in it, children that appear later included,
// is noted with its path.

#pragma once

#include "Pbr/Pbr.h"

#include <functional>
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

// Holds the reactors of one entity and, through them, those of all that lies below.
class TreeWatch {
public:
  // `path` stands in front of every path that the sink hears.
  // ORDER: the sink hears in the order of the notifications. What is there already isn't told.
  // REQUIRES: a configuration, a status or a checkpoint.
  TreeWatch(Vyx::Ptr<Vyx::Entity> const& root, ChangeSink sink, std::string path = {});
  ~TreeWatch();
  TreeWatch(TreeWatch const&) = delete;
  TreeWatch& operator=(TreeWatch const&) = delete;

private:
  ChangeSink sink_;
  Vyx::Ptr<Vyx::PtrInterface> reactor_;
};

} // namespace Pbrctl
