// Reflection on and copy of keyed values, and of queues.

#pragma once

#include "frame/CollectionIterator.h"
#include "frame/Queue.h"
#include "frame/ValueCollection.h"

namespace frame {

// The operations that every collection has without an index.
template <class Attr> Operand countOp(typename Attr::Owner const& of, OpId code) {
  auto const& map = Attr::field(of);
  if (code == GenericIf::AttributeOp::memberCount) return Vyx::wrap<unsigned>(map.count());
  if (code == GenericIf::AttributeOp::version) return Vyx::wrap<unsigned>(map.version());
  GenericIf::throwOpNotSupportedException(Attr::name, code, false);
}

// Whether two collections of values are equal, found without touching a count.
template <class Map> bool sameValues(Map const& a, Map const& b) {
  if (a.count() != b.count()) return false;
  typename Map::Walk at(a);
  for (typename Map::Walk other(b); other; ++other, ++at)
    if (!(at->fwkKey() == other->fwkKey()) || !(at->value() == other->value())) return false;
  return true;
}

template <class Attr> class ValueCollectionOps final : public CopiedOps<Attr> {
public:
  using typename Ops<Attr>::Owner;
  using Key = typename Attr::Key;
  using Type = typename Attr::Type;
  using Map = std::remove_cvref_t<decltype(Attr::field(std::declval<Owner&>()))>;
  using At = Iterator<Owner, Map>;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& operand) const override {
    Owner& of = this->owner(self);
    if (!index) return countOp<Attr>(of, code);
    Key const key = Vyx::unwrapOr<Key>(index, "vyx_index");
    switch (code) {
    case GenericIf::AttributeOp::read:
      return Vyx::wrap<Type>(value<Attr>(of, key));
    case GenericIf::AttributeOp::contains:
      return Vyx::wrap<bool>(Attr::field(of).find(key) != nullptr);
    case GenericIf::AttributeOp::write:
      write(of, key, Vyx::unwrapOr<Type>(operand, Attr::name));
      return {};
    case GenericIf::AttributeOp::del:
      return deleted(valueDel<Attr>(of, key));
    default:
      this->unsupported(code);
    }
  }

  std::unique_ptr<GenericIf::AnyIterator> iterator(GenericIf const& self,
                                                   GenericIf const* key) const override {
    return collectionIterator<At, Attr, ReadValue>(this->owner(self), key);
  }

  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier&) const override {
    Owner& of = this->owner(dest);
    Map& to = Attr::field(of);
    Map const& from = Attr::field(this->owner(src));
    if (sameValues<Map>(to, from)) return false;
    if constexpr (requires { to.expect(from.count()); }) to.expect(from.count());
    for (At at(&of, to); at; at.advance())
      if (!from.find(at.key())) valueDelAt<Attr>(of, at);
    for (typename Map::IteratorConst at(from); at; at.advance()) write(of, at.key(), at.current()->value());
    return true;
  }

private:
  // Through the entity's own setter where that is virtual.
  static void write(Owner& of, Key const& key, Type const& value) {
    if constexpr (requires { Attr::write(of, key, value); })
      Attr::write(of, key, value);
    else
      valueIs<Attr>(of, key, value);
  }
  // A removed bool is the answer itself; of another value the answer is whether it was other than zero.
  static Operand deleted(Type const& value) {
    if constexpr (std::is_same_v<Type, bool>)
      return Vyx::wrap<bool>(value);
    else
      return Vyx::wrap<bool>(!(value == Type()));
  }
};

template <class Attr> class QueueOps final : public CopiedOps<Attr> {
public:
  using typename Ops<Attr>::Owner;
  using Type = typename Attr::Type;
  using Map = std::remove_cvref_t<decltype(Attr::field(std::declval<Owner&>()))>;
  using At = Iterator<Owner, Map>;

  Operand op(GenericIf& self, OpId code, Index const& index, Operand const& value) const override {
    Owner& of = this->owner(self);
    if (!index) return countOp<Attr>(of, code);
    unsigned const key = Vyx::unwrapOr<unsigned>(index, "vyx_index");
    auto const* member = Attr::field(of).find(key);
    switch (code) {
    case GenericIf::AttributeOp::read:
      return Vyx::wrap<Type>(member ? member->value() : Type());
    case GenericIf::AttributeOp::contains:
      return Vyx::wrap<bool>(member != nullptr);
    case GenericIf::AttributeOp::write:
      queueIs<Attr>(of, key, Vyx::unwrapOr<Type>(value, Attr::name));
      return {};
    case GenericIf::AttributeOp::del:
      queueDel<Attr>(of, key);
      return Vyx::wrap<bool>(member != nullptr);
    default:
      this->unsupported(code);
    }
  }

  std::unique_ptr<GenericIf::AnyIterator> iterator(GenericIf const& self,
                                                   GenericIf const* key) const override {
    return collectionIterator<At, Attr, ReadValue>(this->owner(self), key);
  }

  // Members keep their keys. What differs in its key goes, and what is missing then is entered behind it.
  bool copy(Vyx::Entity& dest, Vyx::Entity const& src, Vyx::EntityCopier&) const override {
    Owner& of = this->owner(dest);
    typename Map::IteratorConst model(Attr::field(this->owner(src)));
    bool changed = false;
    for (At at(&of, Attr::field(of)); at; at.advance()) {
      bool const same = model && model.key() == at.key();
      changed = changed || !same || !(model.current()->value() == at.value());
      if (same) {
        queueIs<Attr>(of, at.key(), model.current()->value());
        model.advance();
      } else {
        queueDel<Attr>(of, at.key());
      }
    }
    changed = changed || model;
    for (; model; model.advance()) queueEnter<Attr>(of, model.key(), model.current()->value());
    return changed;
  }
};

} // namespace frame
