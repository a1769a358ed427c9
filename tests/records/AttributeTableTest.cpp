// The schema of the library as it is told to its users, typed in once more: what a record says is compared
// with these rows to the letter. A number here is never changed; see CONTRIBUTING.md.

#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "RecordText.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::ElementsAreArray;
using Vyx::VyxType;

// What a type's record says, but for what it inherits.
struct TypeRow {
  char const* name;
  char const* base; // Empty for a value.
  unsigned low;     // The two words of the type's flags.
  unsigned high;
  unsigned size;
  char const* parameters;
  // id | attribute | value type | key type | low | high | introspection | arguments, key attribute
  std::vector<std::string> attributes;
};

constexpr unsigned kValue = 0x1;
constexpr unsigned kEnumeration = 0x11;
constexpr unsigned kEntity = 0x28000000;
constexpr unsigned kReflected = 0x20000000;

// In the order of registration: the model's unit, then that of the copy handlers.
TypeRow const kTypes[] = {
    {"Pbr::PbrActionType",
     "",
     kEnumeration,
     kReflected,
     4,
     "",
     {
         "0 | noAction | Pbr::PbrActionType | | 0x20001 | 0x40200400 | 0 |",
         "1 | dropAction | Pbr::PbrActionType | | 0x20001 | 0x40200400 | 0 |",
         "2 | nexthopAction | Pbr::PbrActionType | | 0x20001 | 0x40200400 | 0 |",
         "3 | nexthopGroupAction | Pbr::PbrActionType | | 0x20001 | 0x40200400 | 0 |",
     }},
    {"Pbr::PbrFwdAction",
     "PolicyMap::Action",
     0,
     kEntity,
     sizeof(Pbr::PbrFwdAction),
     "className Vyx::Name id Kest::UniqueId fwdActionType Pbr::PbrActionType",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "261 | equalTo | bool | | 0x20001 | 0x400 | 8 | other PolicyMap::Action",
         "386 | fwdActionType | Pbr::PbrActionType | | 0x220109 | 0x40000400 | 2 |",
         "387 | nexthop | bool | Lomu::IpGenAddr | 0x1a20143 | 0x1000400 | 2 |",
         "388 | recursive | bool | | 0x220143 | 0x1000400 | 2 |",
         "389 | nexthopGroup | Vyx::Name | | 0x220143 | 0x1000400 | 2 |",
         "0 | fwkKey | Kest::UniqueId | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::Dscp",
     "",
     kValue,
     kReflected,
     1,
     "value U8",
     {
         "2 | value | U8 | | 0x22010f | 0x400 | 2 |",
         "3 | min | U8 | | 0x220001 | 0x40000410 | 0 |",
         "4 | max | U8 | | 0x220001 | 0x40000410 | 0 |",
         "5 | invalid | U8 | | 0x220001 | 0x40000410 | 0 |",
     }},
    {"Pbr::PbrActionSetDscp",
     "PolicyMap::Action",
     0,
     kEntity,
     sizeof(Pbr::PbrActionSetDscp),
     "className Vyx::Name id Kest::UniqueId dscp Pbr::Dscp",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "261 | equalTo | bool | | 0x20001 | 0x400 | 8 | other PolicyMap::Action",
         "386 | dscp | Pbr::Dscp | | 0x220109 | 0x40000400 | 2 |",
         "0 | fwkKey | Kest::UniqueId | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::NexthopSet",
     "",
     kValue,
     kReflected,
     sizeof(Pbr::NexthopSet),
     "recursive U32 vrfName L3::VrfName hash U32",
     {
         "2 | nexthop | bool | Lomu::IpGenAddr | 0x1a20107 | 0x400 | 2 |",
         "3 | recursive | U32 | | 0x22010f | 0x400 | 2 |",
         "4 | vrfName | L3::VrfName | | 0x22010f | 0x400 | 2 |",
         "5 | hash | U32 | | 0x220009 | 0x400 | 0 |",
     }},
    {"Pbr::NexthopIndex",
     "",
     kValue,
     kReflected,
     8,
     "value U64",
     {
         "2 | value | U64 | | 0x220109 | 0x40000400 | 2 |",
         "3 | nexthopIndexNone | U64 | | 0x220001 | 0x40000410 | 0 |",
     }},
    {"Pbr::NexthopIndexAndL2AdjKey",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::NexthopIndexAndL2AdjKey),
     "nexthopSet Pbr::NexthopSet",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | nexthopSet | Pbr::NexthopSet | | 0x220109 | 0x40000400 | 2 |",
         "259 | nexthopIndex | Pbr::NexthopIndex | | 0x220143 | 0x1000400 | 2 |",
         "260 | nexthopIndexPublishCounter | U32 | | 0x220143 | 0x1000400 | 2 |",
         "261 | nexthopIndexDelCounter | U32 | | 0x220143 | 0x1000400 | 2 |",
         "262 | l2AdjKey | U64 | | 0x220143 | 0x1000400 | 2 |",
         "263 | viasUsed | bool | Lomu::IpGenAddr | 0x1a20143 | 0x1000400 | 2 |",
     }},
    {"Pbr::PbrClassMapStatus",
     "PolicyMap::ClassMapStatus",
     0,
     kEntity,
     sizeof(Pbr::PbrClassMapStatus),
     "className Vyx::Name id Kest::UniqueId",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "386 | actionType | Pbr::PbrActionType | | 0x220143 | 0x1000400 | 2 |",
         "387 | nexthopGroup | Vyx::String8 | | 0x220143 | 0x1000400 | 2 |",
         "388 | nexthopIndexAndL2AdjKey | Pbr::NexthopIndexAndL2AdjKey | | 0x8220143 | 0x1000400 | 2 |",
     }},
    {"Pbr::PbrActionContainer",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::PbrActionContainer),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | fwdAction | Pbr::PbrFwdAction | | 0x9a20143 | 0x11000400 | 32 |"
         " className Vyx::Name id Kest::UniqueId fwdActionType Pbr::PbrActionType id hashed=1",
         "259 | dscpAction | Pbr::PbrActionSetDscp | | 0x9a20143 | 0x11000400 | 32 |"
         " className Vyx::Name id Kest::UniqueId dscp Pbr::Dscp id hashed=1",
     }},
    {"Pbr::Config",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::Config),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | pbrUnresolvedNexthopActionDrop | bool | | 0x220143 | 0x1000400 | 2 |",
         "259 | bgpPbrRedirect | bool | | 0x220143 | 0x1000400 | 2 |",
         "260 | pbrEnableNonAgingMacAddr | bool | | 0x220143 | 0x1000400 | 2 |",
         "261 | pbrActions | Pbr::PbrActionContainer | | 0x8220143 | 0x11000400 | 2 | name Vyx::Name",
         "262 | cmapType | PolicyMap::ClassMapTypeConfig | | 0x8220143 | 0x11000400 | 2 | name Vyx::Name",
         "263 | pmapType | PolicyMap::PolicyMapTypeConfig | | 0x8220143 | 0x11000400 | 2 |"
         " name Vyx::Name type PolicyMap::MapType",
     }},
    {"Pbr::Status",
     "PolicyMap::PolicyMapTypeStatus",
     0,
     kEntity,
     sizeof(Pbr::Status),
     "name Vyx::Name",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "386 | pbrClassMapStatus | Pbr::PbrClassMapStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " className Vyx::Name id Kest::UniqueId id hashed=1",
     }},
    {"Pbr::PbrAclCheckpointStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::PbrAclCheckpointStatus),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | ruleStatus | Acl::RuleCheckpointStatus | Acl::UniqueId | 0x1a20143 | 0x1000400 | 2 |",
         "259 | timestamp | double | | 0x220143 | 0x1000400 | 2 |",
         "260 | version | Acl::UniqueId | | 0x220143 | 0x1000400 | 2 |",
         "0 | fwkKey | Vyx::Name | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::PbrAclTypeCheckpointStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::PbrAclTypeCheckpointStatus),
     "name Vyx::Name type Acl::AclType",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | type | Acl::AclType | | 0x220109 | 0x40000400 | 2 |",
         "259 | acl | Pbr::PbrAclCheckpointStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " name Vyx::Name name hashed=0",
         "0 | fwkKey | Acl::AclType | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::ClassMapCheckpointStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::ClassMapCheckpointStatus),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | pktMatch | U64 | | 0x220143 | 0x1000400 | 2 |",
         "259 | version | Kest::UniqueId | | 0x220143 | 0x1000400 | 2 |",
         "260 | aclTypeCkptStatus | Pbr::PbrAclTypeCheckpointStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " type Acl::AclType type hashed=0",
         "0 | fwkKey | Vyx::Name | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::PolicyMapCheckpointStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::PolicyMapCheckpointStatus),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | cmapCkptStatus | Pbr::ClassMapCheckpointStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " name Vyx::Name name hashed=0",
         "259 | ckptTimestamp | double | | 0x220143 | 0x1000400 | 2 |",
         "0 | fwkKey | Vyx::Name | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::CheckpointAgentStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::CheckpointAgentStatus),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | pmapCkptStatus | Pbr::PolicyMapCheckpointStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " name Vyx::Name name hashed=0",
         "0 | fwkKey | Vyx::Name | | 0x200001 | 0x400 | 0 |",
     }},
    {"Pbr::CheckpointStatus",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::CheckpointStatus),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | checkpointAgentStatus | Pbr::CheckpointAgentStatus | | 0x9a20143 | 0x11000400 | 32 |"
         " name Vyx::Name name hashed=0",
     }},
    {"Pbr::PolicyMapCopyHandler",
     "PolicyMap::PolicyMapCopyHandler",
     0,
     kEntity,
     sizeof(Pbr::PolicyMapCopyHandler),
     "",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "515 | updateActionPtrs | void | | 0x20001 | 0x400 | 8 |"
         " ec Cli::Session::EntityCopy dest PolicyMap::PolicyMapSubConfig src PolicyMap::PolicyMapSubConfig",
         "517 | subConfigDelete | void | | 0x20001 | 0x400 | 8 |"
         " dest PolicyMap::PolicyMapConfig id Kest::UniqueId",
         "642 | config | Pbr::Config | | 0x8220143 | 0x1000400 | 2 |",
     }},
    {"Pbr::ConfigCopyHandler",
     "Cli::Session::EntityCopyGlobalSessionHandler",
     0,
     kEntity,
     sizeof(Pbr::ConfigCopyHandler),
     "",
     {
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | handleEntity | bool | | 0x20001 | 0x400 | 8 |"
         " ec Cli::Session::EntityCopy dest Vyx::Entity src Vyx::Entity path Vyx::String",
     }},
    {"Pbr::ConfigCopyHandlerDir",
     "Vyx::Entity",
     0,
     kEntity,
     sizeof(Pbr::ConfigCopyHandlerDir),
     "name Vyx::Name",
     {
         "6 | isNondestructing | bool | | 0x2043 | 0x1000000 | 0 |",
         "154 | vyxHasAttrLogInterface | bool | | 0x22001 | 0x400 | 8 |",
         "258 | configHandler | Pbr::ConfigCopyHandler | | 0x8220143 | 0x11000400 | 2 |",
     }},
};

