// What the two flag words of an attribute record say, and the words of each kind of attribute.

#pragma once

#include "Vyx/VyxAttr.h"

namespace frame {

// The low word.
enum LowFlag : std::uint32_t {
  kAttribute = 0x1,           // Every attribute.
  kWritable = 0x2,            // After construction.
  kWritableInValue = 0x4,     // Member of a value type.
  kReadByValue = 0x8,         // Read without a reactor.
  kNotifying = 0x40,          // The reactor has an entry for it.
  kStored = 0x100,            // Part of the object's state.
  kRedefinesRuntime = 0x2000, // An attribute of the runtime's base.
  kOrdinary = 0x20000,        // All but fwkKey and isNondestructing.
  kData = 0x200000,           // All but functions and enumerators.
  kKeyed = 0x1800000,         // Keyed collection.
  kPointsAtEntity = 0x8000000,
};

// The high word.
enum HighFlag : std::uint32_t {
  kConstantOfType = 0x10,
  kDeclared = 0x400, // All but isNondestructing.
  kEnumerator = 0x200000,
  kMutableInEntity = 0x1000000,
  kParentMakes = 0x10000000,
  kFixed = 0x40000000, // At construction.
};

using AttrFlags = Vyx::VyxAttr::AttrFlags;

namespace flags {

inline constexpr std::uint32_t kEntityData =
    kAttribute | kWritable | kNotifying | kStored | kOrdinary | kData;

inline constexpr AttrFlags enumerator{kAttribute | kOrdinary, kDeclared | kEnumerator | kFixed};
inline constexpr AttrFlags function{kAttribute | kOrdinary, kDeclared};
inline constexpr AttrFlags hasAttrLogInterface{kAttribute | kRedefinesRuntime | kOrdinary, kDeclared};
inline constexpr AttrFlags isNondestructing{kAttribute | kWritable | kNotifying | kRedefinesRuntime,
                                            kMutableInEntity};
inline constexpr AttrFlags fwkKey{kAttribute | kData, kDeclared};
inline constexpr AttrFlags constant{kAttribute | kReadByValue | kStored | kOrdinary | kData,
                                    kDeclared | kFixed};
inline constexpr AttrFlags scalar{kEntityData, kDeclared | kMutableInEntity};
inline constexpr AttrFlags valueCollection{kEntityData | kKeyed, kDeclared | kMutableInEntity};
inline constexpr AttrFlags reference{kEntityData | kPointsAtEntity, kDeclared | kMutableInEntity};
inline constexpr AttrFlags referenceCollection{kEntityData | kKeyed | kPointsAtEntity,
                                               kDeclared | kMutableInEntity};
inline constexpr AttrFlags child{kEntityData | kPointsAtEntity, kDeclared | kMutableInEntity | kParentMakes};
inline constexpr AttrFlags childCollection{kEntityData | kKeyed | kPointsAtEntity,
                                           kDeclared | kMutableInEntity | kParentMakes};
inline constexpr AttrFlags valueMember{
    kAttribute | kWritable | kWritableInValue | kReadByValue | kStored | kOrdinary | kData, kDeclared};
inline constexpr AttrFlags valueMemberCollection{
    kAttribute | kWritable | kWritableInValue | kStored | kOrdinary | kData | kKeyed, kDeclared};
inline constexpr AttrFlags valueComputed{kAttribute | kReadByValue | kOrdinary | kData, kDeclared};
inline constexpr AttrFlags valueConstant{kAttribute | kOrdinary | kData,
                                         kDeclared | kConstantOfType | kFixed};

} // namespace flags
} // namespace frame
