#include "Vyx/IntrospectionReactor.h"

#include <gtest/gtest.h>

namespace {

using Introspection = Vyx::VyxAttr::VyxAttrIntrospectionFlags;

class IntrospectionReactorTest : public testing::Test {
protected:
  static Vyx::Ptr<Vyx::VyxType> makeType(char const* name, Vyx::VyxType const* base = nullptr) {
    return Vyx::ptrFromNew(new Vyx::VyxType(name, nullptr, base, {}));
  }
  Vyx::VyxAttr* define(Vyx::Name name, Vyx::AttributeId id) {
    return reactor->defNoninstantiatingAttr(*type, name, nullptr, nullptr, {1, 2}, Introspection(2), id);
  }
  std::string heard() const {
    std::string all;
    for (std::string const& line : reactor->heard()) all += line + "; ";
    return all;
  }
  Vyx::Ptr<Vyx::IntrospectionReactor> reactor = Vyx::ptrFromNew(new Vyx::IntrospectionReactor);
  Vyx::Ptr<Vyx::VyxType> type = makeType("Lamp");
};

TEST_F(IntrospectionReactorTest, ThereIsOne) {
  EXPECT_EQ(Vyx::IntrospectionReactor::global().ptr(), Vyx::IntrospectionReactor::global().ptr());
}

TEST_F(IntrospectionReactorTest, IsReadyUntilItsContextSaysOtherwise) {
  EXPECT_TRUE(reactor->context()->ready());
  auto const busy = Vyx::ptrFromNew(new Vyx::IntrospectionReactor::Context);
  busy->readyIs(false);
  reactor->contextIs(busy);
  EXPECT_FALSE(reactor->context()->ready());
}

TEST_F(IntrospectionReactorTest, HearsInTheOrderOfTelling) {
  reactor->handleNameSpace("Home");
  reactor->handleType(type, nullptr);
  reactor->handleScopeExit();
  reactor->handleType(makeType("Torch", type.ptr()), type);
  EXPECT_EQ("namespace Home; type Lamp; exit; type Torch : Lamp; ", heard());
}

TEST_F(IntrospectionReactorTest, DefinedAttributeIsEnteredAndAnnounced) {
  Vyx::VyxAttr* const attr = define("lit", 258);
  EXPECT_EQ("attr lit; attr exit; ", heard());
  EXPECT_EQ(attr, type->attr(258));
  EXPECT_EQ(attr, type->attr(Vyx::Name("lit")));
  EXPECT_EQ(2U, attr->introspection().value());
  EXPECT_EQ((Vyx::VyxAttr::AttrFlags{1, 2}), attr->flags());
}

TEST_F(IntrospectionReactorTest, RedefinedAttributeTakesTheOldOnesPlaceByName) {
  define("lit", 258);
  define("color", 259);
  define("lit", 260);
  EXPECT_EQ(2U, type->attributeQ().count());
  EXPECT_EQ(nullptr, type->attr(258));
  EXPECT_EQ(260, type->attr(Vyx::Name("lit"))->id());
}

} // namespace
