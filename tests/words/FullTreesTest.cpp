// What is compared between two word sizes leaves nothing out.

#include "FullTrees.h"

#include "Vyx/GenericIf.h"
#include "pbrctl/Attributes.h"

#include <gmock/gmock.h>

#include <set>

namespace words_test {
namespace {

using Op = Vyx::GenericIf::AttributeOp;
using Object = Vyx::Ptr<Vyx::GenericIf>;
using Names = std::set<std::string>;
using Vyx::VyxAttr;
using Vyx::VyxType;

std::string nameOf(VyxType const& type, VyxAttr const& attr) {
  return std::string(type.fullTypeName().view()) + "." + std::string(attr.name().view());
}

template <class Visit> void eachAttribute(VyxType const& type, Visit visit) {
  for (VyxType::AttributeQIteratorConst at(type); at; ++at)
    if (Pbrctl::isState(*at) && !Pbrctl::isFixed(*at)) visit(*at);
}

Object read(Object const& of, VyxAttr const& attr) {
  return of->attributeOp({attr.id(), Op::read}, nullptr, nullptr);
}

// All that a tree with such a root can hold.
void addPossible(VyxType const& type, Names& names, std::set<VyxType const*>& seen) {
  if (!seen.insert(&type).second) return;
  eachAttribute(type, [&](VyxAttr const& attr) {
    names.insert(nameOf(type, attr));
    if (Pbrctl::isOwning(attr) || Pbrctl::isReference(attr)) addPossible(*attr.valueType(), names, seen);
  });
}

Object fresh(Object const& like) {
  VyxType const& type = *like->type();
  auto const list = Vyx::ptrFromNew(new Vyx::GenericIf::List_);
  for (Vyx::Name const& name : type.constructorArgNameQ())
    list->argumentIs(name, read(like, *type.attr(name)));
  return type.newInstance(list);
}

// All that this one holds away from its default.
void addHeld(Object const& entity, Names& names) {
  Object const other = fresh(entity);
  VyxType const& type = *entity->type();
  eachAttribute(type, [&](VyxAttr const& attr) {
    std::string const name = nameOf(type, attr);
    bool const holdsEntities = Pbrctl::isOwning(attr) || Pbrctl::isReference(attr);
    if (!Pbrctl::isKeyed(attr)) {
      Object const value = read(entity, attr);
      if (value && (holdsEntities || value->strRep() != read(other, attr)->strRep())) names.insert(name);
      if (value && holdsEntities) addHeld(value, names);
      return;
    }
    for (auto at = entity->attributeIteratorConst(attr.id()); at; ++at) {
      names.insert(name);
      if (holdsEntities) addHeld(at.value(), names);
    }
  });
}

Names possible(VyxType const& type) {
  Names names;
  std::set<VyxType const*> seen;
  addPossible(type, names, seen);
  return names;
}
Names held(Vyx::Ptr<Vyx::Entity> const& root) {
  Names names;
  addHeld(root->fwkType()->genericIf(root), names);
  return names;
}

TEST(FullTrees, AStatusHoldsAllThatItCan) {
  EXPECT_EQ(possible(*Pbr::Status::_fwkType()), held(fullStatus()));
  EXPECT_THAT(possible(*Pbr::Status::_fwkType()), testing::Contains("Pbr::NexthopIndexAndL2AdjKey.l2AdjKey"));
}

TEST(FullTrees, ACheckpointHoldsAllThatItCan) {
  EXPECT_EQ(possible(*Pbr::CheckpointStatus::_fwkType()), held(fullCheckpoint()));
  EXPECT_THAT(possible(*Pbr::CheckpointStatus::_fwkType()),
              testing::Contains("Pbr::PbrAclCheckpointStatus.timestamp"));
}

TEST(FullTrees, AnEmptyTreeHoldsNothing) { EXPECT_THAT(held(Pbr::statusFactory("pbr")), testing::IsEmpty()); }

} // namespace
} // namespace words_test
