// An interface, by its name. The default stands for none.

#pragma once

#include "Kest/TextId.h"
#include "Vyx/Fwd.h"

namespace Lomu {

class IntfId : public Kest::TextId<IntfId> {
public:
  static constexpr char const* kTooLong = "IntfId::bytes > 100 not allowed";
  using TextId::TextId;

  static Vyx::VyxType const* _fwkType();
};

Vyx::String8 valueToStrep(IntfId const& name);
IntfId sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IntfId*);
std::ostream& operator<<(std::ostream& out, IntfId const& name);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        IntfId const& name) {
  return out << name.stringValue();
}

} // namespace Lomu
