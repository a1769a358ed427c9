#include "RandomConfig.h"
#include "Reading.h"

#include "pbrctl/PbrMapWriter.h"

namespace Pbrctl {
namespace {

TEST(Writer, WhatIsWrittenAsTextReadsBackEqual) {
  Random random;
  for (int round = 0; round < 300; ++round) {
    ConfigAst const config = RandomConfig(random).make();
    ASSERT_TRUE(parsed(nativeText(config)) == config) << nativeText(config);
  }
}

TEST(Writer, WhatIsWrittenAsJsonReadsBackEqual) {
  Random random;
  for (int round = 0; round < 300; ++round) {
    ConfigAst const config = RandomConfig(random).make();
    ASSERT_TRUE(parsed(jsonText(config)) == config) << jsonText(config);
  }
}

TEST(Writer, AnEmptyConfigurationIsNoEmptyText) {
  EXPECT_EQ("! policy-based routing\n", nativeText(ConfigAst()));
  EXPECT_TRUE(parsed(nativeText(ConfigAst())) == ConfigAst());
}

TEST(Writer, BlocksStandApart) {
  EXPECT_EQ(
      "! policy-based routing\n!\nbgp-redirect\nno non-aging-mac\n!\nclass-map A\n!\nclass-map B\n"
      "  10 match ip any any\n",
      nativeText(parsed("bgp-redirect\nno non-aging-mac\nclass-map B\nmatch ip any any\nclass-map A\n")));
}

TEST(Writer, JsonIsSortedAndLeavesOutWhatIsAbsent) {
  EXPECT_EQ(
      R"({
  "bgpRedirect": false,
  "classMaps": [
    {
      "name": "A",
      "rules": [
        {
          "destinationPort": 80,
          "dscp": 46,
          "protocol": "tcp",
          "sequence": 10,
          "source": "10.0.0.0/8"
        }
      ]
    }
  ],
  "interfaces": [],
  "nexthopGroups": [],
  "nonAgingMac": true,
  "policyMaps": [],
  "unresolvedNexthopDrop": false,
  "version": 1
}
)",
      jsonText(parsed("class-map A\nmatch ip 10.0.0.0/8 any dscp ef protocol tcp destination-port 80\n")));
}

std::string pbrMaps(std::string const& text) {
  std::vector<std::string> problems;
  std::string const written = pbrMapText(parsed(text), problems);
  if (problems.empty()) return written;
  std::string list;
  for (std::string const& problem : problems) list += problem + "\n";
  return list;
}

TEST(PbrMapWriter, WhatADaemonSaidComesBack) {
  std::string const text =
      "! policy-based routing\n!\n"
      "nexthop-group G\n nexthop 10.0.0.1\nexit\n!\n"
      "pbr-map M seq 10\n match src-ip 10.0.0.0/8\n match ip-protocol udp\n match dst-port 53\n"
      " set dscp 8\n set nexthop-group G\nexit\n!\n"
      "pbr-map M seq 20\n match dscp 46\n set nexthop 2001:db8::1\nexit\n!\n"
      "pbr-map M seq 30\n set nexthop blackhole\nexit\n!\n"
      "pbr-map M seq 40\n match dscp 1\nexit\n!\n"
      "interface eth0\n pbr-policy M\nexit\n!\n";
  EXPECT_EQ(text, pbrMaps(text));
}

TEST(PbrMapWriter, WhatADaemonCannotSayIsRefused) {
  EXPECT_EQ("a pbr-map cannot say 'unresolved-nexthop drop'\n"
            "a pbr-map cannot say class 'C' of policy-map 'P'; its name would have to be 'P-10'\n"
            "a pbr-map cannot say the fallback policy of interface 'e'\n"
            "a pbr-map cannot say class-map 'C', which is the sequence of no policy-map\n",
            pbrMaps("unresolved-nexthop drop\nclass-map C\npolicy-map P\nclass C\ndrop\n"
                    "interface e\npolicy fallback P\n"));
  EXPECT_EQ("a pbr-map cannot say 'recursive' of class 'P-10'\n"
            "a pbr-map cannot say 2 next hops of class 'P-10' without a group\n",
            pbrMaps("class-map P-10\npolicy-map P\nclass P-10\nset nexthop 10.0.0.1 10.0.0.2 recursive\n"));
  EXPECT_EQ("a pbr-map cannot say that class-map 'P-10' is dynamic\n"
            "a pbr-map cannot say the ports 1-9 of class-map 'P-10'\n",
            pbrMaps("class-map P-10\ndynamic\n10 match ip any any protocol tcp destination-port 1-9\n"
                    "policy-map P\nclass P-10\ndrop\n"));
}

} // namespace
} // namespace Pbrctl
