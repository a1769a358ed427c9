// One forwarding action on one log of little room, for those who look at what becomes of its changes.

#pragma once

#include "OneLog.h"

#include "Pbr/PbrFwdActionSa.h"

namespace replication_test {

class OneAction : public testing::Test {
protected:
  using Sa = Pbr::PbrFwdAction::VyxNboAttrLogSa;
  static constexpr std::size_t kSmall = 512;
  static constexpr Vyx::AttributeId kNothing = INT32_MAX;

  Ptr<Sa> join(Vyx_BitSet flags = directFlags()) { return adapter = log.join(action, flags); }
  // What is owed of the type's own attributes.
  unsigned dirty() const { return adapter->flowOut()->vyxDirtyBitSet1()->word(); }
  Ptr<Sa::FlowOut> owe(Vyx::AttributeId from = kNothing) {
    log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, from);
    return adapter->flowOut();
  }
  // The same of the next hops alone.
  Ptr<Sa::FlowOut> oweNexthops() {
    owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
    return adapter->flowOut();
  }
  void addThree() {
    for (char const* text : {"10.0.0.1", "10.0.0.2", "10.0.0.3"})
      action->nexthopIs(Lomu::IpGenAddr(text), true);
  }

  Kest::UniqueId const id{1, 2, 3};
  Lomu::IpGenAddr const address{"10.0.0.1"};
  LogEnd log{Demuxer::accepting, kSmall};
  Ptr<Pbr::PbrFwdAction> action = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  Ptr<Sa> adapter;
};

} // namespace replication_test
