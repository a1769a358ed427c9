// From a C++ type to its record.

#pragma once

#include "Vyx/Strep.h"
#include "Vyx/VyxType.h"

namespace Vyx {

// The records of the built-in types; their names are those of the schema: bool, U8, U16, U32, U64, double,
// Vyx::Name, Vyx::String8.
VyxType const* vyxTypeOf(bool const*);
VyxType const* vyxTypeOf(unsigned char const*);
VyxType const* vyxTypeOf(unsigned short const*);
VyxType const* vyxTypeOf(unsigned const*);
VyxType const* vyxTypeOf(unsigned long long const*);
VyxType const* vyxTypeOf(double const*);
VyxType const* vyxTypeOf(Name const*);
VyxType const* vyxTypeOf(String8 const*);

template <class T> struct IsPtr : std::false_type {};
template <class T> struct IsPtr<Ptr<T>> : std::true_type {};

// A class has the static `_fwkType`, an enumeration the free function `vyxTypeOf` beside it; the record of a
// counted pointer is that of the entity.
template <class T> VyxType const* typeOf() {
  if constexpr (std::is_void_v<T>)
    return nullptr;
  else if constexpr (IsPtr<T>::value)
    return typeOf<std::remove_const_t<typename T::element_type>>();
  else if constexpr (requires { T::_fwkType(); })
    return T::_fwkType();
  else
    return vyxTypeOf(static_cast<T const*>(nullptr));
}

} // namespace Vyx
