#include "Pbr/PbrCopy.h"
#include "Vyx/GenericIfEntity.h"
#include "support/Heard.h"
#include "support/Invariants.h"
#include "support/SlotOf.h"

namespace {

using Pbr::ConfigCopyHandler;
using Pbr::ConfigCopyHandlerDir;

class DirListener final : public Recorder<ConfigCopyHandlerDir> {
public:
  using Recorder::Recorder;
  void onConfigHandler() override {
    hear(notifier()->configHandler() ? "handler" : "none");
    if (watched) hear(watched->parent() ? "attached" : "detached");
  }
  Vyx::Ptr<ConfigCopyHandler> watched; // Its place in the tree is noted, too.
};

class ConfigCopyHandlerDirTest : public testing::Test {
protected:
  Vyx::Ptr<ConfigCopyHandlerDir> dir = Pbr::configCopyHandlerDirFactory("copy");
  Heard heard;
  Vyx::Ptr<DirListener> const listener = listen<DirListener>(dir, heard);
};

TEST_F(ConfigCopyHandlerDirTest, StartsWithoutChild) {
  EXPECT_EQ("copy", dir->name());
  EXPECT_EQ(nullptr, dir->configHandler());
}

TEST_F(ConfigCopyHandlerDirTest, NewHandlerIsAttachedButNeitherStoredNorTold) {
  auto const handler = dir->newConfigHandler();
  ASSERT_TRUE(handler);
  EXPECT_EQ(258, handler->parentAttrId());
  EXPECT_EQ(dir.ptr(), handler->parent().ptr());
  EXPECT_EQ("", handler->name());
  EXPECT_EQ(1U, handler->references());
  EXPECT_EQ(nullptr, dir->configHandler());
  EXPECT_EQ("", heard.take());
}

TEST_F(ConfigCopyHandlerDirTest, MakesItsChildOnceAndTellsOnce) {
  auto const handler = dir->configHandlerIs();
  EXPECT_EQ("handler", heard.take());
  EXPECT_EQ(handler, dir->configHandler());
  EXPECT_EQ(handler, dir->configHandlerIs());
  EXPECT_EQ("", heard.take());
  checkInvariants(*dir);
}

TEST_F(ConfigCopyHandlerDirTest, ReactorHearsWhenTheChildIsStoredAndInItsPlace) {
  listener->during = [&] { EXPECT_EQ(dir.ptr(), dir->configHandler()->parent().ptr()); };
  dir->configHandlerIs();
  EXPECT_EQ("handler", heard.take());
}

TEST_F(ConfigCopyHandlerDirTest, DeletedChildHasNoParentWhenReactorsHear) {
  listener->watched = dir->configHandlerIs();
  heard.take();
  auto const handler = dir->configHandlerDel();
  EXPECT_EQ("none detached", heard.take());
  EXPECT_EQ(listener->watched, handler);
  EXPECT_EQ(nullptr, dir->configHandler());
}

TEST_F(ConfigCopyHandlerDirTest, CallerKeepsTheDeletedChildAlive) {
  dir->configHandlerIs();
  auto const handler = dir->configHandlerDel();
  EXPECT_EQ(1U, handler->references());
}

TEST_F(ConfigCopyHandlerDirTest, DeletingWithoutChildTellsNobody) {
  EXPECT_EQ(nullptr, dir->configHandlerDel());
  EXPECT_EQ("", heard.take());
}

TEST_F(ConfigCopyHandlerDirTest, ChildComesBackAfterItWasDeleted) {
  auto const first = dir->configHandlerIs();
  dir->configHandlerDel();
  EXPECT_NE(first, dir->configHandlerIs());
  EXPECT_EQ("handler none handler", heard.take());
}

TEST_F(ConfigCopyHandlerDirTest, ReactorsExceptionComesBackWithTheId) {
  listener->during = [] { throw 1; };
  EXPECT_TRUE(dir->configHandlerIs());
  EXPECT_EQ("handler !258", heard.take());
}

TEST_F(ConfigCopyHandlerDirTest, EndOfTheDirectoryDetachesAndTells) {
  listener->isWeakReferenceIs(true);
  auto const handler = dir->configHandlerIs();
  heard.take();
  listener->watched = handler;
  dir = nullptr;
  EXPECT_EQ("none detached", heard.take());
  EXPECT_EQ(nullptr, handler->parent());
}

TEST_F(ConfigCopyHandlerDirTest, NamesItsAttribute) {
  EXPECT_EQ("configHandler", dir->attributeString(258));
  EXPECT_EQ("unknown", dir->attributeString(259));
  EXPECT_EQ("isNondestructing", dir->attributeString(6));
}

TEST_F(ConfigCopyHandlerDirTest, HearsOfItsOwnState) {
  dir->isNondestructingIs(true);
  dir->isNondestructingIs(false);
  dir->zeroReferencesIs(true);
  EXPECT_EQ("isNondestructing isNondestructing zeroReferences", heard.take());
}

TEST(ConfigCopyHandlerDirSlots, EntityAddsNoneAndReactorTwo) {
  EXPECT_EQ(slotCount<Vyx::Entity>(), slotCount<ConfigCopyHandlerDir>());
  using Reactor = ConfigCopyHandlerDir::NotifieeConst;
  expectSlotsFrom(
      slotCount<Vyx::Entity::NotifieeConst>(),
      {slotOf(&Reactor::onIsNondestructing), slotOf(&Reactor::onConfigHandler), slotCount<Reactor>()});
  EXPECT_EQ(slotCount<Reactor>(), slotCount<ConfigCopyHandlerDir::Notifiee>());
}

TEST(ConfigCopyHandlerRecord, MakesAHandlerWithoutArguments) {
  auto const made = ConfigCopyHandler::_fwkType()->newInstance(Vyx::make<Vyx::GenericIf::List_>());
  auto const* interface = dynamic_cast<Vyx::GenericIfEntity const*>(made.ptr());
  ASSERT_TRUE(interface);
  EXPECT_TRUE(Vyx::dynamicPtrCast<ConfigCopyHandler>(interface->entity()));
}

} // namespace
