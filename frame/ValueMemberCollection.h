// The keyed members of value types, as their records and reflection see them.
//
// The member's class has static `count(of)`, `iterator(of)`, `iterator(of, key)`, `get(of, key)`,
// `set(of, key, value)` and `del(of, key)`.

#pragma once

#include "frame/CollectionIterator.h"
#include "frame/ValueMembers.h"

namespace frame {

template <class X, class K, class V, Vyx::AttributeId Id>
struct ValueMemberCollection : AttributeOf<X, V, Id> {
  using Key = K;
};

template <class Attr> class ValueMemberCollectionOps final : public Vyx::AttributeOps {
public:
  using Key = typename Attr::Key;
  using Type = typename Attr::Type;
  using Owner = typename Attr::Owner;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override {
    auto& of = *static_cast<Owner*>(self.object());
    if (!index) {
      if (code == GenericIf::AttributeOp::memberCount) return Vyx::wrap<unsigned>(Attr::count(of));
      if constexpr (requires { Attr::iterator(of).version(); })
        if (code == GenericIf::AttributeOp::version) return Vyx::wrap<unsigned>(Attr::iterator(of).version());
      unsupported(code);
    }
    Key const key = Vyx::unwrapOr<Key>(index, "vyx_index");
    switch (code) {
    case GenericIf::AttributeOp::read:
      return Vyx::wrap<Type>(Attr::get(of, key));
    case GenericIf::AttributeOp::contains:
      return Vyx::wrap<bool>(contains(of, key));
    case GenericIf::AttributeOp::write:
      Attr::set(of, key, Vyx::unwrapOr<Type>(value, Attr::name));
      return {};
    case GenericIf::AttributeOp::del:
      return Vyx::wrap<bool>(!(Attr::del(of, key) == Type()));
    default:
      unsupported(code);
    }
  }

  // REQUIRES: the reflection object, whose value is walked, outlives the walk.
  std::unique_ptr<GenericIf::AnyIterator> iterator(GenericIf const& self,
                                                   GenericIf const* key) const override {
    using At = decltype(Attr::iterator(std::declval<Owner const&>()));
    using Walk = CollectionIterator<At, Attr, ReadValue>;
    auto const& of = *static_cast<Owner const*>(self.object());
    if (key) return std::make_unique<Walk>(Attr::iterator(of, Vyx::unwrap<Key>(*key)));
    return std::make_unique<Walk>(Attr::iterator(of));
  }

private:
  static bool contains(Owner const& of, Key const& key) {
    auto const at = Attr::iterator(of, key);
    return at && at.key() == key;
  }
  [[noreturn]] static void unsupported(OpId code) {
    GenericIf::throwOpNotSupportedException(Attr::name, code, false);
  }
};

template <class Attr, class X, class K, class V, Vyx::AttributeId I>
void defineAttr(Definition& type, ValueMemberCollection<X, K, V, I> const*) {
  type.plain(Attr::name, Vyx::typeOf<V>(), Vyx::typeOf<K>(), flags::valueMemberCollection,
             Introspection::isIndependentDomainAttr_(), I, &opsInstance<ValueMemberCollectionOps<Attr>>());
}

} // namespace frame
