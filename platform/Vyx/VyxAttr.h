// The record of one attribute of one type.

#pragma once

#include "Vyx/Entity.h"
#include "Vyx/Exception.h"

#include <vector>

namespace Vyx {

class AttributeOps;

class VyxAttr : public Entity {
public:
  // Two words; the meaning of the bits stands in frame/AttributeFlags.h, which composes them.
  struct AttrFlags {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    bool operator==(AttrFlags const&) const = default;
  };

  // What tools may make of the attribute; at most 0x3f.
  class VyxAttrIntrospectionFlags {
  public:
    // THROWS: RangeException above 0x3f, after the store.
    explicit VyxAttrIntrospectionFlags(unsigned value = 0) : value_(value) {
      if (value_ > 0x3f) throwRangeException("VyxAttrIntrospectionFlags::value > 0x3f not allowed");
    }
    static VyxAttrIntrospectionFlags isIndependentDomainAttr_() { return VyxAttrIntrospectionFlags(2); }
    static VyxAttrIntrospectionFlags isFunction_() { return VyxAttrIntrospectionFlags(8); }
    static VyxAttrIntrospectionFlags hasInternalIndex_() { return VyxAttrIntrospectionFlags(32); }
    unsigned value() const { return value_; }
    bool operator==(VyxAttrIntrospectionFlags const&) const = default;

  private:
    unsigned value_;
  };

  // An argument of a function attribute, or a constructor parameter of an owned child.
  struct Argument {
    Name name;
    Name type;
  };

  VyxAttr(Name name, VyxType const* valueType, VyxType const* keyType, AttrFlags flags, AttributeId id)
      : Entity(std::move(name)), valueType_(valueType), keyType_(keyType), flags_(flags), id_(id) {}

  VyxType const* valueType() const { return valueType_; }
  VyxType const* keyType() const { return keyType_; } // Null but for a keyed collection of values.
  AttrFlags flags() const { return flags_; }
  AttributeId id() const { return id_; }
  VyxAttrIntrospectionFlags introspection() const { return introspection_; }
  std::vector<Argument> const& arguments() const { return arguments_; }
  // The member's attribute by which a keyed collection of owned entities is keyed; else null.
  VyxAttr const* keyAttr() const { return keyAttr_; }
  bool hashed() const { return hashed_; }
  // How reflection and copy reach the attribute; null when they can't.
  AttributeOps const* ops() const { return ops_; }

  void argumentEnq(Name name, Name type) { arguments_.push_back({std::move(name), std::move(type)}); }
  void keyAttrIs(VyxAttr const* attr) { keyAttr_ = attr; }
  void hashedIs(bool hashed) { hashed_ = hashed; }
  void introspectionIs(VyxAttrIntrospectionFlags flags) { introspection_ = flags; }
  void opsIs(AttributeOps const* ops) { ops_ = ops; }

  // A record of the same content, for a type that inherits the attribute.
  Ptr<VyxAttr> copy() const;

private:
  VyxType const* valueType_; // Types live for ever.
  VyxType const* keyType_;
  AttrFlags flags_;
  AttributeId id_;
  VyxAttrIntrospectionFlags introspection_;
  bool hashed_ = false;
  VyxAttr const* keyAttr_ = nullptr;
  AttributeOps const* ops_ = nullptr;
  std::vector<Argument> arguments_;
};

} // namespace Vyx
