#include "Vyx/ValueType.h"

#include <gtest/gtest.h>

namespace {

using Vyx::GenericIf;
using Vyx::Ptr;
using Op = GenericIf::AttributeOp;

// A value type that offers as many operators as its record says.
template <Vyx::ValueOperators offered> struct Degree {
  unsigned value = 64;
  bool operator==(Degree const&) const = default;
  bool operator<(Degree const& o) const { return value < o.value; }
  static Vyx::VyxType const* _fwkType() {
    static auto* const record = new Vyx::ValueType<Degree>("Degree", offered);
    return record;
  }
  friend Vyx::String8 valueToStrep(Degree const& degree) { return Vyx::valueToStrep(degree.value); }
  friend Degree sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, Degree*) {
    return {sequenceToValue(at, end, static_cast<unsigned*>(nullptr))};
  }
};

bool asBool(Ptr<GenericIf> const& result) { return Vyx::unwrap<bool>(*result); }

// The result of an operator with its operand in the value.
template <class T> bool apply(T const& left, Op::OpId code, T const& right) {
  return asBool(Vyx::wrap(left)->attributeOp({0, code}, nullptr, Vyx::wrap(right)));
}
// The six results in the order of their codes.
template <class T> std::string compare(T const& left, T const& right) {
  std::string results;
  for (int code = 256; code <= 261; ++code) results += apply(left, Op::OpId(code), right) ? '1' : '0';
  return results;
}
template <class T> bool negate(T const& value) {
  return asBool(Vyx::wrap(value)->attributeOp({0, Op::OpId(262)}, nullptr, nullptr));
}

// What a call that is to fail with that exception says.
template <class Raised, class Call> std::string message(Call call) {
  try {
    call();
  } catch (Raised const& error) {
    return error.what();
  }
  return "nothing was thrown";
}

TEST(ValueGenericIf, OperatorsByTheirCodes) {
  // ==, !=, >, <, >=, <=
  EXPECT_EQ("010101", compare(1U, 2U));
  EXPECT_EQ("100011", compare(2U, 2U));
  EXPECT_EQ("011010", compare(3U, 2U));
}

TEST(ValueGenericIf, OperatorsOnTextsAndBooleans) {
  EXPECT_EQ("010101", compare(Vyx::Name("a"), Vyx::Name("b")));
  EXPECT_EQ("100011", compare(Vyx::String8("a"), Vyx::String8("a")));
  EXPECT_EQ("011010", compare(true, false));
}

TEST(ValueGenericIf, NegationTakesNoOperand) {
  EXPECT_TRUE(negate(0U));
  EXPECT_FALSE(negate(3U));
  EXPECT_TRUE(negate(false));
  EXPECT_TRUE(negate(Vyx::Name()));
  EXPECT_FALSE(negate(Vyx::Name("a")));
}

TEST(ValueGenericIf, OperandMayStandInTheIndex) {
  auto const two = Vyx::wrap(2U);
  EXPECT_TRUE(asBool(two->attributeOp({0, Op::equal}, Vyx::wrap(2U), nullptr)));
  EXPECT_FALSE(asBool(two->attributeOp({0, Op::equal}, Vyx::wrap(3U), nullptr)));
}

TEST(ValueGenericIf, OperandMayStandInTheIndexByName) {
  auto const list = Vyx::ptrFromNew(new GenericIf::List_);
  list->argumentIs("other", Vyx::wrap(9U));
  list->argumentIs("vyxOpArg", Vyx::wrap(2U));
  EXPECT_TRUE(asBool(Vyx::wrap(2U)->attributeOp({0, Op::equal}, list, nullptr)));
}

TEST(ValueGenericIf, ValueGoesBeforeTheIndex) {
  EXPECT_TRUE(asBool(Vyx::wrap(2U)->attributeOp({0, Op::equal}, Vyx::wrap(3U), Vyx::wrap(2U))));
}

TEST(ValueGenericIf, MissingOperandIsNamed) {
  char const* const missing = "missing or of the wrong type: vyxOpArg";
  auto const two = Vyx::wrap(2U);
  EXPECT_EQ(missing, message<Vyx::TypeException>([&] { two->attributeOp({0, Op::less}, nullptr, nullptr); }));
  auto const list = Vyx::ptrFromNew(new GenericIf::List_);
  list->argumentIs("other", Vyx::wrap(2U));
  EXPECT_EQ(missing, message<Vyx::TypeException>([&] { two->attributeOp({0, Op::less}, list, nullptr); }));
}

