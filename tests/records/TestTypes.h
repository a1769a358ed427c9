// Units of made-up types, to see how records come to be. A unit runs once in a process, so each test takes
// one of its own: Zoo<1>, Zoo<2>, …

#pragma once

#include "frame/Define.h"
#include "frame/TypeRecord.h"

// While one lives, announcements aren't taken.
class ReactorNotReady {
public:
  ReactorNotReady() { context()->readyIs(false); }
  ReactorNotReady(ReactorNotReady const&) = delete;
  ReactorNotReady& operator=(ReactorNotReady const&) = delete;
  ~ReactorNotReady() { context()->readyIs(true); }

private:
  static Vyx::Ptr<Vyx::IntrospectionReactor::Context> context() {
    return Vyx::IntrospectionReactor::global()->context();
  }
};

// What the reactor hears from the making of this object on.
class Hearing {
public:
  std::vector<std::string> lines() const {
    auto const& heard = Vyx::IntrospectionReactor::global()->heard();
    return {heard.begin() + static_cast<std::ptrdiff_t>(before_), heard.end()};
  }

private:
  std::size_t before_ = Vyx::IntrospectionReactor::global()->heard().size();
};

template <int n> struct Zoo;
template <int n> struct Dog;

template <int n, class Self, class Base> struct TestType {
  class Record final : public Vyx::VyxType {
  public:
    Record(char const* shortName, Vyx::VyxType const* base) : VyxType(shortName, nullptr, base, {}) {
      ++made;
      if (makerFails) Vyx::throwInternalException("no record today");
    }
  };
  static Vyx::VyxType const* _fwkType() {
    return frame::TypeRecord<Record, Base>::get(Zoo<n>::unit, Self::shortName);
  }
  static void define(Vyx::IntrospectionReactor& reactor, char const* fullName) {
    ++defined;
    if (definitionFails) Vyx::throwInternalException(fullName);
    auto& record = *const_cast<Vyx::VyxType*>(_fwkType());
    frame::Definition type(reactor, record);
    Self::fill(type);
  }
  static inline int made = 0;
  static inline int defined = 0;
  static inline bool makerFails = false;
  static inline bool definitionFails = false;
};

template <int n> struct Animal : TestType<n, Animal<n>, void> {
  static constexpr char const* shortName = "Animal";
  static inline int dogsWhenFilled = 0; // Records of dogs there were.
  static void fill(frame::Definition& type) {
    dogsWhenFilled = Dog<n>::made;
    type.parameter("name", "Vyx::Name");
    type.parameter("legs", "U32");
    type.plain("legs", Vyx::typeOf<unsigned>(), nullptr, frame::flags::constant,
               frame::Introspection::isIndependentDomainAttr_(), 258, nullptr);
    type.withArguments("sound", Vyx::typeOf<Vyx::String8>(), frame::flags::function, {{"at", "Vyx::Name"}},
                       frame::Introspection::isFunction_(), 259, nullptr);
    type.plain("weight", Vyx::typeOf<unsigned>(), nullptr, frame::flags::scalar,
               frame::Introspection::isIndependentDomainAttr_(), 260, nullptr);
  }
};

// Redefines two of the animal's attributes, in the other order.
template <int n> struct Dog : TestType<n, Dog<n>, Animal<n>> {
  static constexpr char const* shortName = "Dog";
  static void fill(frame::Definition& type) {
    type.inherit(Animal<n>::_fwkType());
    type.withArguments("sound", Vyx::typeOf<Vyx::String8>(), frame::flags::function,
                       {{"at", "Vyx::Name"}, {"loud", "bool"}}, frame::Introspection::isFunction_(), 259,
                       nullptr);
    type.plain("bones", Vyx::typeOf<unsigned>(), nullptr, frame::flags::scalar,
               frame::Introspection::isIndependentDomainAttr_(), 386, nullptr);
    type.plain("legs", Vyx::typeOf<unsigned>(), nullptr, frame::flags::scalar,
               frame::Introspection::isIndependentDomainAttr_(), 258, nullptr);
  }
};

template <int n> struct Zoo {
  static frame::RegistrationUnit& unit() {
    static std::string const names[] = {nameOf("Animal"), nameOf("Dog")};
    static frame::RegistrationUnit unit("Zoo", {{names[0].c_str(), &Animal<n>::_fwkType, &Animal<n>::define},
                                                {names[1].c_str(), &Dog<n>::_fwkType, &Dog<n>::define}});
    return unit;
  }
  static std::string nameOf(char const* shortName) { return "Zoo" + std::to_string(n) + "::" + shortName; }
};
