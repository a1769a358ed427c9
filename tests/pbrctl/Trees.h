// Trees in tests.

#pragma once

#include "Reading.h"

#include "pbrctl/TreeBuilder.h"
#include "pbrctl/TreeReader.h"

namespace Pbrctl {

// REQUIRES: the content can be built.
inline Vyx::Ptr<Pbr::Config> built(ConfigAst const& config) {
  Diagnostics diagnostics("test.conf");
  auto const tree = buildTree(config, diagnostics);
  EXPECT_TRUE(diagnostics.ok());
  return tree;
}

inline Vyx::Ptr<Pbr::Config> treeOf(std::string const& text) { return built(parsed(text)); }

// What a file would say of the tree. REQUIRES: one can.
inline ConfigAst contentOf(Pbr::Config const& config) {
  std::vector<std::string> problems;
  ConfigAst content = readTree(config, problems);
  for (std::string const& problem : problems) ADD_FAILURE() << problem;
  return content;
}

// The only forwarding action of a policy map's class.
inline Vyx::Ptr<Pbr::PbrFwdAction> forwardOf(Pbr::Config& config, char const* map, char const* className) {
  auto const classAction = config.pmapType()->pmap(map)->currentSubConfig()->classAction(className);
  return Vyx::dynamicPtrCast<Pbr::PbrFwdAction>(classAction->policyAction(PolicyMap::actionPbrForward));
}

} // namespace Pbrctl
