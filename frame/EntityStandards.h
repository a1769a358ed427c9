// The attributes that every entity has from the runtime: reflection on them, and the record of Vyx::Entity.

#pragma once

#include "frame/Ops.h"

namespace frame {

// Of no entity type in particular.
class StandardOps : public Vyx::AttributeOps {
protected:
  static Vyx::Entity& entity(GenericIf const& self) { return *static_cast<Vyx::Entity*>(self.object()); }
  // What a read-only attribute checks before it is read.
  static void readOnly(char const* name, OpId code, Index const& index);
};

class IsNondestructingOps final : public StandardOps {
public:
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override;
};

class HasAttrLogInterfaceOps final : public StandardOps {
public:
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override;
};

} // namespace frame
