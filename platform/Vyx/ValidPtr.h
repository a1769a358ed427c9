// The null check that is written out where a null pointer would be a failure.

#pragma once

#include "Vyx/Exception.h"
#include "Vyx/Ptr.h"

namespace Vyx {

// THROWS: RangeException "null ValidPtr".
template <class T> Ptr<T> validPtr(Ptr<T> p) {
  if (__builtin_expect(!p, false)) throwRangeException("null ValidPtr");
  return p;
}

// Makes an object and checks what came out, as every factory does.
template <class T, class... Arguments> Ptr<T> make(Arguments&&... arguments) {
  return validPtr(ptrFromNew(new T(std::forward<Arguments>(arguments)...)));
}

} // namespace Vyx
