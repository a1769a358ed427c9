// What the schemas mean: every name resolved, every attribute numbered. The emitters read nothing else.
//
// Invariants, once the Checker has found no error:
// (1) No pointer to a type is null, but for the base of Vyx::Entity.
// (2) Following `base` ends at Vyx::Entity.
// (3) The ids of an entity's own attributes lie in the block of its level and are all different.

#pragma once

#include "Ast.h"
#include "SourceFile.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vyxc {

constexpr std::uint32_t kBlockSize = 128;
constexpr std::uint32_t kFirstInBlock = 2;

enum class TypeKind { kBuiltin, kEnum, kValue, kEntity };

struct Type {
  Type(TypeKind theKind, std::string theSpace, std::string theName)
      : kind(theKind), space(std::move(theSpace)), name(std::move(theName)) {}
  virtual ~Type() = default;

  std::string qualifiedName() const { return space.empty() ? name : space + "::" + name; }

  TypeKind kind;
  std::string space; // Empty for bool, U8 and their like.
  std::string name;
  std::string doc; // Lines, each with its end.
  std::string header;
  Span span;
  bool isExtern = false;    // Written by hand; only what `extern` says is known.
  bool inUnit = false;      // Code is generated for it in this run.
  bool byReference = false; // As a parameter: `T const&` instead of `T`.
};

struct Parameter {
  std::string name;
  Type const* type = nullptr;
  bool isConst = false;
};

// An enumerator's name is qualified by its namespace, a parameter's name stands alone.
struct Expr {
  ast::ExprKind kind;
  std::string text;
  std::uint64_t number = 0;
};

enum class AttributeKind {
  kFunction,
  kConst,
  kMutable,
  kCollection,
  kReference,
  kReferences,
  kChild,
  kChildren,
  kQueue,
  kMember,
  kComputed,
  kConstant,
};

struct EntityType;

struct Attribute {
  AttributeKind kind;
  std::string name;
  std::string doc;
  Span span;
  std::uint32_t id = 0;
  Type const* type = nullptr;    // Of a function, the result.
  bool isConst = false;          // function: may be called on a const entity. reference: to a const entity.
  bool isVirtual = false;        // Its changing operations are virtual.
  bool isTree = false;           // collection, children: ordered by key instead of hashed.
  Type const* keyType = nullptr; // collection, references, children
  std::string keyName;           // references, children
  std::string
      namedBy; // children: a member's name is the text form of this parameter; empty: its maker gives it.
  Attribute const* within = nullptr;     // reference: the children collection that holds what is referred to.
  std::vector<Parameter> parameters;     // function
  EntityType const* redefined = nullptr; // function: the highest base that declares it.
  std::optional<std::vector<Expr>> arguments; // child: with which the constructor makes it.
  std::optional<Expr> initial;                // mutable, constant
};

struct Enumerator {
  std::string name;
  std::uint32_t value;
  std::string doc;
};

struct EnumType : Type {
  EnumType(std::string theSpace, std::string theName)
      : Type(TypeKind::kEnum, std::move(theSpace), std::move(theName)) {}

  std::vector<Enumerator> enumerators;
};

enum class Operators { kNone, kNot, kAll };

struct ValueType : Type {
  ValueType(std::string theSpace, std::string theName)
      : Type(TypeKind::kValue, std::move(theSpace), std::move(theName)) {}

  std::vector<Parameter> parameters;
  std::deque<Attribute> attributes;
  Operators operators = Operators::kNone;
};

struct Key {
  std::string name;
  Type const* type = nullptr;
  Span span;
  bool isUnlisted = false; // No row fwkKey.
  bool isFirst = false;    // The link stands before the attributes.
};

struct EntityType : Type {
  EntityType(std::string theSpace, std::string theName)
      : Type(TypeKind::kEntity, std::move(theSpace), std::move(theName)) {}

  std::uint32_t firstId() const { return blockStart() + kFirstInBlock; }
  std::uint32_t blockStart() const { return (level + 1) * kBlockSize; }
  bool isRoot() const { return base == nullptr; }
  // RETURNS null if there is none of that name in this type itself.
  Attribute const* own(std::string const& attributeName) const;
  // RETURNS the attribute of this type or of the nearest base that has it.
  Attribute const* find(std::string const& attributeName) const;
  Parameter const* parameter(std::string const& parameterName) const;
  // RETURNS the key, own or inherited.
  Key const* inheritedKey() const;
  // Something between this type and Vyx::Entity, or the type itself, is written by hand.
  bool hasUnknownParts() const;
  bool derivesFrom(EntityType const& other) const;

  EntityType const* base = nullptr;
  std::uint32_t level = 0; // 1 directly under Vyx::Entity.
  std::vector<Parameter> parameters;
  std::vector<Expr> baseArguments;
  bool destructorAnnounces = false;
  bool hasFactory = true;
  std::optional<Key> key;
  std::deque<Attribute> attributes;
};

struct Unit {
  std::string name;
  std::string space;
  std::string header;
  std::vector<Type const*> types;    // ORDER: of registration.
  std::vector<std::string> imported; // The headers of the units that its files import.
};

struct Model {
  std::vector<std::unique_ptr<Type>> types;
  Unit unit;
  std::map<Type const*, std::string> schemaOf; // The file name of the schema that declares a type.
};

inline EntityType const* asEntity(Type const* type) {
  return type && type->kind == TypeKind::kEntity ? static_cast<EntityType const*>(type) : nullptr;
}
inline EnumType const* asEnum(Type const* type) {
  return type && type->kind == TypeKind::kEnum ? static_cast<EnumType const*>(type) : nullptr;
}
inline ValueType const* asValue(Type const* type) {
  return type && type->kind == TypeKind::kValue ? static_cast<ValueType const*>(type) : nullptr;
}

} // namespace vyxc
