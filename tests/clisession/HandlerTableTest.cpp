// Handlers that copy a type of entity in place of the copy by attributes.

#include "PlantListener.h"

namespace {

using Cli::Session::EntityCopy;
using Cli::Session::EntityCopyHandler;

// Notes what it is given and answers as told; copies nothing.
class NotingHandler final : public EntityCopyHandler {
public:
  bool handleEntity(Vyx::Ptr<EntityCopy> const& by, Vyx::Ptr<Vyx::Entity> const& dest,
                    Vyx::Ptr<Vyx::Entity const> const& src, Vyx::String8 path) override {
    EXPECT_TRUE(by);
    heard.note(std::string(src->name().view()) + ">" + dest->name().charPtr() + "@" + path.charPtr());
    return answer;
  }
  Heard heard;
  bool answer = false;
};

class HandlerTableTest : public testing::Test {
protected:
  void handle(char const* type) { table->entryIs(type)->handlerIs(handler); }
  bool copy() { return ec->doCopyEntityAttrs(dest, src, "", nullptr); }
  void SetUp() override { ec->handlerTableIs(table); }

  Vyx::Ptr<EntityCopy> const ec = Cli::Session::entityCopyFactory();
  Vyx::Ptr<Cli::Session::EntityCopyCustomHandlerTable> const table =
      Cli::Session::entityCopyCustomHandlerTableFactory("table");
  Vyx::Ptr<NotingHandler> const handler = Vyx::make<NotingHandler>();
  Vyx::Ptr<Garden::Plant> const src = Garden::plantFactory("src");
  Vyx::Ptr<Garden::Plant> const dest = Garden::plantFactory("dest");
};

TEST_F(HandlerTableTest, HandlerCopiesItsTypeWhereverItIsMet) {
  handle("Garden::Leaf");
  src->leafIs("a", Garden::green)->weightIs(3);
  copy();
  EXPECT_EQ("a>a@" + std::string(src->leaf("a")->fullName().view()), handler->heard.take());
  EXPECT_EQ(0U, dest->leaf("a")->weight());
}

TEST_F(HandlerTableTest, SingleChildrenAreHandedOverToo) {
  handle("Garden::Twig");
  src->twigIs("t")->lengthIs(3);
  copy();
  EXPECT_EQ("t>t@" + std::string(src->twig()->fullName().view()), handler->heard.take());
  EXPECT_EQ(0U, dest->twig()->length());
}

TEST_F(HandlerTableTest, HandlersAnswerCounts) {
  handle("Garden::Leaf");
  src->leafIs("a", Garden::green);
  copy();
  EXPECT_FALSE(copy());
  handler->answer = true;
  EXPECT_TRUE(copy());
  EXPECT_EQ(2U, ec->changes());
}

TEST_F(HandlerTableTest, OtherTypesAreCopiedByAttributes) {
  handle("Garden::Twig");
  src->leafIs("a", Garden::green)->weightIs(3);
  EXPECT_TRUE(copy());
  EXPECT_EQ(3U, dest->leaf("a")->weight());
  EXPECT_EQ("", handler->heard.take());
}

TEST_F(HandlerTableTest, HandlerOfABaseTypeIsNotAsked) {
  handle("Garden::Plant");
  auto const tree = Garden::treeFactory("tree");
  tree->heightIs(4);
  EXPECT_TRUE(ec->copyEntity(dest, tree, "", nullptr));
  EXPECT_EQ("", handler->heard.take());
}

TEST_F(HandlerTableTest, EntryWithoutHandlerIsAsNone) {
  table->entryIs("Garden::Leaf");
  src->leafIs("a", Garden::green)->weightIs(3);
  EXPECT_TRUE(copy());
  EXPECT_EQ(3U, dest->leaf("a")->weight());
}

TEST_F(HandlerTableTest, CopyEntityAsksTheHandlerOfTheEntityItself) {
  handle("Garden::Plant");
  src->heightIs(4);
  EXPECT_FALSE(ec->copyEntity(dest, src, "a/path", nullptr));
  EXPECT_EQ("src>dest@a/path", handler->heard.take());
  EXPECT_EQ(0U, dest->height());
}

TEST_F(HandlerTableTest, CopyOfAttributesDoesNotAskTheHandlerOfTheEntityItself) {
  handle("Garden::Plant");
  src->heightIs(4);
  EXPECT_TRUE(copy());
  EXPECT_EQ("", handler->heard.take());
}

TEST_F(HandlerTableTest, WithoutTableEverythingIsCopiedByAttributes) {
  ec->handlerTableIs(nullptr);
  src->heightIs(4);
  EXPECT_TRUE(ec->copyEntity(dest, src, "", nullptr));
  EXPECT_EQ(4U, dest->height());
}

TEST_F(HandlerTableTest, HandlerThatSaysNothingElseCopiesByAttributes) {
  table->entryIs("Garden::Leaf")->handlerIs(Cli::Session::entityCopyHandlerFactory());
  src->leafIs("a", Garden::green)->weightIs(3);
  EXPECT_TRUE(copy());
  EXPECT_EQ(3U, dest->leaf("a")->weight());
  EXPECT_FALSE(copy());
}

TEST_F(HandlerTableTest, HandlerResolvesAnEntityToTheDestinationGiven) {
  auto const plain = Cli::Session::entityCopyHandlerFactory();
  EXPECT_EQ(dest.ptr(), plain->resolveEntityPtr(ec, dest, src).ptr());
}

} // namespace
