#include "LinkFixture.h"

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/Roots.h"

namespace attributelog {
namespace {

using Vyx::Entity;
using Vyx::Name;
using Vyx::Ptr;

class RootsTest : public testing::Test {
protected:
  std::string refusal(Name const& path, MountMode mode) const { return roots->refusal(*link, path, mode); }

  Notes notes;
  Vyx::Ptr<Link> link = Vyx::ptrFromNew(new Link(pipePair().first, notes));
  std::string asked; // By the rule of this process.
  Ptr<Roots> roots = Vyx::ptrFromNew(new Roots([this](Link const& of, Name const& path, MountMode mode) {
    EXPECT_EQ(link.ptr(), &of);
    asked += std::string(path.view()) + " " + wordOf(mode) + " ";
    return std::string(mode == MountMode::write ? "read only" : "");
  }));
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
};

TEST_F(RootsTest, WhatIsNotOfferedIsRefusedWithoutAsking) {
  EXPECT_EQ("there is no root \"config\" to read", refusal("config", MountMode::read));
  EXPECT_EQ("there is no root \"config\" to write", refusal("config", MountMode::write));
  EXPECT_EQ("there is no root \"config\" to publish", refusal("config", MountMode::publish));
  EXPECT_EQ("", asked);
}

TEST_F(RootsTest, WhatIsOfferedIsGivenAsTheRuleSays) {
  roots->offerIs("config", config);
  EXPECT_EQ("", refusal("config", MountMode::read));
  EXPECT_EQ("read only", refusal("config", MountMode::write));
  EXPECT_EQ("there is no root \"config\" to publish", refusal("config", MountMode::publish));
  EXPECT_EQ("config read config write ", asked);
}

TEST_F(RootsTest, WhatIsOfferedNoMoreIsNotGiven) {
  roots->offerIs("config", config);
  EXPECT_EQ(config, roots->offered("config"));
  roots->offerDel("config");
  EXPECT_FALSE(roots->offered("config"));
  EXPECT_FALSE(roots->knows("config"));
}

TEST_F(RootsTest, WhatIsAcceptedMayBeBroughtAndThenRead) {
  roots->acceptIs("config", Pbr::Config::_fwkType());
  EXPECT_EQ("", refusal("config", MountMode::publish));
  EXPECT_EQ("", refusal("config", MountMode::read));
  EXPECT_FALSE(roots->offered("config"));
  roots->dir()->entryIs("config").entityIs(config);
  EXPECT_EQ(config, roots->offered("config"));
}

TEST_F(RootsTest, WhatHasComeUnaskedIsNotOffered) {
  roots->dir()->entryIs("config").entityIs(config);
  EXPECT_FALSE(roots->offered("config"));
}

TEST_F(RootsTest, AnEntityThatWasLostIsGivenOnce) {
  auto const other = Pbr::configFactory("pbr");
  roots->lostIs("alike", config);
  roots->lostIs("alike", other);
  EXPECT_FALSE(roots->takeLost("unlike"));
  EXPECT_EQ(config, roots->takeLost("alike"));
  EXPECT_EQ(other, roots->takeLost("alike"));
  EXPECT_FALSE(roots->takeLost("alike"));
}

} // namespace
} // namespace attributelog
