// Reflection on and copy of keyed owned children.

#pragma once

#include "frame/Beside.h"
#include "frame/ChildCollection.h"
#include "frame/ValueCollectionOps.h"

namespace frame {

template <class Attr> class ChildCollectionOps final : public CopiedOps<Attr> {
public:
  using typename Ops<Attr>::Owner;
  using Key = typename Attr::Key;
  using Map = std::remove_cvref_t<decltype(Attr::field(std::declval<Owner&>()))>;
  using At = Iterator<Owner, Map>;
  using ChildType = typename Attr::ChildType;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const&) const override {
    Owner& of = this->owner(self);
    if (!index) return countOp<Attr>(of, code);
    Key const key = Vyx::unwrapOr<Key>(index, "vyx_index");
    switch (code) {
    case GenericIf::AttributeOp::read:
      return Vyx::wrap(Vyx::Ptr<ChildType>(Attr::field(of).find(key)));
    case GenericIf::AttributeOp::contains:
      return Vyx::wrap<bool>(Attr::field(of).find(key) != nullptr);
    case GenericIf::AttributeOp::del:
      return Vyx::wrap<bool>(static_cast<bool>(memberDel<Attr>(of, key)));
    default:
      this->unsupported(code);
    }
  }

  std::unique_ptr<GenericIf::AnyIterator> iterator(GenericIf const& self,
                                                   GenericIf const* key) const override {
    return collectionIterator<At, Attr, ReadMember>(this->owner(self), key);
  }

  // Members that the source doesn't have go first; then each of the source's is found or made, and copied.
  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier& copier) const override {
    Owner& of = this->owner(dest);
    Map& to = Attr::field(of);
    Map const& from = Attr::field(this->owner(src));
    bool changed = false;
    if constexpr (requires { to.expect(from.count()); }) to.expect(from.count());
    if (!sameKeys(to, from))
      for (At at(&of, to); at; at.advance())
        if (!from.find(at.key())) changed = static_cast<bool>(memberDelAt<Attr>(of, at)) || changed;
    Beside<Map> beside(to);
    for (typename Map::IteratorConst at(from); at; at.advance()) {
      ChildType const& model = *at.current();
      bool isNew = false;
      auto const make = [&] {
        isNew = true;
        return Attr::like(of, model);
      };
      Vyx::Ptr<ChildType> child = beside.findOr(model.fwkKey(), make);
      if (!isNew && !sameParameters(*child, model)) {
        memberDel<Attr>(of, model.fwkKey());
        child = make();
      }
      changed = copier.copyEntity(*child, model) || isNew || changed;
    }
    return changed;
  }

  Vyx::Ptr<Vyx::Entity> childLike(Vyx::Entity& of, Vyx::Entity const& model) const override {
    return Attr::like(this->owner(of), static_cast<ChildType const&>(model));
  }

private:
  static bool sameKeys(Map const& a, Map const& b) {
    if (a.count() != b.count()) return false;
    typename Map::Walk at(a);
    for (typename Map::Walk other(b); other; ++other, ++at)
      if (!(at->fwkKey() == other->fwkKey())) return false;
    return true;
  }
};

} // namespace frame
