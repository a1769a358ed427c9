// The copy of any entity attribute by attribute.

#include "PlantListener.h"

namespace {

using Cli::Session::AttributeFilter;
using Garden::Leaf;
using Garden::Plant;

class EntityCopyTest : public testing::Test {
protected:
  bool copy() { return ec->doCopyEntityAttrs(dest, src, "", nullptr); }
  void expectHeard(std::string const& heardOfCopy) {
    heard.take();
    EXPECT_EQ(!heardOfCopy.empty(), copy());
    EXPECT_EQ(heardOfCopy, heard.take());
    EXPECT_FALSE(copy());
    EXPECT_EQ("", heard.take());
    checkInvariants(*dest);
    checkInvariants(*src);
  }

  Vyx::Ptr<Cli::Session::EntityCopy> const ec = Cli::Session::entityCopyFactory();
  Vyx::Ptr<Plant> const src = Garden::plantFactory("src");
  Vyx::Ptr<Plant> const dest = Garden::plantFactory("dest");
  Heard heard;
  Vyx::Ptr<PlantListener> const listener = listen<PlantListener>(dest, heard);
};

TEST_F(EntityCopyTest, EqualEntitiesStayUntouched) { expectHeard(""); }

TEST_F(EntityCopyTest, ScalarsThatDifferAreWritten) {
  src->heightIs(3);
  src->labelIs("oak");
  dest->labelIs("oak");
  expectHeard("height");
  EXPECT_EQ(3U, dest->height());
}

TEST_F(EntityCopyTest, WhatIsFixedAtConstructionIsNotCopied) {
  auto const red = Garden::leafFactory("a", Garden::red);
  auto const green = Garden::leafFactory("b", Garden::green);
  green->weightIs(5);
  EXPECT_TRUE(ec->doCopyEntityAttrs(red, green, "", nullptr));
  EXPECT_EQ("a", red->name());
  EXPECT_EQ(Garden::red, red->colour());
  EXPECT_EQ(5U, red->weight());
}

TEST_F(EntityCopyTest, VirtualSetterIsCalled) {
  class Counting final : public Plant {
  public:
    using Plant::Plant;
    void ageIs(unsigned value) override {
      ++calls;
      Plant::ageIs(value);
    }
    int calls = 0;
  };
  auto const counting = Vyx::make<Counting>("dest");
  src->ageIs(7);
  EXPECT_TRUE(ec->doCopyEntityAttrs(counting, src, "", nullptr));
  EXPECT_FALSE(ec->doCopyEntityAttrs(counting, src, "", nullptr));
  EXPECT_EQ(1, counting->calls);
}

TEST_F(EntityCopyTest, ReferencesPointAtTheSameEntity) {
  src->shadeIs(Garden::leafFactory("elsewhere", Garden::green));
  expectHeard("shade");
  EXPECT_EQ(src->shade(), dest->shade());
  src->shadeIs(nullptr);
  expectHeard("shade");
}

TEST_F(EntityCopyTest, ReferencesToOwnMembersPointAtTheDestinationsOwn) {
  src->largestIs(src->leafIs("a", Garden::green));
  expectHeard("leaf a largest");
  EXPECT_EQ(dest->leaf("a"), dest->largest());
  EXPECT_NE(src->largest(), dest->largest());
  src->largestIs(nullptr);
  expectHeard("largest");
}

TEST_F(EntityCopyTest, SingleChildIsMadeCopiedAndRemoved) {
  src->twigIs("t")->lengthIs(4);
  expectHeard("twig");
  EXPECT_EQ(4U, dest->twig()->length());
  EXPECT_EQ(dest.ptr(), dest->twig()->parent().ptr());
  auto const twig = dest->twig();
  src->twig()->lengthIs(5);
  EXPECT_TRUE(copy());
  EXPECT_EQ(twig, dest->twig());
  EXPECT_EQ(5U, twig->length());
  src->twigDel();
  expectHeard("twig");
  EXPECT_EQ(nullptr, twig->parent());
}

TEST_F(EntityCopyTest, SingleChildOfOtherParametersIsReplaced) {
  src->twigIs("new");
  dest->twigIs("old");
  expectHeard("twig");
  EXPECT_EQ("new", dest->twig()->name());
}

TEST_F(EntityCopyTest, MembersThatTheSourceHasNotGoFirst) {
  for (char const* name : {"a", "b"}) dest->leafIs(name, Garden::green);
  src->leafIs("b", Garden::green);
  src->leafIs("c", Garden::green);
  expectHeard("leaf a leaf c");
  EXPECT_EQ(2U, dest->leafs());
}

TEST_F(EntityCopyTest, MembersKeepTheirIdentityAndTakeTheDifference) {
  dest->leafIs("a", Garden::green);
  src->leafIs("a", Garden::green)->weightIs(3);
  auto const leaf = dest->leaf("a");
  auto const hears = listen<LeafListener>(leaf, heard);
  heard.take();
  EXPECT_TRUE(copy());
  EXPECT_EQ("weight", heard.take());
  EXPECT_FALSE(copy());
  EXPECT_EQ("", heard.take());
  EXPECT_EQ(leaf, dest->leaf("a"));
}

TEST_F(EntityCopyTest, MemberOfOtherParametersIsMadeAnew) {
  auto const old = dest->leafIs("a", Garden::red);
  src->leafIs("a", Garden::green);
  expectHeard("leaf a leaf a");
  EXPECT_EQ(Garden::green, dest->leaf("a")->colour());
  EXPECT_EQ(nullptr, old->parent());
}

TEST_F(EntityCopyTest, HashedValuesAreCopiedByKey) {
  dest->priceIs(1, 0.5);
  dest->priceIs(2, 0.5);
  src->priceIs(2, 0.5);
  src->priceIs(3, 0.25);
  expectHeard("price 1 price 3");
  EXPECT_EQ(0.25, dest->price(3));
  src->priceIs(3, 0.75);
  expectHeard("price 3");
}

TEST_F(EntityCopyTest, ValuesInATreeAreCopiedInKeyOrder) {
  for (char const* key : {"c", "a", "b"}) src->noteIs(key, "x");
  dest->noteIs("d", "x");
  expectHeard("note d note a note b note c");
}

TEST_F(EntityCopyTest, KeyedReferencesPointAtTheSameEntities) {
  auto const green = Garden::leafFactory("elsewhere", Garden::green);
  dest->neighbourIs(Garden::leafFactory("other", Garden::red));
  src->neighbourIs(green);
  expectHeard("neighbour 'red' neighbour 'green'");
  EXPECT_EQ(green, dest->neighbour(Garden::green));
  EXPECT_EQ(1U, dest->neighbours());
}

TEST_F(EntityCopyTest, QueueTakesOverKeysAndValues) {
  for (char const* task : {"dig", "sow", "water"}) src->taskEnq(task);
  expectHeard("task 1 task 2 task 3");
  EXPECT_EQ("water", dest->task(3));
  src->taskDeq();
  src->taskIs(3, "mow");
  src->taskEnq("rake");
  expectHeard("task 1 task 3 task 4");
  EXPECT_EQ("mow", dest->task(3));
  EXPECT_EQ(3U, dest->tasks());
}

TEST_F(EntityCopyTest, QueueKeepsItsOrder) {
  for (char const* task : {"dig", "sow", "water"}) src->taskEnq(task);
  copy();
  dest->taskDeq();
  expectHeard("task 2 task 3 task 1 task 2 task 3");
  EXPECT_EQ("dig", dest->taskDeq());
  dest->taskEnq("rake");
  expectHeard("task 2 task 3 task 4 task 1 task 2 task 3");
}

TEST_F(EntityCopyTest, EmptySourceEmptiesEverything) {
  dest->leafIs("a", Garden::green);
  dest->priceIs(1, 0.5);
  dest->noteIs("a", "x");
  dest->neighbourIs(Garden::leafFactory("n", Garden::red));
  dest->taskEnq("dig");
  dest->twigIs("t");
  expectHeard("twig leaf a price 1 note a neighbour 'red' task 1");
}

TEST_F(EntityCopyTest, EntityCopiedOntoItselfStaysUntouched) {
  dest->leafIs("a", Garden::green)->weightIs(1);
  dest->largestIs(dest->leaf("a"));
  dest->priceIs(1, 0.5);
  dest->noteIs("a", "x");
  dest->taskEnq("dig");
  dest->twigIs("t")->lengthIs(2);
  dest->neighbourIs(dest->leaf("a"));
  heard.take();
  EXPECT_FALSE(ec->doCopyEntityAttrs(dest, dest, "", nullptr));
  EXPECT_EQ("", heard.take());
}

TEST_F(EntityCopyTest, EntitiesOfOneLineShareTheirCommonAttributes) {
  auto const tree = Garden::treeFactory("tree");
  tree->heightIs(9);
  tree->ringsIs(50);
  EXPECT_TRUE(ec->doCopyEntityAttrs(dest, tree, "", nullptr));
  EXPECT_EQ(9U, dest->height());
  src->heightIs(4);
  EXPECT_TRUE(ec->doCopyEntityAttrs(tree, src, "", nullptr));
  EXPECT_EQ(4U, tree->height());
  EXPECT_EQ(50U, tree->rings());
  auto const other = Garden::treeFactory("other");
  EXPECT_TRUE(ec->doCopyEntityAttrs(other, tree, "", nullptr));
  EXPECT_EQ(50U, other->rings());
}

TEST_F(EntityCopyTest, EntitiesOfDifferentLinesHaveNothingInCommon) {
  auto const twig = Garden::twigFactory("twig");
  twig->lengthIs(4);
  EXPECT_FALSE(ec->doCopyEntityAttrs(dest, twig, "", nullptr));
  EXPECT_EQ("", heard.take());
}

TEST_F(EntityCopyTest, NullEntitiesHaveNothingInCommon) {
  EXPECT_FALSE(ec->doCopyEntityAttrs(nullptr, src, "", nullptr));
  EXPECT_FALSE(ec->copyEntity(dest, nullptr, "", nullptr));
  EXPECT_EQ("", heard.take());
}

TEST_F(EntityCopyTest, CountsTheCopiesThatWroteSomething) {
  src->heightIs(3);
  src->leafIs("a", Garden::green)->weightIs(1);
  copy();
  EXPECT_EQ(1U, ec->changes());
  copy();
  EXPECT_EQ(1U, ec->changes());
}

// Lets everything pass but one attribute of one type.
class Without final : public AttributeFilter {
public:
  Without(Vyx::Name type, Vyx::Name attribute) : type_(type), attribute_(attribute) {}
  bool accepts(Vyx::Name type, Vyx::Name attribute) const override {
    return !(type == type_ && attribute == attribute_);
  }

private:
  Vyx::Name type_, attribute_;
};

TEST_F(EntityCopyTest, FilterLeavesAnAttributeAloneOnEveryLevel) {
  src->heightIs(3);
  src->leafIs("a", Garden::green)->weightIs(5);
  EXPECT_TRUE(ec->doCopyEntityAttrs(dest, src, "", Vyx::make<Without>("Garden::Leaf", "weight")));
  EXPECT_EQ(3U, dest->height());
  EXPECT_EQ(0U, dest->leaf("a")->weight());
  src->heightIs(4);
  EXPECT_TRUE(ec->doCopyEntityAttrs(dest, src, "", Vyx::make<Without>("Garden::Plant", "height")));
  EXPECT_EQ(3U, dest->height());
  EXPECT_EQ(5U, dest->leaf("a")->weight());
}

TEST_F(EntityCopyTest, PlainFilterAcceptsEverything) {
  src->heightIs(3);
  EXPECT_TRUE(ec->doCopyEntityAttrs(dest, src, "", Cli::Session::attributeFilterFactory()));
  EXPECT_EQ(3U, dest->height());
}

} // namespace
