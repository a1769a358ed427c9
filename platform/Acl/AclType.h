// What kind of packets an ACL looks at.

#pragma once

#include "Vyx/Fwd.h"
#include "Vyx/Strep.h"

#include <cstdint>

namespace Acl {

// The numbers are on the wire and in checkpoints.
enum AclType : std::uint32_t { ip = 0, ipv6 = 1, mac = 2 };

// THROWS: RangeException "AclType" for what is no enumerator. Names are case-sensitive.
AclType AclTypeInstance(unsigned value);
AclType AclTypeInstance(Vyx::String8 const& name);
inline AclType vyxInstance(AclType const*, unsigned value) { return AclTypeInstance(value); }

// The bare name; "AclType(7)" for a number that a cast has made. Never throws.
Vyx::String8 stringValue(AclType type);

// The name in single quotes. The reader takes it with or without them.
Vyx::String8 valueToStrep(AclType const& type);
AclType sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, AclType*);

// The bare name.
std::ostream& operator<<(std::ostream& out, AclType const& type);

Vyx::VyxType const* vyxTypeOf(AclType const*);

} // namespace Acl
