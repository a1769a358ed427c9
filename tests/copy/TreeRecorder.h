// Reactors on every entity of a configuration, those that come later included: each notification is a line
// "pmapType.pmap[edge].subconfig[00000001-0000-0000].dynamic". Behind a key stands "+" when the member is
// there when its reactor hears of it, "-" when it isn't.

#pragma once

#include "ConfigTree.h"

class TreeRecorder {
public:
  // What is there already isn't told.
  explicit TreeRecorder(ConfigPtr const& on);

  // All lines since the last call, in the order of the notifications.
  std::vector<std::string> take() { return std::exchange(heard_, {}); }

private:
  std::vector<std::string> heard_;
  Vyx::Ptr<Vyx::PtrInterface> reactor_;
};
