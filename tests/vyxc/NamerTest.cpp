#include "vyxc/Namer.h"

#include <gtest/gtest.h>

namespace vyxc {
namespace {

TEST(NamerTest, PluralAddsSAndEsAfterAFinalS) {
  EXPECT_EQ("nexthops", Namer::plural("nexthop"));
  EXPECT_EQ("pbrClassMapStatuses", Namer::plural("pbrClassMapStatus"));
  EXPECT_EQ("viasUseds", Namer::plural("viasUsed"));
  EXPECT_EQ("matchs", Namer::plural("match"));
}

TEST(NamerTest, AttributeNamesAreRaisedBehindAPrefix) {
  EXPECT_EQ("onNexthop", Namer::entry("nexthop"));
  EXPECT_EQ("onNexthopvyxImmediate", Namer::immediateEntry("nexthop"));
  EXPECT_EQ("newNexthop", Namer::make("nexthop"));
  EXPECT_EQ("VyxAttrNexthop", Namer::attribute("nexthop"));
  EXPECT_EQ("NexthopIterator", Namer::iterator("nexthop"));
}

TEST(NamerTest, FactoryIsTheTypeWithASmallLetter) {
  EXPECT_EQ("pbrFwdActionFactory", Namer::factory("PbrFwdAction"));
}

TEST(NamerTest, NamespacesAreFolders) {
  EXPECT_EQ("Cli/Session/EntityCopy.h", Namer::header("Cli::Session", "EntityCopy"));
  EXPECT_EQ("Cli/Session/CliSessionUnit.gen.cpp", Namer::unitSource("Cli::Session", "CliSession"));
}

} // namespace
} // namespace vyxc
