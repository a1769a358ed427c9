// What a type record and an attribute record hold, apart from how they are filled.

#include "RecordText.h"
#include "frame/EntityStandards.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using Vyx::VyxAttr;
using Vyx::VyxType;
using IntrospectionFlags = VyxAttr::VyxAttrIntrospectionFlags;

// Counts the calls of the change handler.
class CountingType final : public VyxType {
public:
  CountingType() : VyxType("Counting", nullptr, nullptr, {}) {}
  int changes = 0;

protected:
  void typeFlagsDoEmbeddedWriteConstraints() override { ++changes; }
};

struct FlagSetter {
  void (VyxType::*set)(bool);
  bool (VyxType::*get)() const;
  std::uint32_t low;
  std::uint32_t high;
};

constexpr FlagSetter kSetters[] = {
    {&VyxType::isValueIs, &VyxType::isValue, 0x1, 0},
    {&VyxType::isEnumTypeIs, &VyxType::isEnumType, 0x10, 0},
    {&VyxType::isEntityIs, &VyxType::isEntity, 0, 0x8000000},
    {&VyxType::hasGenericIfSupportIs, &VyxType::hasGenericIfSupport, 0, 0x20000000},
};

class TypeFlag : public testing::TestWithParam<FlagSetter> {
protected:
  void set(bool value) { (*type.*GetParam().set)(value); }
  bool get() const { return (*type.*GetParam().get)(); }
  Vyx::Ptr<CountingType> type = Vyx::ptrFromNew(new CountingType);
};

TEST_P(TypeFlag, ChangeSetsTheBitAndCallsTheHandlerOnce) {
  set(true);
  EXPECT_TRUE(get());
  EXPECT_EQ(1, type->changes);
  EXPECT_EQ(GetParam().low, type->flags().low);
  EXPECT_EQ(GetParam().high, type->flags().high);
  set(false);
  EXPECT_FALSE(get());
  EXPECT_EQ(2, type->changes);
  EXPECT_EQ(VyxAttr::AttrFlags(), type->flags());
}

TEST_P(TypeFlag, AskedValueThatIsThereCallsNobody) {
  set(false);
  EXPECT_EQ(0, type->changes);
  set(true);
  set(true);
  EXPECT_EQ(1, type->changes);
}

TEST_P(TypeFlag, LeavesTheOtherBitsAlone) {
  for (FlagSetter const& other : kSetters) (*type.*other.set)(true);
  set(false);
  for (FlagSetter const& other : kSetters) EXPECT_EQ(other.set != GetParam().set, (*type.*other.get)());
}

INSTANTIATE_TEST_SUITE_P(Each, TypeFlag, testing::ValuesIn(kSetters));

TEST(IntrospectionFlags, SixtyThreeIsTheGreatest) {
  EXPECT_EQ(63U, IntrospectionFlags(63).value());
  try {
    IntrospectionFlags(64);
    ADD_FAILURE() << "64 was taken";
  } catch (Vyx::RangeException const& error) {
    EXPECT_STREQ("VyxAttrIntrospectionFlags::value > 0x3f not allowed", error.what());
  }
}

TEST(IntrospectionFlags, NamedValuesHaveTheirNumbers) {
  EXPECT_EQ(0U, IntrospectionFlags().value());
  EXPECT_EQ(2U, IntrospectionFlags::isIndependentDomainAttr_().value());
  EXPECT_EQ(8U, IntrospectionFlags::isFunction_().value());
  EXPECT_EQ(32U, IntrospectionFlags::hasInternalIndex_().value());
}

// An attribute with everything that a record can say.
Vyx::Ptr<VyxAttr> fullAttribute(VyxType const& type) {
  Vyx::Ptr<VyxAttr> const attr = type.attrIs("door", &type, &type, {1, 2}, 258);
  attr->argumentEnq("width", "U32");
  attr->argumentEnq("name", "Vyx::Name");
  attr->keyAttrIs(attr.ptr());
  attr->hashedIs(true);
  attr->introspectionIs(IntrospectionFlags(5));
  attr->opsIs(&frame::opsInstance<frame::IsNondestructingOps>());
  return attr;
}

TEST(AttributeRecord, CopySaysTheSame) {
  auto const type = Vyx::ptrFromNew(new CountingType);
  auto const attr = fullAttribute(*type);
  auto const copy = attr->copy();
  EXPECT_NE(attr.ptr(), copy.ptr());
  EXPECT_EQ("258 | door | Counting | Counting | 0x1 | 0x2 | 5 | width U32 name Vyx::Name door hashed=1",
            attributeRow(*copy));
  EXPECT_EQ(attributeRow(*attr), attributeRow(*copy));
  EXPECT_EQ(attr->keyAttr(), copy->keyAttr());
  EXPECT_EQ(attr->ops(), copy->ops());
}

TEST(TypeRecord, FindsAnAttributeByNameAndById) {
  auto const type = Vyx::ptrFromNew(new CountingType);
  auto const attr = fullAttribute(*type);
  EXPECT_EQ(nullptr, type->attr(Vyx::Name("door")));
  type->attributeQEnq(attr);
  EXPECT_EQ(attr.ptr(), type->attr(Vyx::Name("door")));
  EXPECT_EQ(attr.ptr(), type->attr(258));
  EXPECT_EQ(nullptr, type->attr(259));
  type->attrDel("window");
  EXPECT_EQ(attr.ptr(), type->attr(258));
  type->attrDel("door");
  EXPECT_EQ(nullptr, type->attr(258));
}

TEST(TypeRecord, QueueKeysRiseAndAreNotUsedAgain) {
  auto const type = Vyx::ptrFromNew(new CountingType);
  type->attributeQEnq(fullAttribute(*type));
  type->attrDel("door");
  type->attributeQEnq(fullAttribute(*type));
  EXPECT_EQ(2U, type->attributeQ().head()->fwkQkey());
}

} // namespace
