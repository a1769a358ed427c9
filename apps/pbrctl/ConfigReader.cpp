#include "pbrctl/ConfigReader.h"

#include "pbrctl/JsonReader.h"
#include "pbrctl/TextReader.h"

namespace Pbrctl {

ConfigAst readConfig(SourceText const& source, Diagnostics& diagnostics) {
  ConfigAst config = source.isJson() ? readJsonConfig(source, diagnostics) : readText(source, diagnostics);
  checkReferences(config, diagnostics);
  return config;
}

void checkReferences(ConfigAst const& config, Diagnostics& diagnostics) {
  for (auto const& [mapName, map] : config.policyMaps)
    for (auto const& [name, classAst] : map.classes)
      if (config.classMaps.count(name) == 0)
        diagnostics.error(classAst.place, "policy-map " + inQuotes(mapName) + " names the class-map " +
                                              inQuotes(name) + ", which is not defined");
  for (auto const& [interface, bindings] : config.interfaces)
    for (auto const* binding : {&bindings.policy, &bindings.fallback})
      if (*binding && config.policyMaps.count((*binding)->name) == 0)
        diagnostics.error((*binding)->place, "interface " + inQuotes(interface) + " names the policy-map " +
                                                 inQuotes((*binding)->name) + ", which is not defined");
}

} // namespace Pbrctl
