// The record of one type: its attributes in order, its place in the line of classes, its constructor.
//
// Invariants:
// (1) A record is made by the first use of its type and lives until the process ends.
// (2) `attributeQ` holds the inherited attributes first, then the type's own, in schema order.

#pragma once

#include "Vyx/LinkQueue.h"
#include "Vyx/VyxAttr.h"

#include <unordered_map>

namespace Vyx {

class VyxType : public Entity {
public:
  // An element of the attribute queue.
  class VyxAttributeQ final : public PtrInterface {
  public:
    VyxAttributeQ(unsigned key, Ptr<VyxAttr> attr) : key_(key), attr_(std::move(attr)) {}
    unsigned fwkQkey() const { return key_; }
    Ptr<VyxAttr> const& attr() const { return attr_; }

    Ptr<PtrInterface> fwkQNext_; // Written by the queue alone.

  private:
    unsigned key_;
    Ptr<VyxAttr> attr_;
  };
  using AttributeQ = LinkQueue<VyxAttributeQ, unsigned>;
  class AttributeQIteratorConst;

  using VyxTypeFlags = VyxAttr::AttrFlags;
  static constexpr std::uint32_t kIsValue = 1U << 0;              // First word.
  static constexpr std::uint32_t kIsEnumType = 1U << 4;           // First word.
  static constexpr std::uint32_t kIsEntity = 1U << 27;            // Second word.
  static constexpr std::uint32_t kHasGenericIfSupport = 1U << 29; // Second word.

  VyxType(Name shortName, VyxType* scope, VyxType const* baseType, VyxTypeFlags const& flags);

  // Reflection on an object of this type; the object decides the class of the result. The base has none.
  virtual Ptr<GenericIf> genericIf(Ptr<Entity> const& entity) const;
  virtual Ptr<GenericIf> genericIf(Ptr<Entity const> const& entity) const;
  // THROWS: RangeException for a text that is no such value.
  virtual Ptr<GenericIf> valueFromStrep(String8 const& text) const;
  // Makes an object from constructor arguments by name; `arguments` is a GenericIf::List_.
  virtual Ptr<GenericIf> newInstance(Ptr<GenericIf const> const& arguments) const;
  // Makes an entity that a log announces.
  virtual Ptr<Entity> newEntity(Ptr<NboAttrLog::In> const& in, Vyx_BitSet flags, unsigned options,
                                PtrInterface* context) const;

  VyxType const* fwkType() const override;

  VyxType const* baseType() const { return baseType_; }
  // With its namespaces: "Pbr::PbrFwdAction"; the short name while the type isn't in the name table.
  Name fullTypeName() const { return fullName_.empty() ? name() : fullName_; }
  VyxTypeFlags flags() const { return flags_; }
  bool isValue() const { return flags_.low & kIsValue; }
  bool isEnumType() const { return flags_.low & kIsEnumType; }
  bool isEntity() const { return flags_.high & kIsEntity; }
  bool hasGenericIfSupport() const { return flags_.high & kHasGenericIfSupport; }
  unsigned size() const { return size_; }
  // Whether this is the type asked for or derives from it.
  bool isA(VyxType const* other) const;

  // Null when there is none of that name or id.
  VyxAttr* attr(Name const& name) const;
  VyxAttr* attr(AttributeId id) const;
  AttributeQ const& attributeQ() const { return attributeQ_; }
  // Those of the queue that a copy carries over. REQUIRES: the record is filled.
  std::vector<VyxAttr const*> const& copiedAttributes() const {
    if (__builtin_expect(copiedOf_ != attributeQ_.version(), false)) findCopied();
    return copied_;
  }
  VyxAttr const* valAttr() const { return valAttr_; }
  std::vector<Name> const& constructorArgNameQ() const { return constructorArgNameQ_; }
  std::vector<Name> const& constructorArgTypeQ() const { return constructorArgTypeQ_; }
  std::vector<VyxType const*> const& derivedTypeQ() const { return derivedTypeQ_; }

  // What registration calls. Each flag setter leaves the word alone when the bit has the asked value, and
  // else calls the change handler once.
  void isValueIs(bool value) { flagIs(flags_.low, kIsValue, value); }
  void isEnumTypeIs(bool value) { flagIs(flags_.low, kIsEnumType, value); }
  void isEntityIs(bool value) { flagIs(flags_.high, kIsEntity, value); }
  void hasGenericIfSupportIs(bool value) { flagIs(flags_.high, kHasGenericIfSupport, value); }
  void sizeIs(unsigned size) { size_ = size; }
  void valAttrIs(VyxAttr const* attr) { valAttr_ = attr; }
  void constructorArgNameQEnq(Name name) { constructorArgNameQ_.push_back(std::move(name)); }
  void constructorArgTypeQEnq(Name type) { constructorArgTypeQ_.push_back(std::move(type)); }
  // Removes an attribute, an inherited one that is to be redefined.
  void attrDel(Name const& name);
  // Makes the record; attributeQEnq enters it.
  Ptr<VyxAttr> attrIs(Name name, VyxType const* valueType, VyxType const* keyType,
                      VyxAttr::AttrFlags const& flags, AttributeId id) const;
  void attributeQEnq(Ptr<VyxAttr> const& attr);
  void derivedTypeQEnq(VyxType const* derived) const { derivedTypeQ_.push_back(derived); }

  // Enters the type under its name with namespaces; typeByName finds it.
  static void typeNodeIs(VyxType const* type, Name const& fullName);
  // RETURNS null for a name that no loaded library has entered.
  static VyxType const* typeByName(Name const& fullName);
  // All entered types, in the order of their entering.
  static std::vector<VyxType const*> const& types();

protected:
  // The change handler of the type flags.
  virtual void typeFlagsDoEmbeddedWriteConstraints();

private:
  void findCopied() const;
  void flagIs(std::uint32_t& word, std::uint32_t bit, bool value) {
    if (((word & bit) != 0) == value) return;
    word ^= bit;
    typeFlagsDoEmbeddedWriteConstraints();
  }

  VyxType const* baseType_;
  VyxTypeFlags flags_;
  unsigned size_ = 0;
  unsigned nextKey_ = 1;
  mutable Name fullName_;
  AttributeQ attributeQ_;
  mutable std::vector<VyxAttr const*> copied_;
  mutable std::uint32_t copiedOf_ = 0; // The version of the queue that copied_ is made of.
  VyxAttr const* valAttr_ = nullptr;
  std::vector<Name> constructorArgNameQ_;
  std::vector<Name> constructorArgTypeQ_;
  mutable std::vector<VyxType const*> derivedTypeQ_;
};

class VyxType::AttributeQIteratorConst : public AttributeQ::IteratorConst {
public:
  explicit AttributeQIteratorConst(VyxType const& type) : AttributeQ::IteratorConst(type.attributeQ()) {}
  VyxAttr& operator*() const { return *current()->attr(); }
  VyxAttr* operator->() const { return current()->attr().ptr(); }
};

} // namespace Vyx
