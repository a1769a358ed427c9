// Reactors on a whole configuration: every notification of every entity in it, children that appear later
// included, is noted with its path.

#pragma once

#include "Pbr/Pbr.h"

#include <functional>
#include <string>

namespace Pbrctl {

// One notification. The path leads from the configuration to the attribute, as PathAccess reads it.
struct Change {
  enum class Kind {
    set,     // A value, new or changed; `value` is its text.
    added,   // A child came; its content follows in its own notifications.
    removed, // A member of a collection went.
  };
  Kind kind;
  std::string path;
  std::string value;
  std::string about; // What an identifier in the path stands for; may be empty.
};

char const* kindName(Change::Kind kind);

using ChangeSink = std::function<void(Change const&)>;

// Holds the reactors of one entity and, through them, those of all that lies below.
class TreeWatch {
public:
  // ORDER: the sink hears in the order of the notifications. What is there already isn't told.
  TreeWatch(Vyx::Ptr<Pbr::Config> const& config, ChangeSink sink);
  ~TreeWatch();
  TreeWatch(TreeWatch const&) = delete;
  TreeWatch& operator=(TreeWatch const&) = delete;

private:
  ChangeSink sink_;
  Vyx::Ptr<Vyx::PtrInterface> reactor_;
};

} // namespace Pbrctl
