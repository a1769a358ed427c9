// Setters of single values and of references.

#pragma once

#include "Vyx/Ptr.h"
#include "frame/Attribute.h"
#include "frame/Round.h"

namespace frame {

// Stores, then tells. An equal value does nothing at all. For a counted pointer equal means the same entity.
// NOTIFIES: onA(), after the store.
template <class Attr> void set(typename Attr::Owner& of, typename Attr::Type const& value) {
  auto& stored = Attr::field(of);
  if (stored == value) return;
  stored = value;
  notify<Attr>(of);
}

} // namespace frame
