// A type of entity as the log names it: by its full name, "Pbr::Config".

#pragma once

#include "Vyx/String8.h"

namespace Vyx {

class TypeId {
public:
  TypeId() = default;
  explicit TypeId(String8 fullName) : name_(std::move(fullName)) {}

  String8 const& name() const { return name_; }

  friend bool operator==(TypeId const& x, TypeId const& y) { return x.name_ == y.name_; }

private:
  String8 name_;
};

} // namespace Vyx
