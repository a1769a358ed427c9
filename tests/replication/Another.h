// One more process that is connected to the server, with the server's end of its connection.

#pragma once

#include "TwoProcesses.h"

namespace replication_test {

class Another {
public:
  Another(Loop& loop, Process& server, char const* name) : process(name), serving(name) {
    PipePair ends = pipePair();
    serving.peer =
        Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &serving));
    process.peer =
        Vyx::ptrFromNew(new Peer(std::move(ends.second), Demuxer::connecting, process.roots, &process));
    serving.peer->loopIs(loop);
    process.peer->loopIs(loop);
  }

  bool isQuiet() const { return isQuiet(process) && isQuiet(serving); }

  Process process;
  Process serving;

private:
  static bool isQuiet(Process const& one) {
    auto const& peer = *one.peer;
    return peer.hasEnded() || (!peer.demuxer()->hasQueued() && peer.link()->out()->pendingBytes() == 0 &&
                               !peer.link()->isReady());
  }
};

} // namespace replication_test
