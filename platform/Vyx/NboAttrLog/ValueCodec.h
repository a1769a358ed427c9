// Every value of the model, written and read by one name. Each rule stands with its type.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"

namespace Vyx::NboAttrLog {

// A class that reads itself off a log.
template <class T>
concept WireClass = std::is_constructible_v<T, In*, StreamBogon>;

template <class T> void write(Ptr<Out> const& out, T const& value) { out << value; }

// An enumerator comes as its bare number, known or not.
// THROWS: ProtocolException; what the value's type raises for a value that it doesn't hold.
template <class T> T read(In& in) {
  if constexpr (std::is_same_v<T, bool>)
    return in.nextbool();
  else if constexpr (std::is_enum_v<T>)
    return static_cast<T>(in.nextU32());
  else if constexpr (std::is_same_v<T, double>)
    return in.nextSeconds();
  else if constexpr (std::is_same_v<T, EntityId>)
    return in.nextEntityId();
  else if constexpr (std::is_same_v<T, TypeId>)
    return TypeId(in.nextString());
  else if constexpr (std::is_base_of_v<StringN<unsigned char>, T>)
    return in.nextString();
  else if constexpr (WireClass<T>)
    return T(&in, StreamBogon());
  else if constexpr (sizeof(T) == 1)
    return static_cast<T>(in.nextU8());
  else if constexpr (sizeof(T) == 2)
    return static_cast<T>(in.nextU16());
  else if constexpr (sizeof(T) == 4)
    return static_cast<T>(in.nextU32());
  else
    return static_cast<T>(in.nextU64());
}

// What the header of a scalar's message says: the fixed length, or 0 for a payload of variable length.
template <class T>
inline constexpr std::uint32_t kFixedLength = std::is_same_v<T, bool> ? 1
                                              : std::is_integral_v<T>&& std::is_unsigned_v<T> &&
                                                      sizeof(T) >= 4
                                                  ? sizeof(T)
                                                  : 0;

// The header of a scalar's message.
template <class T> constexpr MsgHeader scalarHeader(EntityId entity, AttributeId attribute) {
  return {entity, attribute, kFixedLength<T> == 0, kFixedLength<T>, kPlain, 0};
}

} // namespace Vyx::NboAttrLog
