// Where each type keeps its record.

#pragma once

#include "frame/RegistrationUnit.h"

namespace frame {

// `Record` is the record's class, `Base` the base type or void.
template <class Record, class Base> class TypeRecord {
public:
  // RETURNS the one record, made by the first call. The unit is asked first, so that the record of a type
  // that is used early comes filled.
  static Record* get(RegistrationUnit& (*unit)(), char const* shortName) {
    return record_ ? record_ : make(unit, shortName);
  }

private:
  [[gnu::noinline]] static Record* make(RegistrationUnit& (*unit)(), char const* shortName) {
    unit().run();
    if (record_) return record_;
    Vyx::VyxType const* base = nullptr;
    if constexpr (!std::is_void_v<Base>) base = Base::_fwkType();
    record_ = new Record(shortName, base);
    record_->isNondestructingIs(true);
    if (base) base->derivedTypeQEnq(record_);
    return record_;
  }

  inline static Record* record_ = nullptr; // Never freed.
};

} // namespace frame
