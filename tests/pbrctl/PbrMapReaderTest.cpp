#include "Reading.h"

namespace Pbrctl {
namespace {

// As the routing daemon writes it.
constexpr char const* kDaemonFile = "frr version 8.4.4\n"
                                    "frr defaults traditional\n"
                                    "hostname branch\n"
                                    "log syslog informational\n"
                                    "service integrated-vtysh-config\n"
                                    "!\n"
                                    "nexthop-group EXITS\n"
                                    " nexthop 192.0.2.1\n"
                                    " nexthop 192.0.2.2\n"
                                    "exit\n"
                                    "!\n"
                                    "interface eth0\n"
                                    " pbr-policy WAN\n"
                                    "exit\n"
                                    "!\n"
                                    "pbr-map WAN seq 20\n"
                                    " match src-ip 10.2.0.0/16\n"
                                    " match dst-ip 198.51.100.0/24\n"
                                    " set nexthop 192.0.2.9\n"
                                    "exit\n"
                                    "!\n"
                                    "pbr-map WAN seq 10\n"
                                    " match ip-protocol tcp\n"
                                    " match src-port 1024\n"
                                    " match dst-port 443\n"
                                    " match dscp ef\n"
                                    " set nexthop-group EXITS\n"
                                    "exit\n"
                                    "!\n"
                                    "line vty\n"
                                    " exec-timeout 0 0\n"
                                    "exit\n"
                                    "!\n"
                                    "end\n";

TEST(PbrMapReader, ADaemonsFileLoadsInSequenceOrder) {
  EXPECT_EQ("class-map WAN-10\n"
            "  10 match ip any any protocol tcp source-port 1024 destination-port 443 dscp ef\n"
            "class-map WAN-20\n"
            "  20 match ip 10.2.0.0/16 198.51.100.0/24\n"
            "nexthop-group EXITS\n"
            "  nexthop 192.0.2.1\n"
            "  nexthop 192.0.2.2\n"
            "policy-map WAN\n"
            "  10 class WAN-10\n"
            "    set nexthop-group EXITS\n"
            "  20 class WAN-20\n"
            "    set nexthop 192.0.2.9\n"
            "interface eth0\n"
            "  policy WAN\n",
            statementsOf(kDaemonFile));
}

TEST(PbrMapReader, ABlackholeDrops) {
  EXPECT_EQ("class-map M-1\n  1 match ip 10.0.0.0/8 any\npolicy-map M\n  1 class M-1\n    drop\n",
            statementsOf("pbr-map M seq 1\nmatch src-ip 10.0.0.0/8\nset nexthop blackhole\n"));
}

TEST(PbrMapReader, HostBitsTakeNoPartInTheMatch) {
  EXPECT_EQ("class-map M-1\n  1 match ip 10.0.0.0/9 any\npolicy-map M\n",
            statementsOf("pbr-map M seq 1\nmatch src-ip 10.7.9.1/9\n"));
  EXPECT_EQ("class-map M-1\n  1 match ip any 2001:db8::/33\npolicy-map M\n",
            statementsOf("pbr-map M seq 1\nmatch dst-ip 2001:db8:7fff::5/33\n"));
}

TEST(PbrMapReader, ASequenceWithoutMatchMatchesNothing) {
  EXPECT_EQ("class-map M-1\npolicy-map M\n  1 class M-1\n    set nexthop 10.0.0.1\n",
            statementsOf("pbr-map M seq 1\nset nexthop 10.0.0.1\n"));
}

TEST(PbrMapReader, ASequenceWithoutSetIsNoClass) {
  EXPECT_EQ("class-map M-1\n  1 match ip any any dscp 1\npolicy-map M\n",
            statementsOf("pbr-map M seq 1\nmatch dscp 1\n"));
}

TEST(PbrMapReader, WhatTheModelHasNoPlaceForIsRefused) {
  EXPECT_EQ("2:7 no class map can match by 'mark'\n"
            "3:5 no action can set 'vrf'\n"
            "4:22 'eth1': a next hop takes no interface, VRF or other word\n"
            "5:22 'nexthop-vrf': a next hop takes no interface, VRF or other word\n"
            "6:1 unknown statement 'pbr' in pbr-map 'M-1'\n"
            "8:21 'eth1': a next hop takes no interface, VRF, label or weight\n"
            "9:1 unknown statement 'router' in nexthop-group 'G'\n",
            errorsOf("pbr-map M seq 1\nmatch mark 4\nset vrf RED\nset nexthop 10.0.0.1 eth1\n"
                     "set nexthop 10.0.0.1 nexthop-vrf RED\npbr table range 10000 11000\n"
                     "nexthop-group G\nnexthop 192.0.2.100 eth1\nrouter bgp 1\n"));
}

TEST(PbrMapReader, ADuplicateSequenceIsRefused) {
  EXPECT_EQ("2:1 duplicate sequence number 10 of pbr-map 'M'\n",
            errorsOf("pbr-map M seq 10\npbr-map M seq 10\n"));
  EXPECT_EQ("3:1 duplicate sequence number 10 in policy-map 'M'\n",
            errorsOf("policy-map M\n10 class X\npbr-map M seq 10\nset nexthop 10.0.0.1\nclass-map X\n"));
  EXPECT_EQ("1:1 there is a class-map 'M-10' already\n", errorsOf("pbr-map M seq 10\nclass-map M-10\n"));
}

TEST(PbrMapReader, CriteriaThatDoNotGoTogetherAreToldAtTheSequence) {
  EXPECT_EQ("1:1 ports need protocol tcp, udp or sctp\n", errorsOf("pbr-map M seq 10\nmatch dst-port 80\n"));
  EXPECT_EQ("1:1 source and destination are of two families\n",
            errorsOf("pbr-map M seq 10\nmatch src-ip 10.0.0.0/8\nmatch dst-ip 2001:db8::/32\n"));
}

TEST(PbrMapReader, BadValuesAreToldAtTheWord) {
  EXPECT_EQ("1:15 '0' is no sequence number, a number from 1 to 4294967295\n", errorsOf("pbr-map M seq 0\n"));
  EXPECT_EQ("1:11 'sequence' is not 'seq'\n", errorsOf("pbr-map M sequence 10\n"));
  EXPECT_EQ("2:16 '70000' is no port, 1 to 65535\n", errorsOf("pbr-map M seq 1\nmatch src-port 70000\n"));
  EXPECT_EQ("2:14 ", errorsOf("pbr-map M seq 1\nmatch src-ip 10.0.0.0/33\n").substr(0, 5));
  EXPECT_EQ("2:12 ", errorsOf("pbr-map M seq 1\nmatch dscp af99\n").substr(0, 5));
  EXPECT_EQ("1:1 the name '" + std::string(60, 'x') + "...' has 102 bytes, more than 100\n",
            errorsOf("pbr-map " + std::string(99, 'x') + " seq 10\n"));
}

TEST(PbrMapReader, NoUndoesItsStatementsToo) {
  EXPECT_EQ(
      "class-map M-1\npolicy-map M\n",
      statementsOf("pbr-map M seq 1\nmatch dscp 1\nno match dscp 1\nset nexthop 10.0.0.1\nno set nexthop\n"
                   "pbr-map M seq 2\nno pbr-map M seq 2\npbr-map N seq 1\nno pbr-map N\n"));
  EXPECT_EQ("2:4 there is no such match to undo\n",
            errorsOf("pbr-map M seq 1\nno match src-ip 10.0.0.0/8\n"));
  EXPECT_EQ("1:4 there is no pbr-map 'M' to undo\n", errorsOf("no pbr-map M\n"));
}

} // namespace
} // namespace Pbrctl
