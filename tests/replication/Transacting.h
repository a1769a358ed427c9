// Entities whose collections are marked and swept.

#pragma once

#include "Ids.h"
#include "OneLog.h"

#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrFwdActionSa.h"

namespace replication_test {

inline constexpr auto kBegin = StreamAdapter::attrTransactionBegin;
inline constexpr auto kAbort = StreamAdapter::attrTransactionAbort;
inline constexpr auto kEnd = StreamAdapter::attrTransactionEnd;
inline Kest::UniqueId const otherId(4, 5, 6);
inline Lomu::IpGenAddr const one("10.0.0.1");
inline Lomu::IpGenAddr const two("10.0.0.2");

class TransactionTest : public testing::Test {
protected:
  TransactionTest() : adapter(log.joinAs(action, kMe, directFlags())) {
    adapter->flagIs(StreamAdapter::outAttachedFlag, false);
    action->nexthopIs(one, true);
    action->nexthopIs(two, true);
    adapter->flagIs(StreamAdapter::outAttachedFlag, true);
  }
  bool isMarked(Lomu::IpGenAddr const& key) { return action->nexthopIterator(key)->vyxMarkedForDeletion(); }
  void transact(StreamAdapter::AttrTransactionType type) { adapter->handleAttrTransaction(387, type, 0); }
  void messageFor(std::string const& lastByte) {
    log.message("8000000000000003 00000183 01 00000004 0a0000" + lastByte + " 00000000 00000000 00000000 01");
    adapter->handleAttrDeserialization(387, {}, 21, nullptr);
  }

  LogEnd log{Demuxer::connecting};
  Ptr<Pbr::PbrFwdAction> action = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  Ptr<Pbr::PbrFwdAction::VyxNboAttrLogSa> adapter;
};

class ChildTransactionTest : public testing::Test {
protected:
  ChildTransactionTest() : adapter(log.join(container)) {
    child = container->fwdActionIs("web", id, Pbr::nexthopAction);
    other = container->fwdActionIs("mail", otherId, Pbr::nexthopAction);
    log.sent();
  }
  bool isMarked(Ptr<Pbr::PbrFwdAction> const& of) {
    return log.adapter(of)->flag(StreamAdapter::flowOutHeldFlag);
  }
  void transact(StreamAdapter::AttrTransactionType type) { adapter->handleAttrTransaction(258, type, 0); }

  LogEnd log;
  Ptr<Pbr::PbrActionContainer> container = Pbr::pbrActionContainerFactory("Pbr");
  Ptr<Pbr::PbrActionContainer::VyxNboAttrLogSa> adapter;
  Ptr<Pbr::PbrFwdAction> child;
  Ptr<Pbr::PbrFwdAction> other;
};

} // namespace replication_test
