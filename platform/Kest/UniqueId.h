// The identifier of an action, of a version of a map, of a class map's status.

#pragma once

#include "Kest/IdWords.h"
#include "Vyx/Fwd.h"

namespace Kest {

class UniqueId : public Kest::IdWords<UniqueId> {
public:
  using IdWords::IdWords;

  static Vyx::VyxType const* _fwkType();
};
static_assert(sizeof(UniqueId) == 8 && alignof(UniqueId) == 4);

Vyx::String8 valueToStrep(UniqueId const& id);
UniqueId sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, UniqueId*);
std::ostream& operator<<(std::ostream& out, UniqueId const& id);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        UniqueId const& id) {
  out->put(id);
  return out;
}

} // namespace Kest
