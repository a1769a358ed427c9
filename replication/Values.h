// Reading values off a message, as the setters want them.

#pragma once

#include "Vyx/Exception.h"
#include "Vyx/NboAttrLog/Demuxer.h"
#include "Vyx/NboAttrLog/ValueCodec.h"

#include <tuple>

namespace replication {

using Vyx::NboAttrLog::Demuxer;
using Vyx::NboAttrLog::In;

// An enumeration E has, found beside it, `E vyxInstance(E const*, unsigned number)`, which raises a range
// exception for a number that is no enumerator. A newer writer's is no error: `counts`, which may be null,
// counts it, and its number is kept.
template <class E> E readEnumeration(In& in, Demuxer* counts) {
  unsigned const number = in.nextU32();
  try {
    Vyx::Expect const expect(Vyx::Exception::kRange);
    return vyxInstance(static_cast<E const*>(nullptr), number);
  } catch (Vyx::RangeException const&) {
    if (counts) counts->unknownEnumsInc(1);
    return static_cast<E>(number);
  }
}

// THROWS: ProtocolException for a message that is too short; what the type raises for a value that it
// doesn't hold.
template <class T> T readValue(In& in, [[maybe_unused]] Demuxer* counts) {
  if constexpr (std::is_enum_v<T>) {
    return readEnumeration<T>(in, counts);
  } else {
    T value = Vyx::NboAttrLog::read<T>(in);
    if constexpr (requires { value.check(); }) value.check();
    return value;
  }
}

template <class Tuple> struct ValuesReader;
template <class... T> struct ValuesReader<std::tuple<T...>> {
  // ORDER: that of the tuple.
  static std::tuple<T...> read([[maybe_unused]] In& in, [[maybe_unused]] Demuxer* counts) {
    return {readValue<T>(in, counts)...};
  }
};

// RETURNS the entity of the number that stands next: null for 0.
// THROWS: ProtocolException when this log has no such entity, or one of another type.
template <class T> Vyx::Ptr<T> readEntity(In& in) {
  Vyx::Ptr<Vyx::Entity> const entity = in.nextEntity();
  if (!entity) return {};
  auto typed = Vyx::dynamicPtrCast<T>(entity);
  if (!typed) Vyx::NboAttrLog::throwWrongEntity(*entity, *std::remove_const_t<T>::_fwkType());
  return typed;
}

} // namespace replication
