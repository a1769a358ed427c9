// What the outputs of an entity type have in common.

#pragma once

#include "CppTypes.h"
#include "Model.h"

#include <set>
#include <string>
#include <vector>

namespace vyxc {

// Directly under Vyx::Entity: holds the reactor list of its line.
inline bool isFirstOfLine(EntityType const& type) { return type.base->isRoot(); }
// Its entry in the reactor interface has a key.
bool isKeyedByReactor(Attribute const& attribute);
bool hasReactorEntry(Attribute const& attribute);

// One entry of a reactor interface.
struct ReactorEntry {
  // Without `virtual`. The key has the name that is given.
  std::string signature(std::string const& key = {}) const {
    return "void " + name + "(" + keyType + (key.empty() ? "" : " ") + key + ")";
  }

  std::string name;
  std::string keyType; // As it is passed; empty for an entry without a key.
  std::uint32_t id;
  bool isOfRoot; // Vyx::Entity's reactors have it already; it takes no new slot.
};
// ORDER: ascending by id; only the type's own.
std::vector<ReactorEntry> reactorEntries(EntityType const& type, CppTypes const& cpp);

struct Links {
  bool hash = false;
  bool tree = false;
};
// The links by which collections of parents hold an entity of the type, as far as the type itself has them.
Links linksOf(Model const& model, EntityType const& type);

// Types that must be complete where the class is declared, and those of which the name is enough.
struct UsedTypes {
  std::set<std::string> headers;
  std::set<Type const*> forward;
};
UsedTypes usedTypes(EntityType const& type);
// The headers that reflection on the type needs: those of every type that an attribute speaks of.
std::set<std::string> headersOfReflection(EntityType const& type);

// What the maker of a member of `children` gives: the parameters of its constructor, but for a name that is
// made from one of them.
std::vector<Parameter> givenParameters(Attribute const& children);
// How a value of a constructor parameter is read from an entity: `of.className()`.
std::vector<std::string> parameterGetters(std::vector<Parameter> const& parameters, std::string const& of);

} // namespace vyxc
