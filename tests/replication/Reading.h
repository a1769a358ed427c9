// An entity that messages are read for, one at a time.

#pragma once

#include "Ids.h"
#include "OneLog.h"

#include "Pbr/ConfigSa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PbrFwdActionSa.h"

namespace replication_test {

// The held entity's child, and another child; attributes of one message each.
inline EntityId const kChild = EntityId::fromValue(0x8000000000000005);
inline EntityId const kOther = EntityId::fromValue(0x8000000000000007);
inline constexpr char const* kHead = "8000000000000003";
inline constexpr char const* kAddress = "00000004 0a000001 00000000 00000000 00000000";
inline constexpr char const* kId = "00000001 0002 0003";
inline Lomu::IpGenAddr const address("10.0.0.1");

// An end that reads, and a second log that only brings messages.
template <class X> class ReadingTest : public testing::Test {
protected:
  using Sa = typename X::VyxNboAttrLogSa;
  explicit ReadingTest(Ptr<X> made)
      : entity(std::move(made)), adapter(log.joinAs(entity, kMe, directFlags())) {}

  void apply(std::string const& attributeFormPayload) { receive(log, attributeFormPayload, nullptr); }
  // Reads it all the same, from another log, but writes the own value instead.
  void drain(std::string const& attributeFormPayload) { receive(source, attributeFormPayload, source.in); }

  LogEnd log{Demuxer::connecting};
  LogEnd source{Demuxer::connecting};
  Ptr<X> entity;
  Ptr<Sa> adapter;

private:
  void receive(LogEnd& from, std::string const& attributeFormPayload, Ptr<In> const& in) {
    from.message(kHead + attributeFormPayload);
    auto const size = static_cast<unsigned>(from.in->payloadBytes());
    adapter->handleAttrDeserialization(from.in->header().attrId, {}, size, in);
    EXPECT_EQ(0U, from.in->remaining());
  }
};

class ActionReading : public ReadingTest<Pbr::PbrFwdAction> {
protected:
  ActionReading() : ReadingTest(Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction)) {}
};

class StatusReading : public ReadingTest<Pbr::PbrClassMapStatus> {
protected:
  StatusReading() : ReadingTest(Pbr::pbrClassMapStatusFactory("web", id)) {}
};

class ContainerReading : public ReadingTest<Pbr::PbrActionContainer> {
protected:
  ContainerReading() : ReadingTest(Pbr::pbrActionContainerFactory("Pbr")) {}

  static std::string announced(char const* type, char const* as) {
    return "00000102 11 00000003 776562" + std::string(kId) + type + as;
  }
  static constexpr char const* kNexthop = "00000002";
  static constexpr char const* kDrop = "00000001";
  static constexpr char const* kFive = "8000000000000005";
  static constexpr char const* kSeven = "8000000000000007";
};

class ConfigReading : public ReadingTest<Pbr::Config> {
protected:
  ConfigReading() : ReadingTest(Pbr::configFactory("pbr")) {}
};

} // namespace replication_test
