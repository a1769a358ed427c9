// How generated code describes an attribute to the frame.
//
// An entity type X declares one empty class for each of its attributes, say VyxAttrRecursive, derived from
// one of the kinds below. It adds what only the type can say:
//
//   static constexpr char const* name = "recursive";
//   static auto& field(auto& of) { return of.recursive_; }             (what is stored)
//   static void tell(auto& reactor) { reactor.onRecursive(); }         (its entry; keyed: with the key)
//
// Everything that the attribute does is then a function template of this folder, called with that class.

#pragma once

#include "Vyx/Fwd.h"

#include <array>
#include <tuple>
#include <utility>

namespace frame {

// Raised when generated code must be made again.
inline constexpr int kVersion = 1;

template <class X, class T, Vyx::AttributeId Id> struct AttributeOf {
  using Owner = X;
  using Type = T;
  static constexpr Vyx::AttributeId id = Id;
};

// Fixed at construction.
template <class X, class T, Vyx::AttributeId Id> struct Constant : AttributeOf<X, T, Id> {};
// A value with a setter.
template <class X, class T, Vyx::AttributeId Id> struct Scalar : AttributeOf<X, T, Id> {};
// A counted pointer to an entity held elsewhere.
template <class X, class T, Vyx::AttributeId Id> struct Reference : AttributeOf<X, Vyx::Ptr<T>, Id> {};
// A reference that is meant for a member of the owner's own collection `In`. Nothing checks it; a copy makes
// it the destination's member of the same key.
template <class X, class T, class InAttr, Vyx::AttributeId Id> struct OwnReference : Reference<X, T, Id> {
  using In = InAttr;
};
// An owned single child. The attribute's `like(owner, child)` makes one with the same constructor values.
template <class X, class T, Vyx::AttributeId Id> struct Child : AttributeOf<X, Vyx::Ptr<T>, Id> {
  using ChildType = T;
};
// Keyed values. The owner's record class is `Record`.
template <class X, class K, class V, class Rec, Vyx::AttributeId Id>
struct ValueCollection : AttributeOf<X, V, Id> {
  using Key = K;
  using Record = Rec;
};
// Keyed references to entities held elsewhere; the key is read from the entity by the attribute's `keyOf`.
template <class X, class K, class T, class Rec, Vyx::AttributeId Id>
struct ReferenceCollection : ValueCollection<X, K, Vyx::Ptr<T>, Rec, Id> {};
// Keyed owned children. The attribute's `like(owner, member)` makes a child with the same constructor values.
template <class X, class K, class T, Vyx::AttributeId Id>
struct ChildCollection : AttributeOf<X, Vyx::Ptr<T>, Id> {
  using Key = K;
  using ChildType = T;
};
// Values in the order of their entering, with rising unsigned keys.
template <class X, class V, class Rec, Vyx::AttributeId Id> struct Queue : AttributeOf<X, V, Id> {
  using Key = unsigned;
  using Record = Rec;
};
// A function; Result is what it returns.
template <class X, class R, Vyx::AttributeId Id> struct Function : AttributeOf<X, R, Id> {};

// The attributes of one type, in the order of its record.
template <class... Attrs> struct AttributeList {};

} // namespace frame
