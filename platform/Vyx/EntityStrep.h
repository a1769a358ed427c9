// The text form of a pointer to an entity: the way to it from a root that was entered under a name.
//
//   reference := "" | "null" | root ("/" attribute ["/" key])*
//
// "running/pbrActions/fwdAction/0000002a-0000-0001" is a member, "running/pmapType" a single child. Each
// piece is escaped (see PathPiece.h), so that a reference is one word.
//
// Invariants:
// (1) A reference that was printed for an entity below an entered root reads back to that entity, as long as
//     it stands there.
// (2) What stands below no such root prints with a slash in front and never reads back.

#pragma once

#include "Vyx/Entity.h"
#include "Vyx/Strep.h"

#include <concepts>
#include <typeinfo>

namespace Vyx {

// Enters the root of a tree, which is held from then on; a null pointer takes the name out.
// THROWS: RangeException for a name that no reference can begin with: the empty one and "null".
void entityRootIs(Name const& name, Ptr<Entity> const& root);
// RETURNS null when none is entered under the name.
Ptr<Entity> entityRoot(Name const& name);

// The reference to the object; "null" for a null pointer. What is no entity is told by `type`.
String8 valueToStrepOfRawPtr(PtrInterface const* object, std::type_info const& type);
// Takes the front of the stretch up to its first blank. RETURNS null for an empty front and for "null".
// THROWS: RangeException when nothing stands where the reference points.
Ptr<Entity> sequenceToValueOfPtr(StrepIterator8& at, StrepIterator8 const& end, Ptr<Entity>*);
// Refuses the reference between two positions, which is to an entity of another type.
// THROWS: RangeException, always.
[[noreturn]] void cannotConvert(StrepIterator8 const& begin, StrepIterator8 const& end,
                                std::type_info const& type);

template <class E>
requires std::derived_from<E, Entity> String8 valueToStrep(E* entity) {
  return valueToStrepOfRawPtr(entity, typeid(E));
}
template <class X> String8 valueToStrep(Ptr<X> const& entity) { return valueToStrep(entity.ptr()); }

// A null pointer is no failure.
template <class X> Ptr<X> sequenceToValue(StrepIterator8& at, StrepIterator8 const& end, Ptr<X>*) {
  StrepIterator8 const begin = at;
  Ptr<Entity> const entity = sequenceToValueOfPtr(at, end, static_cast<Ptr<Entity>*>(nullptr));
  if (!entity) return {};
  auto* const converted = dynamic_cast<X*>(static_cast<PtrInterface*>(entity.ptr()));
  if (!converted) cannotConvert(begin, at, typeid(X));
  return converted;
}

} // namespace Vyx
