// Both ends of an attribute log, in one process.

#pragma once

#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/NboAttrLog/ValueCodec.h"
#include "support/FrameBytes.h"
#include "support/Refusals.h"

#include <gtest/gtest.h>

#include <string>

using Vyx::EntityId;
using Vyx::NboAttrLog::In;
using Vyx::NboAttrLog::MsgHeader;
using Vyx::NboAttrLog::Out;

inline MsgHeader variable(EntityId entity, Vyx::AttributeId attribute) { return {entity, attribute, true}; }

struct Wire {
  explicit Wire(std::size_t capacity = Vyx::NboAttrLog::kDefaultCapacity,
                std::uint32_t maxLength = Vyx::NboAttrLog::kDefaultMaxLength)
      : out(Vyx::ptrFromNew(new Out(capacity, maxLength))), in(Vyx::ptrFromNew(new In(capacity, maxLength))) {
  }

  template <class... Values> void write(MsgHeader const& header, Values const&... values) {
    out->nextHeaderIs(header);
    out << Out::kTransactBegin;
    (Vyx::NboAttrLog::write(out, values), ...);
    out << Out::kTransactEnd;
  }
  // Takes what is pending off the writer.
  Bytes sent();
  // As many reads as it takes. Stops where the reader takes no more.
  void receive(std::span<unsigned char const> bytes);
  // RETURNS what the reader says of these bytes.
  std::string readerOf(std::string_view hex);
  // RETURNS whether there is a message.
  bool pass() {
    receive(sent());
    return in->nextMessage();
  }

  Vyx::Ptr<Out> out;
  Vyx::Ptr<In> in;
};

// What a value is as the only payload of a message.
template <class T> std::string encodingOf(T const& value) {
  Wire wire;
  wire.write(variable(EntityId(1, 0), 2), value);
  return hexOf(wire.out->pending().subspan(16, wire.out->pendingBytes() - 20));
}

// The value that such a payload is. THROWS: what its reader throws.
template <class T> T valueOf(std::string_view hex) {
  Wire wire;
  std::string head = "0000000000000001 00000002 01";
  wire.receive(frameOf(head.append(hex)));
  EXPECT_TRUE(wire.in->nextMessage());
  T const value = Vyx::NboAttrLog::read<T>(*wire.in);
  wire.in->expectEnd();
  return value;
}
