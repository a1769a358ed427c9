// One end of an attribute log without a connection: what it writes is looked at, and given to another end by
// hand.

#pragma once

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/NboAttrLog/Exceptions.h"
#include "support/FrameBytes.h"
#include "support/Refusals.h"
#include "support/TreeText.h"

#include <gtest/gtest.h>

namespace replication_test {

using namespace Vyx::NboAttrLog;
using support::treeText;
using Vyx::EntityId;
using Vyx::Name;
using Vyx::Ptr;
using Vyx::StreamAdapter;

inline Vyx_BitSet flagsOf(std::initializer_list<StreamAdapter::Flag> list) {
  Vyx_BitSet flags;
  for (auto flag : list) flags.bitIs(flag, true);
  return flags;
}

// What writes at once wherever there is room; what leaves that to the runtime's policy; what follows only.
inline Vyx_BitSet directFlags() {
  return flagsOf({StreamAdapter::outAttachedFlag, StreamAdapter::directFlowOutFlag});
}
inline Vyx_BitSet politeFlags() { return flagsOf({StreamAdapter::outAttachedFlag}); }
inline Vyx_BitSet followerFlags() {
  return flagsOf(
      {StreamAdapter::outAttachedFlag, StreamAdapter::directFlowOutFlag, StreamAdapter::readOnlyFlag});
}

struct LogEnd {
  explicit LogEnd(Demuxer::Side side = Demuxer::accepting, std::size_t capacity = kDefaultCapacity);
  ~LogEnd();

  // The entity's adapter on this log, with an id of its own.
  template <class X>
  Ptr<typename X::VyxNboAttrLogSa> join(Ptr<X> const& entity, Vyx_BitSet flags = directFlags()) {
    Ptr<StreamAdapter> const adapter = entity->vyxNboAttrLogSaIs(flags, 0, out, nullptr);
    adapter->vyxOnInit();
    return Vyx::dynamicPtrCast<typename X::VyxNboAttrLogSa>(adapter);
  }
  // The same, with the id that the other side gave.
  template <class X>
  Ptr<typename X::VyxNboAttrLogSa> joinAs(Ptr<X> const& entity, EntityId id,
                                          Vyx_BitSet flags = followerFlags()) {
    Ptr<StreamAdapter> const adapter = entity->vyxNboAttrLogSaIs(flags, 0, out, nullptr);
    adapter->doEntityIdIs(id, demuxer, true);
    return Vyx::dynamicPtrCast<typename X::VyxNboAttrLogSa>(adapter);
  }
  // The adapter that is there already, or null.
  template <class X> Ptr<typename X::VyxNboAttrLogSa> adapter(Ptr<X> const& entity) const {
    Vyx::Entity& of = *entity;
    return Vyx::dynamicPtrCast<typename X::VyxNboAttrLogSa>(of.vyxNboAttrLogSa(Ptr<Out const>(out)));
  }

  // Takes what is pending.
  Bytes sent();
  // Takes it, and tells a word for each message: "387", "-387", "261+" for a child, "387.0" for a marker.
  // What `fill` has written isn't told.
  std::string told();

  // Writes until there is no room left; `told` or `sent` make room again.
  void fill();
  // The policy allows so many more messages, each of which it is asked for.
  void allow(int messages);
  void allowAll() { demuxer->throttleIs(nullptr, nullptr); }

  void receive(std::span<unsigned char const> bytes);
  // Makes a message the current one: that of a frame without length and checksum.
  void message(std::string_view hexOfHeaderAndPayload);
  // Applies everything that has come.
  void apply();

  Ptr<Out> out;
  Ptr<In> in;
  Ptr<Demuxer> demuxer;

private:
  int allowed_ = 0;
};

// Gives one end what the other has written.
inline void pass(LogEnd& from, LogEnd& to) {
  to.receive(from.sent());
  to.apply();
}

// Two ends that hold the same entity.
class TwoEnds : public testing::Test {
protected:
  template <class X> void hold(Ptr<X> const& left, Ptr<X> const& right) {
    auto const adapter = writer.join(left);
    adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
    reader.joinAs(right, adapter->entityId());
    written_ = left;
    read_ = right;
  }
  void pass() { replication_test::pass(writer, reader); }
  void expectEqual() const { EXPECT_EQ(treeText(*written_), treeText(*read_)); }

  LogEnd writer{Demuxer::accepting};
  LogEnd reader{Demuxer::connecting};

private:
  Ptr<Vyx::Entity> written_;
  Ptr<Vyx::Entity> read_;
};

} // namespace replication_test
