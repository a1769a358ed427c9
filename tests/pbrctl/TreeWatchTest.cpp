// Every attribute of every type of entity is watched. Types and attributes are found in the records, so that
// a new one is covered without a line here.

#include "pbrctl/TreeWatch.h"
#include "Pbr/Pbr.h"
#include "Pbr/PbrCopy.h"
#include "Vyx/ValueGenericIf.h"
#include "pbrctl/Attributes.h"

#include <gmock/gmock.h>

namespace Pbrctl {
namespace {

using testing::Contains;
using testing::ElementsAre;
using Vyx::GenericIf;
using Vyx::VyxAttr;
using Vyx::VyxType;
using Op = GenericIf::AttributeOp;
using Object = Vyx::Ptr<GenericIf>;
using Lines = std::vector<std::string>;

// A value of a type, by its text; number 0 and number 1 differ.
Object valueOf(VyxType const& type, unsigned number) {
  static constexpr std::array<std::array<char const*, 7>, 2> kTexts = {{
      {"1", "true", "10.0.0.1", "00000001-0002-0003", "Ethernet1:intfNotRouted", "ip any any", "ip"},
      {"2", "false", "10.0.0.2", "00000004-0005-0006", "Ethernet2:intfNotRouted", "tcp any any", "mac"},
  }};
  Lines texts;
  for (VyxType::AttributeQIteratorConst at(type); at && type.isEnumType(); ++at)
    texts.emplace_back(at->name().view());
  if (!texts.empty()) std::rotate(texts.begin(), texts.begin() + number, texts.end());
  texts.insert(texts.end(), kTexts[number].begin(), kTexts[number].end());
  for (std::string const& text : texts) {
    try {
      return type.valueFromStrep(Vyx::String8(text));
    } catch (Vyx::Exception const&) {
    }
  }
  ADD_FAILURE() << "no value of " << type.fullTypeName();
  return nullptr;
}

// For the base of all entities, one of any type.
Object made(VyxType const& wanted) {
  VyxType const& type = wanted.baseType() ? wanted : *Pbr::PbrActionContainer::_fwkType();
  auto const list = Vyx::ptrFromNew(new GenericIf::List_);
  for (std::size_t i = 0; i < type.constructorArgNameQ().size(); ++i)
    list->argumentIs(type.constructorArgNameQ()[i],
                     valueOf(*VyxType::typeByName(type.constructorArgTypeQ()[i]), 0));
  return type.newInstance(list);
}

template <class Visit> void eachAttribute(VyxType const& type, Visit visit) {
  for (VyxType::AttributeQIteratorConst at(type); at; ++at)
    if (isState(*at) && !isFixed(*at)) visit(*at);
}

std::vector<VyxType const*> entityTypes() {
  std::vector<VyxType const*> types;
  for (VyxType const* type : VyxType::types())
    if (type->isEntity() && type->baseType()) types.push_back(type);
  return types;
}

class TreeWatchTest : public testing::Test {
protected:
  // An entity of the type, and what its watcher tells.
  class Watched {
  public:
    explicit Watched(VyxType const& type) : object(made(type)), watch_(entity(object), sink()) {}

    Object const object;
    Lines take() { return std::exchange(lines_, {}); }

  private:
    ChangeSink sink() {
      return [this](Change const& change) {
        lines_.push_back(std::string(kindName(change.kind)) + " " + change.path() +
                         (change.kind == Change::Kind::set ? " = " + change.value : ""));
      };
    }
    Lines lines_;
    TreeWatch watch_;
  };

  static Vyx::Ptr<Vyx::Entity> entity(Object const& object) {
    return Vyx::Ptr<Vyx::Entity>(static_cast<Vyx::Entity*>(object->object()));
  }
  static Object op(Object const& of, VyxAttr const& attr, Op::OpId code, Object const& key = nullptr,
                   Object const& value = nullptr) {
    return of->attributeOp({attr.id(), code}, key, value);
  }
  static std::string nameOf(VyxAttr const& attr) { return std::string(attr.name().view()); }

