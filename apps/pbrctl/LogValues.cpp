#include "pbrctl/LogValues.h"

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/ValueCodec.h"
#include "Vyx/ValueGenericIf.h"
#include "pbrctl/Attributes.h"

#include <map>

namespace Pbrctl {

namespace {

using Vyx::NboAttrLog::In;

template <class T> std::string textOf(T const& value) { return plainText(*Vyx::wrap(value)); }

template <class T> std::string readText(In& in) {
  T const value = Vyx::NboAttrLog::read<T>(in);
  if constexpr (std::is_enum_v<T>)
    return textOf(value) + " (" + std::to_string(static_cast<unsigned>(value)) + ")";
  else
    return textOf(value);
}

using Readers = std::map<Vyx::VyxType const*, std::string (*)(In&)>;

template <class... T> Readers readersOf() { return {{Vyx::typeOf<T>(), &readText<T>}...}; }

// A set's own text form leaves out where its next hops live.
std::string readNexthopSet(In& in) {
  auto const set = Vyx::NboAttrLog::read<Pbr::NexthopSet>(in);
  return textOf(set) + " in " + textOf(set.vrfName());
}

Readers const& readers() {
  static Readers const kReaders = [] {
    Readers readers =
        readersOf<bool, unsigned char, unsigned short, unsigned, unsigned long long, double, Vyx::String8,
                  Vyx::Name, Kest::UniqueId, Acl::UniqueId, Acl::RuleCheckpointStatus, Acl::AclType,
                  Lomu::IpGenAddr, Lomu::IntfId, L3::VrfName, PolicyMap::MatchRule, PolicyMap::ActionType,
                  PolicyMap::MapType, PolicyMap::ApplyState, PolicyMap::IntfError, PolicyMap::IntfErrorKey,
                  PolicyMap::ClassMapMatchOption, Pbr::PbrActionType, Pbr::Dscp, Pbr::NexthopIndex>();
    readers[Vyx::typeOf<Pbr::NexthopSet>()] = &readNexthopSet;
    return readers;
  }();
  return kReaders;
}

} // namespace

std::optional<std::string> readLogValue(Vyx::VyxType const& type, In& in) {
  auto const found = readers().find(&type);
  if (found == readers().end()) return std::nullopt;
  return found->second(in);
}

} // namespace Pbrctl
