// The values of a log's messages as texts, by the type records.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/VyxType.h"

#include <optional>
#include <string>

namespace Pbrctl {

// Reads a value of that type. RETURNS nothing, and reads nothing, for a type whose bytes aren't known here.
// THROWS: Vyx::Exception for bytes that are no such value.
std::optional<std::string> readLogValue(Vyx::VyxType const& type, Vyx::NboAttrLog::In& in);

} // namespace Pbrctl