  static void expectValue(Watched& watched, VyxAttr const& attr) {
    Object value = valueOf(*attr.valueType(), 0);
    if (value->strRep() == op(watched.object, attr, Op::read)->strRep())
      value = valueOf(*attr.valueType(), 1);
    op(watched.object, attr, Op::write, nullptr, value);
    EXPECT_THAT(watched.take(), ElementsAre("set " + nameOf(attr) + " = " + plainText(*value)));
  }
  static void expectValues(Watched& watched, VyxAttr const& attr) {
    Object const key = valueOf(keyTypeOf(attr), 0);
    Object const value = valueOf(*attr.valueType(), 0);
    std::string const place = nameOf(attr) + "[" + plainText(*key) + "]";
    op(watched.object, attr, Op::write, key, value);
    if (isQueue(watched, attr)) return;
    EXPECT_THAT(watched.take(), ElementsAre("set " + place + " = " + plainText(*value)));
    op(watched.object, attr, Op::del, key);
    EXPECT_THAT(watched.take(), ElementsAre("removed " + place));
  }
  // Reflection enters nothing in a queue.
  static bool isQueue(Watched& watched, VyxAttr const& attr) {
    return op(watched.object, attr, Op::memberCount)->strRep() == Vyx::String8("0");
  }
  // A child that is there goes first.
  static void expectChild(Watched& watched, VyxAttr const& attr) {
    op(watched.object, attr, Op::del);
    watched.take();
    attr.ops()->childLike(*entity(watched.object), *entity(made(*attr.valueType())));
    EXPECT_THAT(watched.take(), ElementsAre("added " + nameOf(attr)));
    expectBelow(watched, op(watched.object, attr, Op::read), nameOf(attr));
    op(watched.object, attr, Op::del);
    EXPECT_THAT(watched.take(), ElementsAre("removed " + nameOf(attr)));
  }
  static void expectChildren(Watched& watched, VyxAttr const& attr) {
    attr.ops()->childLike(*entity(watched.object), *entity(made(*attr.valueType())));
    auto const at = watched.object->attributeIteratorConst(attr.id());
    ASSERT_TRUE(at);
    Object const key = at.key();
    std::string const place = nameOf(attr) + "[" + plainText(*key) + "]";
    EXPECT_THAT(watched.take(), ElementsAre("added " + place));
    expectBelow(watched, at.value(), place);
    op(watched.object, attr, Op::del, key);
    EXPECT_THAT(watched.take(), ElementsAre("removed " + place));
  }
  static void expectReference(Watched& watched, VyxAttr const& attr) {
    Object const to = made(*attr.valueType());
    op(watched.object, attr, Op::write, nullptr, to);
    EXPECT_THAT(watched.take(), Contains(testing::StartsWith("set " + nameOf(attr) + " = ")));
    op(watched.object, attr, Op::write, nullptr, to);
    EXPECT_THAT(watched.take(), ElementsAre());
  }
  static void expectReferences(Watched& watched, VyxAttr const& attr) {
    op(watched.object, attr, Op::write, valueOf(keyTypeOf(attr), 0), made(*attr.valueType()));
    EXPECT_THAT(watched.take(), ElementsAre(testing::StartsWith("set " + nameOf(attr) + "[")));
    Object const key = watched.object->attributeIteratorConst(attr.id()).key();
    op(watched.object, attr, Op::del, key);
    EXPECT_THAT(watched.take(), ElementsAre("removed " + nameOf(attr) + "[" + plainText(*key) + "]"));
  }

  // The first attribute of the child that is a plain value is told with its place in front.
  static void expectBelow(Watched& watched, Object const& child, std::string const& place) {
    bool isDone = false;
    eachAttribute(*child->type(), [&](VyxAttr const& attr) {
      if (isDone || isKeyed(attr) || holdsEntities(attr)) return;
      Object value = valueOf(*attr.valueType(), 0);
      if (value->strRep() == op(child, attr, Op::read)->strRep()) value = valueOf(*attr.valueType(), 1);
      op(child, attr, Op::write, nullptr, value);
      EXPECT_THAT(watched.take(),
                  ElementsAre("set " + place + "." + nameOf(attr) + " = " + plainText(*value)));
      isDone = true;
    });
  }

