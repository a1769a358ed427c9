#include "Vyx/Entity.h"
#include "Vyx/StreamAdapter.h"
#include "Vyx/VyxType.h"

#include <gtest/gtest.h>

namespace {

using Vyx::Entity;
using Vyx::Ptr;

constexpr Vyx::AttributeId kPorch = 258;
constexpr Vyx::AttributeId kBulbs = 259;

// The record of House: `porch`, a single child, and `bulbs`, keyed by the child's name.
class HouseType final : public Vyx::VyxType {
public:
  HouseType() : VyxType("House", nullptr, Entity::_fwkType(), {}) {
    isNondestructingIs(true);
    auto const name = Entity::_fwkType()->attr(Vyx::Name("name"))->copy();
    attributeQEnq(name);
    attributeQEnq(attrIs("porch", nullptr, nullptr, {}, kPorch));
    auto const bulbs = attrIs("bulbs", nullptr, nullptr, {}, kBulbs);
    bulbs->keyAttrIs(name.ptr());
    attributeQEnq(bulbs);
  }
};

class House : public Entity {
public:
  explicit House(Vyx::Name name) : Entity(std::move(name)) {}
  void handleParent(Ptr<Entity> const& parent) override {
    ++asked;
    EXPECT_EQ(parent.ptr(), vyxParent());
    EXPECT_EQ(expectedId, parentAttrId());
  }
  Vyx::VyxType const* fwkType() const override {
    static auto* const type = new HouseType;
    return type;
  }
  int asked = 0;
  Vyx::AttributeId expectedId = 136;
};

Ptr<House> make(char const* name) { return Vyx::ptrFromNew(new House(name)); }

// As an owner attaches its child.
void attach(House& child, Ptr<House> const& parent, Vyx::AttributeId id) {
  child.expectedId = id;
  child.parentAttrIdIs(id);
  child.parentIs(Ptr<Entity>(parent));
}

class EntityTest : public testing::Test {
protected:
  std::string uri(Entity const& of) { return std::string(of.uriPath().view()); }
  std::string full(Entity const& of) { return std::string(of.fullName().view()); }
  Ptr<House> house = make("house"), other = make("other");
};

TEST_F(EntityTest, FreshEntityHasNoParent) {
  EXPECT_EQ(nullptr, house->parent().ptr());
  EXPECT_EQ(nullptr, house->parentAttr());
  EXPECT_EQ(136, house->parentAttrId());
  EXPECT_EQ(1U, house->vyxReferenceWord());
  EXPECT_EQ("house", house->name());
}

TEST_F(EntityTest, ChildDoesNotHoldItsParent) {
  attach(*house, other, kPorch);
  EXPECT_EQ(1U, other->references());
  EXPECT_EQ(other.ptr(), house->parent().ptr());
  EXPECT_EQ(other.ptr(), static_cast<Entity const&>(*house).parent().ptr());
}

TEST_F(EntityTest, HookHearsOfTheParentAfterTheStore) {
  attach(*house, other, kPorch);
  EXPECT_EQ(1, house->asked);
  house->parentIs(Ptr<Entity>());
  EXPECT_EQ(2, house->asked);
  EXPECT_EQ(nullptr, house->vyxParent());
}

TEST_F(EntityTest, ParentThatIsGoneCallsNoHook) {
  attach(*house, other, kPorch);
  house->vyxParentGone();
  EXPECT_EQ(1, house->asked);
  EXPECT_EQ(nullptr, house->parent().ptr());
}

TEST_F(EntityTest, ParentAttributeIsTheParentsRecord) {
  attach(*house, other, kBulbs);
  EXPECT_EQ(other->fwkType()->attr(kBulbs), house->parentAttr());
  house->expectedId = 1000;
  house->parentAttrIdIs(1000);
  EXPECT_EQ(nullptr, house->parentAttr());
}

TEST_F(EntityTest, RootIsNamedByItself) {
  EXPECT_EQ("house", uri(*house));
  EXPECT_EQ("house", full(*house));
}

TEST_F(EntityTest, SingleChildIsNamedByItsAttribute) {
  attach(*other, house, kPorch);
  EXPECT_EQ("house/porch", uri(*other));
  EXPECT_EQ("house.porch", full(*other));
}

TEST_F(EntityTest, MemberIsNamedByAttributeAndKey) {
  attach(*other, house, kBulbs);
  EXPECT_EQ("house/bulbs/other", uri(*other));
  EXPECT_EQ("house.bulbs[other]", full(*other));
}

TEST_F(EntityTest, PathsGoThroughAllParents) {
  attach(*other, house, kBulbs);
  auto const lamp = make("lamp");
  attach(*lamp, other, kPorch);
  EXPECT_EQ("house/bulbs/other/porch", uri(*lamp));
  EXPECT_EQ("house.bulbs[other].porch", full(*lamp));
}

TEST_F(EntityTest, PiecesOfAPathAreEscaped) {
  auto const slash = make("a/b"), percent = make("50%\n"), plain = make("a b.c");
  EXPECT_EQ("a%2Fb", uri(*slash));
  attach(*percent, slash, kBulbs);
  EXPECT_EQ("a%2Fb/bulbs/50%25%0A", uri(*percent));
  EXPECT_EQ("a/b.bulbs[50%\n]", full(*percent));
  EXPECT_EQ("a%20b.c", uri(*plain));
}

TEST_F(EntityTest, RootWithoutANameAddsNoDot) {
  attach(*house, make(""), kPorch);
  auto const root = make("");
  house->parentIs(Ptr<Entity>(root));
  EXPECT_EQ("porch", full(*house));
  EXPECT_EQ("/porch", uri(*house));
}

TEST_F(EntityTest, AttributesAreNamed) {
  EXPECT_EQ("name", house->attributeString(Entity::_fwkType()->attr(Vyx::Name("name"))->id()));
  EXPECT_EQ("unknown", house->attributeString(9999));
}

TEST_F(EntityTest, PlainEntityIsOnNoLog) {
  EXPECT_FALSE(house->vyxHasAttrLogInterface());
  EXPECT_FALSE(house->vyxNboAttrLogSaForMsgChannel({}));
}

} // namespace