// The second word of such a row.
std::string attributeOf(std::string const& row) {
  std::size_t const name = row.find(" | ") + 3;
  return row.substr(name, row.find(" | ", name) - name);
}

class AttributeTable : public testing::TestWithParam<TypeRow> {
protected:
  VyxType const& type() const { return *VyxType::typeByName(GetParam().name); }
  // What the type has of its base, in the base's order.
  std::vector<std::string> inherited() const {
    if (!type().baseType()) return {};
    std::vector<std::string> rows = attributeRows(*type().baseType());
    std::erase_if(rows, [](std::string const& row) {
      auto const& own = GetParam().attributes;
      return std::any_of(own.begin(), own.end(),
                         [&](std::string const& one) { return attributeOf(one) == attributeOf(row); });
    });
    return rows;
  }
};

TEST_P(AttributeTable, AgreesWithTheRecordRowByRowBehindWhatIsInherited) {
  std::vector<std::string> expected = inherited();
  expected.insert(expected.end(), GetParam().attributes.begin(), GetParam().attributes.end());
  EXPECT_THAT(attributeRows(type()), ElementsAreArray(expected));
}

TEST_P(AttributeTable, NamesTheTypeAndItsBase) {
  EXPECT_EQ(std::string(GetParam().name), "Pbr::" + textOf(type().name()));
  EXPECT_EQ(GetParam().name, textOf(type().fullTypeName()));
  EXPECT_EQ(GetParam().base, type().baseType() ? textOf(type().baseType()->fullTypeName()) : "");
}

