// The name of a routing instance.

#pragma once

#include "Kest/TextId.h"
#include "Vyx/Fwd.h"

namespace L3 {

class VrfName : public Kest::TextId<VrfName> {
public:
  static constexpr char const* kTooLong = "VrfName::bytes > 100 not allowed";
  using TextId::TextId;

  static Vyx::VyxType const* _fwkType();
};

Vyx::String8 valueToStrep(VrfName const& name);
VrfName sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, VrfName*);
std::ostream& operator<<(std::ostream& out, VrfName const& name);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        VrfName const& name) {
  return out << name.stringValue();
}

} // namespace L3
