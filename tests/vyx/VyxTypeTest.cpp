#include "Vyx/VyxType.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Vyx::Name;
using Vyx::VyxType;
using Introspection = Vyx::VyxAttr::VyxAttrIntrospectionFlags;

class LampType final : public VyxType {
public:
  explicit LampType(VyxType const* base = nullptr) : VyxType("Lamp", nullptr, base, {}) {}
  int changes = 0;

protected:
  void typeFlagsDoEmbeddedWriteConstraints() override { ++changes; }
};

class VyxTypeTest : public testing::Test {
protected:
  void enter(char const* name, Vyx::AttributeId id) {
    type->attributeQEnq(type->attrIs(name, nullptr, nullptr, {}, id));
  }
  std::string names() const {
    std::string all;
    for (VyxType::AttributeQIteratorConst at(*type); at; ++at) all += std::string(at->name().view()) + " ";
    return all;
  }
  Vyx::Ptr<LampType> type = Vyx::ptrFromNew(new LampType);
};

TEST_F(VyxTypeTest, AttributesKeepTheOrderOfTheirEntering) {
  enter("lit", 258);
  enter("color", 257);
  enter("age", 300);
  EXPECT_EQ("lit color age ", names());
  EXPECT_EQ("color", type->attr(257)->name());
  EXPECT_EQ(300, type->attr(Name("age"))->id());
}

TEST_F(VyxTypeTest, UnknownAttributeIsNull) {
  enter("lit", 258);
  EXPECT_EQ(nullptr, type->attr(259));
  EXPECT_EQ(nullptr, type->attr(Name("dim")));
}

TEST_F(VyxTypeTest, AttributeLeavesByItsName) {
  for (auto const& [name, id] : {std::pair("lit", 258), {"color", 257}, {"age", 300}}) enter(name, id);
  type->attrDel("color");
  type->attrDel("dim");
  EXPECT_EQ("lit age ", names());
}

TEST_F(VyxTypeTest, FlagsStandAtTheirBits) {
  type->isValueIs(true);
  type->isEnumTypeIs(true);
  EXPECT_EQ(0x11U, type->flags().low);
  type->isEntityIs(true);
  type->hasGenericIfSupportIs(true);
  EXPECT_EQ(0x28000000U, type->flags().high);
}

TEST_F(VyxTypeTest, ChangeHandlerIsCalledOnceForEachChange) {
  type->isValueIs(false);
  EXPECT_EQ(0, type->changes);
  type->isValueIs(true);
  type->isValueIs(true);
  EXPECT_EQ(1, type->changes);
  type->isValueIs(false);
  EXPECT_EQ(2, type->changes);
}

TEST_F(VyxTypeTest, TypeIsEachOfItsBases) {
  LampType derived(type.ptr());
  EXPECT_TRUE(derived.isA(type.ptr()));
  EXPECT_TRUE(derived.isA(&derived));
  EXPECT_FALSE(type->isA(&derived));
  EXPECT_FALSE(type->isA(nullptr));
}

TEST_F(VyxTypeTest, NamedTypeIsFoundAndKeepsItsPlace) {
  static auto* const first = new LampType;
  static auto* const second = new LampType;
  EXPECT_EQ("Lamp", first->fullTypeName());
  VyxType::typeNodeIs(first, "Home::Lamp");
  VyxType::typeNodeIs(second, "Home::Lamp");
  EXPECT_EQ("Home::Lamp", first->fullTypeName());
  EXPECT_EQ(first, VyxType::typeByName("Home::Lamp"));
  EXPECT_EQ(nullptr, VyxType::typeByName("Home::Torch"));
  EXPECT_EQ(1, std::count(VyxType::types().begin(), VyxType::types().end(), first));
  EXPECT_EQ(0, std::count(VyxType::types().begin(), VyxType::types().end(), second));
}

TEST_F(VyxTypeTest, CopiedAttributeHasTheSameContent) {
  auto const attr = type->attrIs("lit", type.ptr(), type.ptr(), {3, 4}, 258);
  attr->argumentEnq("key", "U32");
  attr->hashedIs(true);
  attr->introspectionIs(Introspection::isFunction_());
  auto const copy = attr->copy();
  EXPECT_NE(attr, copy);
  EXPECT_EQ("lit", copy->name());
  EXPECT_EQ(258, copy->id());
  EXPECT_EQ(attr->flags(), copy->flags());
  EXPECT_EQ(attr->introspection(), copy->introspection());
  EXPECT_EQ("U32", copy->arguments().at(0).type);
  EXPECT_TRUE(copy->hashed() && copy->keyType() == type.ptr());
}

TEST(IntrospectionFlags, OutOfRangeIsToldToTheLetter) {
  EXPECT_EQ(0x3fU, Introspection(0x3f).value());
  try {
    Introspection flags(0x40);
    ADD_FAILURE() << "nothing was thrown";
  } catch (Vyx::RangeException const& error) {
    EXPECT_STREQ("VyxAttrIntrospectionFlags::value > 0x3f not allowed", error.what());
  }
}

TEST(IntrospectionFlags, HaveTheirNumbers) {
  EXPECT_EQ(2U, Introspection::isIndependentDomainAttr_().value());
  EXPECT_EQ(8U, Introspection::isFunction_().value());
  EXPECT_EQ(32U, Introspection::hasInternalIndex_().value());
}

} // namespace
