// The type records of the model, for people and for programs.

#pragma once

#include "Vyx/VyxType.h"

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Pbrctl {

// Every type that the process knows. ORDER: by full name.
std::vector<Vyx::VyxType const*> allTypes();
// The type of that full name, or of that short name if only one has it; else null.
Vyx::VyxType const* findType(std::string const& name);

void printTypes(std::vector<Vyx::VyxType const*> const& types, std::ostream& out);
void printType(Vyx::VyxType const& type, std::ostream& out);
nlohmann::json typeJson(Vyx::VyxType const& type);

} // namespace Pbrctl
