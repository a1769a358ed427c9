// What a handler of a whole session keeps.

#include "Cli/Session.h"
#include "support/Heard.h"

#include <gtest/gtest.h>

namespace {

using Handler = Cli::Session::EntityCopyGlobalSessionHandler;

class HandlerListener final : public Recorder<Handler> {
public:
  using Handler::NotifieeConst::onPostAttributeCopy;
  using Recorder::Recorder;
  void onSessionStatus() override { hear("sessionStatus"); }
  void onCopied() override { hear("copied"); }
  void onHandlerTable() override { hear("handlerTable"); }
  void onExternalDest() override { hear("externalDest"); }
  void onPostAttributeCopyMetadata() override { hear("metadata"); }
  void onPostAttributeCopy(unsigned key) override { hear("post", key); }
};

class SessionHandlerTest : public testing::Test {
protected:
  Vyx::Ptr<Handler> const handler = Cli::Session::entityCopyGlobalSessionHandlerFactory();
  Heard heard;
  Vyx::Ptr<HandlerListener> const listener = listen<HandlerListener>(handler, heard);
};

TEST_F(SessionHandlerTest, TellsEachOfItsAttributes) {
  handler->sessionStatusIs(Cli::Session::sessionCopying);
  handler->sessionStatusIs(Cli::Session::sessionCopying);
  handler->copiedIs();
  handler->handlerTableIs(Cli::Session::entityCopyCustomHandlerTableFactory("t"));
  handler->externalDestIs(handler);
  handler->postAttributeCopyMetadataIs("m");
  EXPECT_EQ("sessionStatus copied handlerTable externalDest metadata", heard.take());
  handler->externalDestIs(nullptr);
  EXPECT_EQ("externalDest", heard.take());
}

TEST_F(SessionHandlerTest, OwedEntriesAreTakenInTheirOrder) {
  EXPECT_EQ(1U, handler->postAttributeCopyEnq("a"));
  EXPECT_EQ(2U, handler->postAttributeCopyEnq("b"));
  EXPECT_TRUE(handler->postAttributeCopyIs(2, "c"));
  EXPECT_FALSE(handler->postAttributeCopyIs(9, "c"));
  EXPECT_EQ("a", handler->postAttributeCopyDeq());
  EXPECT_EQ("c", handler->postAttributeCopyDel(2));
  EXPECT_EQ("", handler->postAttributeCopyDeq());
  EXPECT_EQ("post 1 post 2 post 2 post 1 post 2", heard.take());
}

TEST_F(SessionHandlerTest, CopiedEntitiesAreItsChild) {
  auto const copied = handler->copiedIs();
  EXPECT_EQ(387, copied->parentAttrId());
  EXPECT_EQ(handler.ptr(), copied->parent().ptr());
  copied->entityIs("a/path", true);
  EXPECT_TRUE(handler->copied()->entity("a/path"));
  EXPECT_EQ(copied, handler->copiedDel());
  EXPECT_EQ(nullptr, handler->copied());
}

TEST_F(SessionHandlerTest, AttributesHaveTheirIds) {
  for (auto const& [id, name] :
       std::initializer_list<std::pair<int, char const*>>{{386, "sessionStatus"},
                                                          {387, "copied"},
                                                          {388, "handlerTable"},
                                                          {389, "externalDest"},
                                                          {390, "postAttributeCopyMetadata"},
                                                          {391, "postAttributeCopy"},
                                                          {258, "handleEntity"},
                                                          {259, "resolveEntityPtr"}})
    EXPECT_EQ(name, handler->attributeString(id));
}

} // namespace
