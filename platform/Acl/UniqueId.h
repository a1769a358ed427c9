// The identifier of a rule of an ACL, and of a version of one.

#pragma once

#include "Kest/IdWords.h"
#include "Vyx/Fwd.h"

namespace Acl {

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

} // namespace Acl
