// Reflection on and copy of owned single children.

#pragma once

#include "frame/Ops.h"
#include "frame/OwnedChild.h"

namespace frame {

template <class Attr> class ChildOps final : public CopiedOps<Attr> {
public:
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const&) const override {
    this->refuseIndex(index);
    if (code == GenericIf::AttributeOp::read)
      return Vyx::wrap<typename Attr::Type>(Attr::field(this->owner(self)));
    if (code != GenericIf::AttributeOp::del) this->unsupported(code);
    return Vyx::wrap<bool>(static_cast<bool>(childDel<Attr>(this->owner(self))));
  }

  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier& copier) const override {
    auto& of = this->owner(dest);
    Vyx::Ptr<typename Attr::ChildType> const from(Attr::field(this->owner(src)));
    if (!from) return static_cast<bool>(childDel<Attr>(of));
    auto const before = Attr::field(of).ptr();
    auto const child = Attr::like(of, *from);
    bool const made = child.ptr() != before;
    return copier.copyEntity(*child, *from) || made;
  }

  Vyx::Ptr<Vyx::Entity> childLike(Vyx::Entity& of, Vyx::Entity const& model) const override {
    return Attr::like(this->owner(of), static_cast<typename Attr::ChildType const&>(model));
  }
};

} // namespace frame
