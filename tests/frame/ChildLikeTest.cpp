// Children that are made after a model, through the records of their types.

#include "ShopListeners.h"

#include "support/Invariants.h"
#include "support/Refusals.h"

#include "Vyx/Exception.h"
#include "Vyx/GenericIf.h"
#include "Vyx/VyxType.h"

namespace {

class ChildLike : public ShelfTest {
protected:
  ~ChildLike() override { checkInvariants(*shelf); }

  static Vyx::VyxAttr const& attr(char const* name) {
    for (Vyx::VyxType::AttributeQIteratorConst at(*Shop::Shelf::_fwkType()); at; ++at)
      if (at->name() == name) return *at;
    throw std::runtime_error(name);
  }
  Vyx::Ptr<Vyx::Entity> like(char const* attribute, Vyx::Entity const& model) {
    return attr(attribute).ops()->childLike(*shelf, model);
  }

  Vyx::Ptr<Shop::Shelf> model = Shop::shelfFactory("model");
};

TEST_F(ChildLike, ASingleChildHasTheModelsValuesAndIsTold) {
  auto const box = like("box", *model->boxIs("red", Shop::fine));
  EXPECT_EQ("box", told());
  EXPECT_EQ(shelf->box(), box);
  EXPECT_EQ("red", shelf->box()->name());
  EXPECT_EQ(Shop::fine, shelf->box()->grade());
  EXPECT_NE(model->box(), shelf->box());
}

TEST_F(ChildLike, ASingleChildOfTheSameValuesStays) {
  auto const box = shelf->boxIs("red", Shop::fine);
  told();
  EXPECT_EQ(box, like("box", *model->boxIs("red", Shop::fine)));
  EXPECT_EQ("", told());
}

TEST_F(ChildLike, ASingleChildOfOtherValuesIsReplaced) {
  auto const box = shelf->boxIs("red", Shop::fine);
  told();
  EXPECT_NE(box, like("box", *model->boxIs("red", Shop::finest)));
  EXPECT_EQ("box", told());
}

TEST_F(ChildLike, AKeyedChildHasTheModelsKeyAndValues) {
  auto const tool = like("tool", *model->toolIs("saw", Shop::fine, 7));
  EXPECT_EQ(shelf->tool("saw"), tool);
  EXPECT_EQ(7U, shelf->tool("saw")->weight());
  EXPECT_EQ(shelf, tool->parent());
}

TEST_F(ChildLike, WhatAModelHoldsBesidesIsNotLookedAt) {
  auto const sign = model->signIs(true, 3);
  sign->versionIs(9);
  like("sign", *sign);
  EXPECT_TRUE(shelf->sign(3)->wide());
  EXPECT_EQ(0U, shelf->sign(3)->version());
}

TEST_F(ChildLike, AnAttributeWithoutChildrenRefuses) {
  auto const box = model->boxIs("red", Shop::fine);
  for (char const* attribute : {"lit", "price", "lent", "note"})
    EXPECT_THROW(like(attribute, *box), Vyx::OpNotSupportedException) << attribute;
}

} // namespace
