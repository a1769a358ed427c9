// What stands before the payload of a message, as writers give it and readers get it.

#pragma once

#include "Vyx/EntityId.h"
#include "Vyx/Fwd.h"

namespace Vyx::NboAttrLog {

// The classes of messages. Those of the runtime itself stand above 0xff00.
inline constexpr std::uint32_t kPlain = 0;
inline constexpr std::uint32_t kChildAnnouncement = 151;
inline constexpr std::uint32_t kTransactionMarker = 0xff01;
inline constexpr std::uint32_t kControl = 0xff02;

// The attribute of a message that announces an entity without a parent; negated, that it is no more.
inline constexpr AttributeId kOrphanAttrId = kNoParentAttributeId;

struct MsgHeader {
  EntityId entityId;
  AttributeId attrId = 0;
  // Whether the payload has no fixed size.
  bool variableLength = false;
  // The payload's size: 0, 1, 4 or 8; 0 for a payload of variable length.
  std::uint32_t fixedLength = 0;
  std::uint32_t messageClass = kPlain;
  std::uint8_t reserved = 0;

  friend constexpr bool operator==(MsgHeader const&, MsgHeader const&) = default;
};

} // namespace Vyx::NboAttrLog