TEST_P(AttributeTable, SaysWhatKindOfTypeItIsAndHowLarge) {
  EXPECT_EQ(GetParam().low, type().flags().low);
  EXPECT_EQ(GetParam().high, type().flags().high);
  EXPECT_EQ(GetParam().size, type().size());
}

TEST_P(AttributeTable, ListsTheParametersOfTheConstructor) {
  EXPECT_EQ(GetParam().parameters, parameterText(type()));
}

INSTANTIATE_TEST_SUITE_P(Pbr, AttributeTable, testing::ValuesIn(kTypes),
                         [](auto const& tested) { return std::string(tested.param.name).substr(5); });

TEST(AttributeTable, TypesStandInTheOrderOfRegistration) {
  std::vector<std::string> expected;
  for (TypeRow const& type : kTypes) expected.push_back(type.name);
  EXPECT_THAT(typesOfNamespace("Pbr::"), ElementsAreArray(expected));
}

TEST(AttributeTable, OnlyNumbersInAClassHaveAValueAttribute) {
  for (char const* type : {"Pbr::Dscp", "Pbr::NexthopIndex"}) {
    EXPECT_NE(nullptr, VyxType::typeByName(type)->valAttr());
    EXPECT_EQ(VyxType::typeByName(type)->attr(2), VyxType::typeByName(type)->valAttr());
  }
  EXPECT_EQ(nullptr, VyxType::typeByName("Pbr::PbrActionType")->valAttr());
  EXPECT_EQ(nullptr, VyxType::typeByName("Pbr::NexthopSet")->valAttr());
}

