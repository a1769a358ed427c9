// Constructor parameters as a list: an entity type X has `vyxParameters(x)`, a tuple of their current values,
// and `kVyxParameterNames`, in the order of the constructor.

#pragma once

#include "Vyx/Strep.h"

#include <tuple>

namespace frame {

// Raises the refusal of a member that stands there with another constructor value.
[[noreturn]] void throwReinstantiated(Vyx::Name const& name, char const* parameter, Vyx::String8 const& asked,
                                      Vyx::String8 const& current);

// THROWS: NameInUseException for the first parameter, in order, that differs from what the entity was made
// with.
template <class X, class... Arguments> void checkParameters(X const& entity, Arguments const&... arguments) {
  auto check = [&]<std::size_t... i>(std::index_sequence<i...>) {
    auto const current = X::vyxParameters(entity);
    auto one = [&](char const* parameter, auto const& asked, auto const& is) {
      if (asked == is) return;
      using Vyx::valueToStrep; // The built-in types'; the others are found beside their types.
      throwReinstantiated(entity.name(), parameter, valueToStrep(asked), valueToStrep(is));
    };
    (one(X::kVyxParameterNames[i], arguments, std::get<i>(current)), ...);
  };
  check(std::index_sequence_for<Arguments...>());
}

// Whether the entity was made with these values.
template <class X, class... Arguments> bool hasParameters(X const& entity, Arguments const&... arguments) {
  auto const current = X::vyxParameters(entity);
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return ((std::get<i>(current) == arguments) && ...);
  }
  (std::index_sequence_for<Arguments...>());
}

// Whether two entities of a type were made with the same values.
template <class X> bool sameParameters(X const& a, X const& b) {
  return X::vyxParameters(a) == X::vyxParameters(b);
}

} // namespace frame
