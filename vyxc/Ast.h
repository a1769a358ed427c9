// A schema file as written: nothing is resolved, every name knows its place.

#pragma once

#include "SourceFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vyxc::ast {

struct Name {
  std::string text; // Qualified with `::` where the grammar allows it.
  Span span;
};

struct TypeRef {
  Name name;
  bool isConst = false;
};

struct Parameter {
  Name name;
  TypeRef type;
};

enum class ExprKind { kName, kNumber, kString, kBool };

struct Expr {
  ExprKind kind;
  Span span;
  std::string text; // Of a string, what stands between the quotes.
  std::uint64_t number = 0;
};

struct Number {
  std::uint64_t value;
  Span span;
};

// Whatever the keyword at its start, a member of an entity or value fills the fields that its form has.
enum class MemberKind {
  kConstructor,
  kBase,
  kDestructor,
  kNoFactory,
  kKey,
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
  kOperators,
};

struct Member {
  MemberKind kind;
  Span keyword;
  std::string doc;
  Name name;
  TypeRef type;    // Of a function, the result.
  TypeRef keyType; // collection
  Name keyName;    // references, children
  Name within;     // reference
  Name namedBy;    // children
  std::vector<Parameter> parameters;
  bool hasArguments = false;
  std::vector<Expr> arguments; // base, child
  std::optional<Expr> initial; // mutable, constant
  std::optional<Number> id;
  bool isConst = false;      // function
  bool isTree = false;       // collection, children
  bool isVirtual = false;    // attributes and functions
  bool isUnlisted = false;   // key
  bool isFirst = false;      // key
  bool allOperators = false; // operators
};

struct Enumerator {
  Name name;
  Number value;
  std::string doc;
};

enum class TypeKind { kEnum, kValue, kEntity };

struct TypeDecl {
  TypeKind kind;
  Name name;
  std::string doc;
  Name header; // value
  Name base;   // entity
  std::vector<Enumerator> enumerators;
  std::vector<Member> members;
};

struct ExternDecl {
  TypeKind kind;
  Name name;
  Name base;
  Name header;
  bool byReference = false;
};

struct Import {
  Name path;
};

struct Unit {
  Name name;
  Name header;
  std::vector<Name> types;
};

struct File {
  Name space;
  std::vector<Import> imports;
  std::vector<ExternDecl> externs;
  std::vector<Unit> units;
  std::vector<TypeDecl> types;
};

} // namespace vyxc::ast
