// Calling functions by reflection.
//
// A function attribute also has `Arguments`, a tuple of the values that it takes, `argumentNames` and
// `argumentTypes`, `isConst`, and `call(of, arguments...)`.

#pragma once

#include "frame/Ops.h"

namespace frame {

// RETURNS the argument list of a call. THROWS: TypeException when there is none; UnknownArgException for a
// name that isn't among `known`.
template <std::size_t n>
GenericIf::List_ const& argumentList(char const* function, Index const& index,
                                     std::array<char const*, n> const& known) {
  if (!index) GenericIf::throwTypeException("List");
  auto const* list = dynamic_cast<GenericIf::List_ const*>(index.ptr());
  if (!list) GenericIf::throwTypeException("Vyx::GenericIf::List_");
  for (auto const& entry : list->entries()) {
    bool isKnown = false;
    for (char const* name : known) isKnown = isKnown || entry.name == name;
    if (!isKnown) GenericIf::throwUnknownArgException(function);
  }
  return *list;
}

// RETURNS the value of one argument. A null or missing argument is a null pointer where a pointer is taken.
// THROWS: TypeException with the argument's name where a value is taken; what the value's `check()` raises.
template <class T> T argumentValue(GenericIf::List_ const& list, char const* name) {
  Index const given = list.argument(name);
  if constexpr (Vyx::IsPtr<T>::value)
    if (!given) return T();
  T const value = Vyx::unwrapOr<T>(given, name);
  if constexpr (requires { value.check(); }) value.check();
  return value;
}

template <class Tuple, class Names, class Call>
decltype(auto) applyArguments(GenericIf::List_ const& list, Names const& names, Call const& call) {
  return [&]<std::size_t... i>(std::index_sequence<i...>)->decltype(auto) {
    return call(argumentValue<std::tuple_element_t<i, Tuple>>(list, names[i])...);
  }
  (std::make_index_sequence<std::tuple_size_v<Tuple>>());
}

template <class Attr> class FunctionOps final : public Ops<Attr> {
public:
  Operand op(GenericIf& self, OpId code, Index const& index, Operand const&) const override {
    if (code != GenericIf::AttributeOp::read) this->unsupported(code);
    if (!Attr::isConst && self.isConst())
      GenericIf::throwConstException("attempting to modify a const instance");
    auto const& list = argumentList(Attr::name, index, Attr::argumentNames);
    auto call = [&](auto const&... arguments) { return Attr::call(this->owner(self), arguments...); };
    using Result = typename Attr::Type;
    if constexpr (std::is_void_v<Result>) {
      applyArguments<typename Attr::Arguments>(list, Attr::argumentNames, call);
      return {};
    } else {
      return Vyx::wrap<Result>(applyArguments<typename Attr::Arguments>(list, Attr::argumentNames, call));
    }
  }
};

} // namespace frame
