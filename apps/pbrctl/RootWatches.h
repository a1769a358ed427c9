// The reactors of each kind of root, see TreeWatch.h.

#pragma once

#include "pbrctl/TreeWatch.h"

namespace Pbrctl {

using Reactor = Vyx::Ptr<Vyx::PtrInterface>;

// REQUIRES, all: the sink outlives the reactor, which hears for as long as it lives.
Reactor watchConfig(Pbr::Config const& config, ChangeSink const& sink, std::string path);
Reactor watchStatus(Pbr::Status const& status, ChangeSink const& sink, std::string path);
Reactor watchCheckpoint(Pbr::CheckpointStatus const& checkpoint, ChangeSink const& sink, std::string path);

} // namespace Pbrctl
