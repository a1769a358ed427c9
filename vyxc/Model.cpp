#include "Model.h"

namespace vyxc {

Attribute const* EntityType::own(std::string const& attributeName) const {
  for (auto const& attribute : attributes) {
    if (attribute.name == attributeName) return &attribute;
  }
  return nullptr;
}

Attribute const* EntityType::find(std::string const& attributeName) const {
  for (auto const* type = this; type; type = type->base) {
    if (auto const* attribute = type->own(attributeName)) return attribute;
  }
  return nullptr;
}

Parameter const* EntityType::parameter(std::string const& parameterName) const {
  for (auto const& candidate : parameters) {
    if (candidate.name == parameterName) return &candidate;
  }
  return nullptr;
}

Key const* EntityType::inheritedKey() const {
  for (auto const* type = this; type; type = type->base) {
    if (type->key) return &*type->key;
  }
  return nullptr;
}

bool EntityType::hasUnknownParts() const {
  for (auto const* type = this; !type->isRoot(); type = type->base) {
    if (type->isExtern) return true;
  }
  return false;
}

bool EntityType::derivesFrom(EntityType const& other) const {
  for (auto const* type = this; type; type = type->base) {
    if (type == &other) return true;
  }
  return false;
}

} // namespace vyxc
