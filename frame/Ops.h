// How reflection and copy reach an attribute of an entity: what all kinds share.

#pragma once

#include "Vyx/ValueGenericIf.h"
#include "frame/Attribute.h"

namespace frame {

using Vyx::GenericIf;
using OpId = GenericIf::AttributeOp::OpId;
using Index = Vyx::Ptr<GenericIf const>;
using Operand = Vyx::Ptr<GenericIf>;

template <class Attr> class Ops : public Vyx::AttributeOps {
public:
  using Owner = typename Attr::Owner;
  using Type = typename Attr::Type;

protected:
  static Owner& owner(GenericIf const& self) {
    return static_cast<Owner&>(*static_cast<Vyx::Entity*>(self.object()));
  }
  static Owner& owner(Vyx::Entity& entity) { return static_cast<Owner&>(entity); }
  static Owner const& owner(Vyx::Entity const& entity) { return static_cast<Owner const&>(entity); }

  static void refuseIndex(Index const& index) {
    if (index) GenericIf::throwBadIndexAttrException(Attr::name);
  }
  [[noreturn]] static void unsupported(OpId code) {
    GenericIf::throwOpNotSupportedException(Attr::name, code, false);
  }
};

// What all kinds share that a copy carries over.
template <class Attr> class CopiedOps : public Ops<Attr> {
public:
  bool isCopied() const override { return true; }
  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier& copier) const override = 0;
};

// The one stateless object of a kind of operations.
template <class AttrOps> AttrOps const& opsInstance() {
  static AttrOps const ops;
  return ops;
}

} // namespace frame