TEST(ValueGenericIf, OperandOfAnotherTypeNamesTheOperandsType) {
  EXPECT_EQ("missing or of the wrong type: bool", message<Vyx::TypeException>([] {
              Vyx::wrap(2U)->attributeOp({0, Op::equal}, nullptr, Vyx::wrap(true));
            }));
}

TEST(ValueGenericIf, TypeOffersNegationAlone) {
  using Negatable = Degree<Vyx::ValueOperators::negation>;
  EXPECT_TRUE(negate(Negatable())) << "the default value is none";
  EXPECT_FALSE(negate(Negatable{1}));
  EXPECT_TRUE(Vyx::valueOperators(Negatable::_fwkType()) == Vyx::ValueOperators::negation);
  EXPECT_EQ("operation 256 is not supported on Degree",
            message<Vyx::OpNotSupportedException>([] { apply(Negatable(), Op::equal, Negatable()); }));
}

TEST(ValueGenericIf, TypeOffersNoOperator) {
  using Plain = Degree<Vyx::ValueOperators::none>;
  EXPECT_EQ("operation 262 is not supported on Degree",
            message<Vyx::OpNotSupportedException>([] { negate(Plain()); }));
}

TEST(ValueGenericIf, ConstInstanceComparesButIsNotModified) {
  auto const fixed = Vyx::ptrFromNew(new Vyx::ValueGenericIf<unsigned>(2, true));
  EXPECT_TRUE(asBool(fixed->attributeOp({0, Op::equal}, nullptr, Vyx::wrap(2U))));
  for (unsigned code : {128U, 129U, 255U})
    EXPECT_EQ("attempting to modify a const instance", message<Vyx::ConstException>([&] {
                fixed->attributeOp({9999, Op::OpId(code)}, nullptr, nullptr);
              }));
}

TEST(ValueGenericIf, UnknownAttributeIsNamedByItsNumber) {
  EXPECT_EQ("unknown attribute: 7", message<Vyx::UnknownAttrException>([] {
              Vyx::wrap(2U)->attributeOp({7, Op::read}, nullptr, nullptr);
            }));
  EXPECT_EQ("unknown attribute: depth",
            message<Vyx::UnknownAttrException>([] { Vyx::wrap(2U)->attributeId("depth"); }));
}

TEST(ValueGenericIf, HoldsACopy) {
  unsigned value = 2;
  auto const interface = Vyx::wrap(value);
  value = 3;
  EXPECT_EQ(2U, Vyx::unwrap<unsigned>(*interface));
  EXPECT_EQ(2U, *static_cast<unsigned*>(interface->object()));
}

TEST(ValueGenericIf, TextAndHashAreTheValues) {
  EXPECT_EQ("2", Vyx::wrap(2U)->strRep());
  EXPECT_EQ(2U, Vyx::wrap(2U)->hash());
  EXPECT_EQ(Vyx::Name("pbr").hash(), Vyx::wrap(Vyx::Name("pbr"))->hash());
  EXPECT_EQ("U32", Vyx::wrap(2U)->type()->name());
}

TEST(ValueGenericIf, MissingValueIsNamedWhereItIsUnwrapped) {
  EXPECT_EQ("missing or of the wrong type: recursive", message<Vyx::TypeException>([] {
              static_cast<void>(Vyx::unwrapOr<bool>(Ptr<GenericIf>(), "recursive"));
            }));
}

TEST(ValueGenericIf, ValueIsReadFromItsText) {
  auto const read = Vyx::typeOf<unsigned>()->valueFromStrep("17");
  EXPECT_EQ(17U, Vyx::unwrap<unsigned>(*read));
  EXPECT_THROW(Vyx::typeOf<unsigned>()->valueFromStrep("x"), Vyx::RangeException);
}

TEST(ValueGenericIf, ForwardedChangeRunsTheStateMachineFirst) {
  struct Watched final : Vyx::ValueGenericIf<unsigned> {
    Watched() : ValueGenericIf(1, false) {}
    void actsm() override { told += "actsm "; }
    void onAttribute(Vyx::AttributeId id) override { told += std::to_string(id); }
    std::string told;
  };
  auto const watched = Vyx::ptrFromNew(new Watched);
  watched->vyxForward(388);
  EXPECT_EQ("actsm 388", watched->told);
}

} // namespace
