#include "Pbr/PbrCopy.h"
#include "pbrctl/Commands.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/JsonReader.h"
#include "pbrctl/JsonWriter.h"
#include "pbrctl/TypePrinter.h"

namespace Pbrctl {

int showTypes(std::string const& name, bool json, Io io) {
  std::vector<Vyx::VyxType const*> types = allTypes();
  if (!name.empty()) {
    Vyx::VyxType const* const type = findType(name);
    if (!type) {
      io.err << "pbrctl: error: there is no type " << inQuotes(name) << '\n';
      return kRefused;
    }
    types = {type};
  }
  if (json) {
    nlohmann::json out = {{"version", kJsonVersion}, {"types", nlohmann::json::array()}};
    for (Vyx::VyxType const* type : types) out["types"].push_back(typeJson(*type));
    writeDocument(out, io.out);
  } else if (name.empty()) {
    printTypes(types, io.out);
  } else {
    printType(*types.front(), io.out);
  }
  return kDone;
}

} // namespace Pbrctl
