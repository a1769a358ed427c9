// Names that many headers of the runtime use and few need whole.

#pragma once

#include <cstdint>

namespace Vyx {

// Unique within a type and its bases. An entity's own attributes count from 2 in its class's block of 128.
using AttributeId = std::int32_t;

class Activity;
class ActivityConfig;
class Entity;
class EntityId;
class GenericIf;
class PtrInterface;
class StreamAdapter;
class VyxAttr;
class VyxType;
template <class T> class Ptr;

// Marks the constructors that read a value off a log.
struct StreamBogon {};

namespace NboAttrLog {
class Demuxer;
class FlowIn;
class FlowOut;
class In;
class Out;
struct MsgHeader;
} // namespace NboAttrLog

// Ids that every entity has.
inline constexpr AttributeId kFwkKeyId = 0;
inline constexpr AttributeId kZeroReferencesId = 5;
inline constexpr AttributeId kIsNondestructingId = 6;
inline constexpr AttributeId kSyncModeId = 135;
inline constexpr AttributeId kNoParentAttributeId = 136;
inline constexpr AttributeId kEnvelopeId = 144;
inline constexpr AttributeId kHasAttrLogInterfaceId = 154;

} // namespace Vyx
