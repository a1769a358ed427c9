#include "PolicyMap/IntfErrorKey.h"

#include "support/TextForms.h"

namespace {

using PolicyMap::IntfErrorKey;

TEST(IntfErrorKey, DefaultHasAnEmptyInterface) {
  EXPECT_EQ("", IntfErrorKey().intf().stringValue());
  EXPECT_EQ(PolicyMap::noIntfError, IntfErrorKey().error());
}

TEST(IntfErrorKey, AscendsByInterfaceThenByError) {
  std::vector<IntfErrorKey> keys(1);
  keys.emplace_back("", PolicyMap::intfNotRouted);
  keys.emplace_back("Ethernet1", PolicyMap::intfNotRouted);
  keys.emplace_back("Ethernet1", PolicyMap::intfUnsupported);
  keys.emplace_back("Ethernet2", PolicyMap::noIntfError);
  expectAscends(keys);
}

TEST(IntfErrorKey, TextIsInterfaceColonError) {
  EXPECT_EQ("Ethernet1:intfNotRouted", valueToStrep(IntfErrorKey("Ethernet1", PolicyMap::intfNotRouted)));
  EXPECT_EQ(":noIntfError", printed(IntfErrorKey()));
}

TEST(IntfErrorKey, ReadsBackWhateverTheInterface) {
  for (char const* intf : {"", "Ethernet3/1", "two words", "a:b", ":", "'quoted'"})
    expectReadsBack(IntfErrorKey(intf, PolicyMap::intfNoResources));
}

TEST(IntfErrorKey, TextWithoutAColonOrWithAnUnknownErrorIsRefused) {
  EXPECT_EQ("IntfErrorKey: \"Ethernet1\": a colon and an error are missing",
            refusal<IntfErrorKey>("Ethernet1"));
  EXPECT_EQ("IntfError", refusal<IntfErrorKey>("Ethernet1:broken"));
  EXPECT_EQ("IntfError", refusal<IntfErrorKey>("Ethernet1:"));
  EXPECT_EQ("IntfId::bytes > 100 not allowed",
            refusal<IntfErrorKey>((std::string(101, 'i') + ":intfNotRouted").c_str()));
}

} // namespace
