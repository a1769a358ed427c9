// What the templates of this folder know of an attribute: its kind, and its place in the dirty word.

#pragma once

#include "Vyx/VyxType.h"
#include "frame/Attribute.h"
#include "frame/Round.h"
#include "frame/Scalar.h"

namespace replication {

// The one attribute that every entity has. Its setter is the entity's own, which is virtual.
template <class X> struct IsNondestructing : frame::Scalar<X, bool, Vyx::kIsNondestructingId> {
  static constexpr char const* name = "isNondestructing";
  static bool get(X const& of) { return of.isNondestructing(); }
  static void write(X& of, bool value) { of.isNondestructingIs(value); }
  static void tell(auto& reactor) { reactor.onIsNondestructing(); }
};

enum class Kind { scalar, text, reference, child, values, references, children, queue };

// A `Vyx::String8` crosses the log in pieces, a `Vyx::Name` in one.
template <class X, class T, Vyx::AttributeId I> constexpr Kind kindOf(frame::Scalar<X, T, I> const*) {
  return std::is_same_v<T, Vyx::String8> ? Kind::text : Kind::scalar;
}
template <class X, class T, Vyx::AttributeId I> constexpr Kind kindOf(frame::Reference<X, T, I> const*) {
  return Kind::reference;
}
template <class X, class T, Vyx::AttributeId I> constexpr Kind kindOf(frame::Child<X, T, I> const*) {
  return Kind::child;
}
template <class X, class K, class V, class R, Vyx::AttributeId I>
constexpr Kind kindOf(frame::ValueCollection<X, K, V, R, I> const*) {
  return Kind::values;
}
template <class X, class K, class T, class R, Vyx::AttributeId I>
constexpr Kind kindOf(frame::ReferenceCollection<X, K, T, R, I> const*) {
  return Kind::references;
}
template <class X, class K, class T, Vyx::AttributeId I>
constexpr Kind kindOf(frame::ChildCollection<X, K, T, I> const*) {
  return Kind::children;
}
template <class X, class V, class R, Vyx::AttributeId I>
constexpr Kind kindOf(frame::Queue<X, V, R, I> const*) {
  return Kind::queue;
}

template <class Attr> inline constexpr Kind kKind = kindOf(static_cast<Attr const*>(nullptr));
template <class Attr>
inline constexpr bool isKeyed = kKind<Attr> == Kind::values || kKind<Attr> == Kind::references ||
                                kKind<Attr> == Kind::children || kKind<Attr> == Kind::queue;
template <class Attr>
inline constexpr bool isChildKind = kKind<Attr> == Kind::child || kKind<Attr> == Kind::children;
// Whether a walk over it may stop in the middle.
template <class Attr> inline constexpr bool isWalked = isKeyed<Attr> || kKind<Attr> == Kind::text;
// Whether a newer writer's values may stand in front of what this one knows.
template <class Attr> inline constexpr bool hasEnvelope = isChildKind<Attr> || kKind<Attr> == Kind::queue;

// The attributes of a type that travel, ascending by id; each has its bit by its place.
template <class Attr, class... Attrs> constexpr unsigned dirtyBit(frame::AttributeList<Attrs...>) {
  unsigned bit = 1;
  bool found = false;
  ((found = found || std::is_same_v<Attr, Attrs>, bit = found ? bit : bit << 1), ...);
  return bit;
}

// Calls `each` with a null pointer of every attribute's type, in order.
template <class... Attrs, class Each> void forEach(frame::AttributeList<Attrs...>, Each const& each) {
  (each(static_cast<Attrs const*>(nullptr)), ...);
}

template <class Attr> decltype(auto) valueOf(typename Attr::Owner const& of) {
  if constexpr (requires { Attr::get(of); })
    return Attr::get(of);
  else
    return (Attr::field(of));
}

// Through the entity's own setter where that is virtual.
template <class Attr> void setValue(typename Attr::Owner& of, typename Attr::Type const& value) {
  if constexpr (requires { Attr::write(of, value); })
    Attr::write(of, value);
  else
    frame::set<Attr>(of, value);
}

// The attribute's record, looked up once.
template <class Attr> Vyx::VyxAttr const* recordOf() {
  static Vyx::VyxAttr const* const record = Attr::Owner::_fwkType()->attr(Attr::id);
  return record;
}

} // namespace replication
