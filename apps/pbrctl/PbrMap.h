// What `pbr-map` blocks say, before it is put in terms of class maps and policy maps.

#pragma once

#include "pbrctl/ConfigAst.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace Pbrctl {

struct PbrSequence {
  std::optional<Lomu::IpGenPrefix> source;
  std::optional<Lomu::IpGenPrefix> destination;
  std::optional<unsigned> protocol;
  std::optional<unsigned> sourcePort;
  std::optional<unsigned> destinationPort;
  std::optional<unsigned> matchDscp;
  std::optional<ForwardAst> forward;
  std::optional<unsigned> setDscp;
  Place place;
};

using PbrMaps = std::map<std::string, std::map<std::uint32_t, PbrSequence>>;

// The name of the class that stands for a sequence.
inline std::string pbrClassName(std::string const& map, std::uint32_t sequence) {
  return map + "-" + std::to_string(sequence);
}

} // namespace Pbrctl
