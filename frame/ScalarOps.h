// Reflection on and copy of single values and references.

#pragma once

#include "frame/Ops.h"
#include "frame/Scalar.h"

namespace frame {

// Fixed at construction: read only, never copied.
template <class Attr> class ConstantOps final : public Ops<Attr> {
public:
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const&) const override {
    this->refuseIndex(index);
    if (code != GenericIf::AttributeOp::read) this->unsupported(code);
    return Vyx::wrap<typename Attr::Type>(Attr::field(this->owner(self)));
  }
};

template <class Attr> class ScalarOps : public CopiedOps<Attr> {
public:
  using typename Ops<Attr>::Owner;
  using typename Ops<Attr>::Type;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override {
    this->refuseIndex(index);
    Owner& of = this->owner(self);
    if (code == GenericIf::AttributeOp::read) return Vyx::wrap<Type>(Attr::field(of));
    if (code != GenericIf::AttributeOp::write) this->unsupported(code);
    write(of, Vyx::unwrapOr<Type>(value, Attr::name));
    return {};
  }

  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier&) const override {
    return assign(this->owner(dest), Attr::field(this->owner(src)));
  }

protected:
  // Through the entity's own setter where that is virtual.
  static void write(Owner& of, Type const& value) {
    if constexpr (requires { Attr::write(of, value); })
      Attr::write(of, value);
    else
      set<Attr>(of, value);
  }
  static bool assign(Owner& of, Type const& value) {
    if (Attr::field(of) == value) return false;
    write(of, value);
    return true;
  }
};

// A reference to an own child is copied as a reference to the destination's child of the same key.
template <class Attr> class OwnReferenceOps final : public ScalarOps<Attr> {
public:
  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier&) const override {
    auto const& from = Attr::field(this->owner(src));
    auto& of = this->owner(dest);
    if (!from) return this->assign(of, nullptr);
    return this->assign(of, typename Attr::Type(Attr::In::field(of).find(from->fwkKey())));
  }
};

} // namespace frame
