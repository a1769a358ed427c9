// A walk over a collection of unknown kind.

#pragma once

#include "frame/Ops.h"

namespace frame {

// `At` is an iterator of the collection that keeps the owner alive; `read` wraps what it stands on.
template <class At, class Attr, class Read> class CollectionIterator final : public GenericIf::AnyIterator {
public:
  explicit CollectionIterator(At at) : at_(std::move(at)) {}
  bool nonNull() const override { return static_cast<bool>(at_); }
  void advance() override { at_.advance(); }
  Operand key() const override { return Vyx::wrap<typename Attr::Key>(at_.key()); }
  Operand value() const override { return Read()(at_); }
  std::unique_ptr<GenericIf::AnyIterator> clone() const override {
    return std::make_unique<CollectionIterator>(*this);
  }

private:
  At at_;
};

// RETURNS a walk from the key, or from the first member.
template <class At, class Attr, class Read>
std::unique_ptr<GenericIf::AnyIterator> collectionIterator(typename Attr::Owner& of, GenericIf const* key) {
  Vyx::Ptr<typename Attr::Owner> const held(&of);
  auto const& map = Attr::field(of);
  using Walk = CollectionIterator<At, Attr, Read>;
  if (key) return std::make_unique<Walk>(At(held, map, Vyx::unwrap<typename Attr::Key>(*key)));
  return std::make_unique<Walk>(At(held, map));
}

struct ReadValue {
  template <class At> Operand operator()(At const& at) const {
    return Vyx::wrap<std::remove_cvref_t<decltype(at.value())>>(at.value());
  }
};

struct ReadMember {
  template <class At> Operand operator()(At const& at) const { return Vyx::wrap(at.member()); }
};

} // namespace frame
