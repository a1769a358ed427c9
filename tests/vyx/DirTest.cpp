#include "Vyx/Dir.h"

#include <gtest/gtest.h>

namespace {

using Vyx::Dir;
using Vyx::Entity;
using Vyx::Name;
using Vyx::Ptr;
using Vyx::ptrFromNew;

class Root : public Entity {
public:
  explicit Root(Name name) : Entity(std::move(name)) {}
};

class DirTest : public testing::Test, private Dir::Watcher {
protected:
  DirTest() { dir->watcherIs(this); }
  ~DirTest() override { dir->watcherIs(nullptr); }

  // The states since the last call, "config 1".
  std::string told() { return std::exchange(told_, ""); }
  static Ptr<Entity> newRoot(char const* name) { return ptrFromNew(new Root(name)); }

  Ptr<Dir> dir = ptrFromNew(new Dir("roots"));

private:
  void onState(Name const& name, Dir::State state) override {
    told_ += std::string(name.view()) + " " + std::to_string(state) + " ";
  }

  std::string told_;
};

TEST_F(DirTest, AnEntryBeginsAbsentAndEmpty) {
  EXPECT_EQ(nullptr, dir->find("config"));
  Dir::Entry& entry = dir->entryIs("config");
  EXPECT_EQ(Dir::absent, entry.state());
  EXPECT_FALSE(entry.entity());
  EXPECT_EQ(&entry, &dir->entryIs("config"));
  EXPECT_EQ(&entry, dir->find("config"));
  EXPECT_EQ("", told());
}

TEST_F(DirTest, AStateIsToldWhenItChanges) {
  Dir::Entry& entry = dir->entryIs("config");
  entry.stateIs(Dir::partial);
  entry.stateIs(Dir::partial);
  entry.stateIs(Dir::complete);
  EXPECT_EQ("config 1 config 3 ", told());
  dir->entryIs("status").stateIs(Dir::lost);
  EXPECT_EQ("status 2 ", told());
  dir->watcherIs(nullptr);
  entry.stateIs(Dir::lost);
  EXPECT_EQ("", told());
}

TEST_F(DirTest, AnEntityIsFoundByItselfThoughOthersHaveItsName) {
  auto const first = newRoot("pbr");
  auto const second = newRoot("pbr");
  dir->entryIs("config").entityIs(first);
  dir->entryIs("status").entityIs(second);
  EXPECT_EQ(dir->find("config"), dir->entryOf(*first));
  EXPECT_EQ(dir->find("status"), dir->entryOf(*second));
  EXPECT_EQ(nullptr, dir->entryOf(*newRoot("pbr")));
}

TEST_F(DirTest, AnEntityHasTheDirectoryAsItsParentWhileItIsEntered) {
  auto const first = newRoot("pbr");
  auto const second = newRoot("pbr");
  Dir::Entry& entry = dir->entryIs("config");
  entry.entityIs(first);
  EXPECT_EQ(dir.ptr(), first->parent().ptr());
  entry.entityIs(second);
  EXPECT_FALSE(first->parent());
  dir = nullptr;
  EXPECT_FALSE(second->parent());
  dir = ptrFromNew(new Dir("roots"));
}

TEST_F(DirTest, AnEntityIsReusedOnlyForWhatItWasMadeWith) {
  auto const root = newRoot("pbr");
  Dir::Entry& entry = dir->entryIs("config");
  EXPECT_FALSE(entry.reusable("as this"));
  entry.entityIs(root, "as this");
  EXPECT_EQ(root, entry.reusable("as this"));
  EXPECT_FALSE(entry.reusable("as that"));
}

} // namespace
