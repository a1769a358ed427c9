// Random configurations for the tests of readers and writers.

#pragma once

#include "pbrctl/ConfigAst.h"
#include "support/Random.h"

namespace Pbrctl {

class RandomConfig {
public:
  explicit RandomConfig(Random& random) : random_(random) {}

  // Anything that a file can say, references to what is not there left out.
  ConfigAst make();

private:
  std::string name(char const* kind, std::uint32_t most);
  Lomu::IpGenAddr address();
  Lomu::IpGenPrefix prefix(unsigned family);
  NexthopSet nexthops();
  PolicyMap::MatchRule rule();
  PolicyMap::PortRange ports();
  ForwardAst forward();
  ClassMapAst classMap();
  PolicyMapAst policyMap(ConfigAst const& config);

  Random& random_;
};

} // namespace Pbrctl