TEST(AttributeTable, KeyAttributeIsThatOfTheMembersRecord) {
  VyxType const& container = *Pbr::PbrActionContainer::_fwkType();
  EXPECT_EQ(Pbr::PbrFwdAction::_fwkType()->attr(260), container.attr(258)->keyAttr());
  EXPECT_EQ(Pbr::PbrActionSetDscp::_fwkType()->attr(260), container.attr(259)->keyAttr());
  EXPECT_EQ(Pbr::PbrClassMapStatus::_fwkType()->attr(259), Pbr::Status::_fwkType()->attr(386)->keyAttr());
  EXPECT_EQ(Pbr::PbrAclTypeCheckpointStatus::_fwkType()->attr(258),
            Pbr::ClassMapCheckpointStatus::_fwkType()->attr(260)->keyAttr());
  EXPECT_EQ(Pbr::CheckpointAgentStatus::_fwkType()->attr(130),
            Pbr::CheckpointStatus::_fwkType()->attr(258)->keyAttr());
}

// Ids below the library's own types, which messages and handlers name.
struct BaseRow {
  char const* type;
  int id;
  char const* attribute;
};

constexpr BaseRow kBases[] = {
    {"Vyx::Entity", 6, "isNondestructing"},
    {"Vyx::Entity", 130, "name"},
    {"Vyx::Entity", 131, "fullName"},
    {"Vyx::Entity", 132, "uriPath"},
    {"Vyx::Entity", 154, "vyxHasAttrLogInterface"},
    {"PolicyMap::Action", 258, "className"},
    {"PolicyMap::Action", 259, "type"},
    {"PolicyMap::Action", 260, "id"},
    {"PolicyMap::Action", 261, "equalTo"},
    {"PolicyMap::ClassMapSubConfig", 258, "id"},
    {"PolicyMap::ClassMapSubConfig", 259, "dynamic"},
    {"PolicyMap::ClassMapSubConfig", 260, "match"},
    {"PolicyMap::ClassMapConfig", 258, "subconfig"},
    {"PolicyMap::ClassMapConfig", 259, "currentSubConfig"},
    {"PolicyMap::ClassMapTypeConfig", 258, "cmap"},
    {"PolicyMap::ClassAction", 258, "sequence"},
    {"PolicyMap::ClassAction", 259, "policyAction"},
    {"PolicyMap::PolicyMapSubConfig", 258, "id"},
    {"PolicyMap::PolicyMapSubConfig", 259, "dynamic"},
    {"PolicyMap::PolicyMapSubConfig", 260, "classAction"},
    {"PolicyMap::PolicyMapConfig", 258, "subconfig"},
    {"PolicyMap::PolicyMapConfig", 259, "currentSubConfig"},
    {"PolicyMap::PolicyMapTypeConfig", 258, "type"},
    {"PolicyMap::PolicyMapTypeConfig", 259, "pmap"},
    {"PolicyMap::PolicyMapTypeConfig", 260, "intf"},
    {"PolicyMap::PolicyMapTypeConfig", 261, "intfFallback"},
    {"PolicyMap::ClassMapStatus", 258, "className"},
    {"PolicyMap::ClassMapStatus", 259, "id"},
    {"PolicyMap::ClassMapStatus", 260, "match"},
    {"PolicyMap::ClassMapStatus", 261, "ruleStatus"},
    {"PolicyMap::PolicyMapTypeStatus", 258, "type"},
    {"PolicyMap::PolicyMapTypeStatus", 259, "status"},
    {"PolicyMap::PolicyMapTypeStatus", 260, "intfDisallowed"},
    {"PolicyMap::PolicyMapTypeStatus", 261, "result"},
    {"PolicyMap::PolicyMapTypeStatus", 262, "countersPerRule"},
    {"PolicyMap::PolicyMapTypeStatus", 264, "classMapStatus"},
    {"PolicyMap::PolicyMapTypeStatus", 265, "initialized"},
    {"Cli::Session::EntityCopyHandler", 258, "handleEntity"},
    {"Cli::Session::EntityCopyGlobalSessionHandler", 258, "handleEntity"},
    {"Cli::Session::EntityCopyGlobalSessionHandler", 387, "copied"},
    {"Cli::Session::EntityCopyGlobalSessionHandler", 391, "postAttributeCopy"},
    {"PolicyMap::PolicyMapCopyHandler", 514, "classMapComparer"},
    {"PolicyMap::PolicyMapCopyHandler", 515, "updateActionPtrs"},
    {"PolicyMap::PolicyMapCopyHandler", 517, "subConfigDelete"},
};

TEST(AttributeTable, IdsOfTheBasesStand) {
  for (BaseRow const& row : kBases) {
    VyxType const* const type = VyxType::typeByName(row.type);
    ASSERT_NE(nullptr, type) << row.type;
    Vyx::VyxAttr const* const attr = type->attr(Vyx::Name(row.attribute));
    ASSERT_NE(nullptr, attr) << row.type << ' ' << row.attribute;
    EXPECT_EQ(row.id, attr->id()) << row.type << ' ' << row.attribute;
  }
}

TEST(AttributeTable, NoTypeHasAnIdOrANameTwice) {
  for (VyxType const* type : VyxType::types())
    for (VyxType::AttributeQIteratorConst at(*type); at; ++at) {
      EXPECT_EQ(&*at, type->attr(at->id())) << type->fullTypeName() << ' ' << at->name();
      EXPECT_EQ(&*at, type->attr(at->name())) << type->fullTypeName() << ' ' << at->id();
    }
}

} // namespace
