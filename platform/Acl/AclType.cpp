#include "Acl/AclType.h"

#include "Vyx/ValueType.h"

#include <ostream>

namespace Acl {

namespace {

// By number.
constexpr char const* kNames[] = {"ip", "ipv6", "mac"};

} // namespace

AclType AclTypeInstance(unsigned value) {
  if (value >= std::size(kNames)) Vyx::throwRangeException("AclType");
  return static_cast<AclType>(value);
}

AclType AclTypeInstance(Vyx::String8 const& name) {
  unsigned value = 0;
  while (value < std::size(kNames) && name != kNames[value]) ++value;
  return AclTypeInstance(value);
}

Vyx::String8 stringValue(AclType type) {
  auto const value = static_cast<unsigned>(type);
  if (value < std::size(kNames)) return kNames[value];
  return Vyx::format("AclType(%d)", static_cast<int>(value));
}

Vyx::String8 valueToStrep(AclType const& type) { return Vyx::String8("'") + stringValue(type) + "'"; }

AclType sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, AclType*) {
  return AclTypeInstance(Vyx::sequenceToValue<Vyx::String8>(at, end));
}

std::ostream& operator<<(std::ostream& out, AclType const& type) { return out << stringValue(type); }

Vyx::VyxType const* vyxTypeOf(AclType const*) { return Vyx::valueTypeRecord<AclType>("Acl::AclType"); }

} // namespace Acl
