// What a newer writer puts around a message that it knows under several ids: the list of these, the newest
// first, and where the entity id stands behind constructor values that an older reader doesn't know.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/StreamAdapter.h"
#include "replication/Attributes.h"

namespace replication {

inline bool isEnvelope(Vyx::AttributeId aid) { return aid == Vyx::kEnvelopeId || aid == -Vyx::kEnvelopeId; }

template <class... Attrs> constexpr bool anyHasEnvelope(frame::AttributeList<Attrs...>) {
  return (hasEnvelope<Attrs> || ...);
}

// Reads an envelope; `knows` says whether the type has an attribute of that id, positive or negated. RETURNS
// the id to go by.
template <class Knows>
Vyx::AttributeId openEnvelope(Vyx::AttributeId aid, Vyx::StreamAdapter::IncomingMessage& message,
                              Knows const& knows) {
  auto& in = message.in;
  std::size_t const start = in.position();
  std::size_t const listEnd = start + in.nextU16();
  std::size_t const bodyOffset = in.nextU16();
  while (in.position() < listEnd) {
    Vyx::AttributeId const one = in.nextint();
    if (!knows(one)) continue;
    aid = one;
    in.positionIs(listEnd);
  }
  if (bodyOffset != 0) message.bodyOffset = start + bodyOffset;
  if (aid > 0) in.nextU32();
  return aid;
}

} // namespace replication