  static void expectWatched(VyxType const& type, VyxAttr const& attr) {
    Watched watched(type);
    if (isOwning(attr)) return isKeyed(attr) ? expectChildren(watched, attr) : expectChild(watched, attr);
    if (isReference(attr))
      return isKeyed(attr) ? expectReferences(watched, attr) : expectReference(watched, attr);
    isKeyed(attr) ? expectValues(watched, attr) : expectValue(watched, attr);
  }
};

TEST_F(TreeWatchTest, EveryAttributeOfEveryTypeIsTold) {
  Lines told;
  for (VyxType const* type : entityTypes())
    eachAttribute(*type, [&](VyxAttr const& attr) {
      std::string const name = std::string(type->fullTypeName().view()) + "." + nameOf(attr);
      SCOPED_TRACE(name);
      expectWatched(*type, attr);
      told.push_back(name);
    });
  for (char const* const name :
       {"Pbr::Config.pmapType", "Pbr::PbrFwdAction.nexthop", "Pbr::Status.initialized",
        "PolicyMap::ClassAction.policyAction", "Pbr::CheckpointStatus.checkpointAgentStatus",
        "Pbr::PbrClassMapStatus.nexthopIndexAndL2AdjKey"})
    EXPECT_THAT(told, Contains(name));
}

TEST_F(TreeWatchTest, AQueueIsTold) {
  auto const handler = Pbr::policyMapCopyHandlerFactory();
  Lines told;
  TreeWatch const watch(handler,
                        [&](Change const& change) { told.push_back(change.path() + "=" + change.value); });
  handler->postAttributeCopyEnq("path");
  handler->postAttributeCopyDeq();
  EXPECT_THAT(told, ElementsAre("postAttributeCopy[1]=path", "postAttributeCopy[1]="));
}

TEST_F(TreeWatchTest, ATreeThatIsThereIsWatchedToItsLeaves) {
  auto const root = Pbr::checkpointStatusFactory("pbr");
  auto const map = root->checkpointAgentStatusIs("a")->pmapCkptStatusIs("p")->cmapCkptStatusIs("c");
  auto const acl = map->aclTypeCkptStatusIs(Acl::ipv6)->aclIs("l");
  Lines told;
  TreeWatch const watch(root,
                        [&](Change const& change) { told.push_back(change.path() + "=" + change.value); });
  acl->timestampIs(1.5);
  EXPECT_THAT(told, ElementsAre("checkpointAgentStatus[a].pmapCkptStatus[p].cmapCkptStatus[c]."
                                "aclTypeCkptStatus[ipv6].acl[l].timestamp=1.5"));
}

TEST_F(TreeWatchTest, WhatHasLeftIsNotToldAnyMore) {
  auto const root = Pbr::checkpointStatusFactory("pbr");
  auto const agent = root->checkpointAgentStatusIs("a");
  Lines told;
  TreeWatch const watch(root, [&](Change const& change) { told.push_back(change.path()); });
  root->checkpointAgentStatusDel("a");
  agent->pmapCkptStatusIs("p");
  EXPECT_THAT(told, ElementsAre("checkpointAgentStatus[a]"));
}

TEST_F(TreeWatchTest, NothingIsToldBehindItsEnd) {
  auto const config = Pbr::configFactory("pbr");
  unsigned told = 0;
  {
    TreeWatch const watch(config, [&](Change const&) { ++told; });
  }
  config->bgpPbrRedirectIs(true);
  EXPECT_EQ(0u, told);
  EXPECT_TRUE(config->vyxReactors().empty());
}

TEST_F(TreeWatchTest, AReferenceThatMovesIsFollowedToTheOther) {
  auto const status = Pbr::statusFactory("pbr");
  auto const map = status->pbrClassMapStatusIs("c", Kest::UniqueId(1, 2, 3));
  auto const first = Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet());
  auto const second = Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet());
  map->nexthopIndexAndL2AdjKeyIs(first);
  Lines told;
  TreeWatch const watch(status, [&](Change const& change) { told.push_back(change.value); });
  map->nexthopIndexAndL2AdjKeyIs(second);
  EXPECT_THAT(std::exchange(told, {}), ElementsAre("None", "18446744073709551615", "0", "0", "0"));
  first->l2AdjKeyIs(7);
  second->l2AdjKeyIs(8);
  map->nexthopIndexAndL2AdjKeyIs(nullptr);
  second->l2AdjKeyIs(9);
  EXPECT_THAT(told, ElementsAre("8", "none"));
}

} // namespace
} // namespace Pbrctl
