#include "Reading.h"

namespace Pbrctl {
namespace {

std::string statementsOfJson(std::string const& members) {
  return statementsOf("{\"version\": 1" + members + "}");
}
// The errors of one line of JSON; the version stands before the members.
std::string errorsOfJson(std::string const& members) { return errorsOf("{\"version\":1," + members + "}"); }

TEST(JsonReader, EveryMemberIsRead) {
  EXPECT_EQ("unresolved-nexthop drop\nbgp-redirect\nno non-aging-mac\n"
            "class-map C\n"
            "  dynamic\n"
            "  10 match ip 10.0.0.0/8 192.0.2.0/24 protocol tcp source-port 80 destination-port 1-9 dscp ef\n"
            "  20 match access-list A\n"
            "nexthop-group G\n  nexthop 10.0.0.9\n"
            "policy-map P\n"
            "  dynamic\n"
            "  10 class C\n    set nexthop 10.0.0.1 2001:db8::1 recursive\n    set dscp cs1\n"
            "interface eth0\n  policy P\n  policy fallback P\n",
            statementsOfJson(R"(, "unresolvedNexthopDrop": true, "bgpRedirect": true, "nonAgingMac": false,
      "classMaps": [{"name": "C", "dynamic": true, "rules": [
         {"sequence": 10, "source": "10.0.0.0/8", "destination": "192.0.2.0/24", "protocol": "tcp",
          "sourcePort": 80, "destinationPort": "1-9", "dscp": 46},
         {"sequence": 20, "accessList": "A"}]}],
      "nexthopGroups": [{"name": "G", "nexthops": ["10.0.0.9"]}],
      "policyMaps": [{"name": "P", "dynamic": true, "classes": [
         {"name": "C", "sequence": 10, "nexthops": ["2001:db8::1", "10.0.0.1"], "recursive": true, "setDscp": 8}]}],
      "interfaces": [{"name": "eth0", "policy": "P", "fallback": "P"}])"));
}

TEST(JsonReader, AVersionAloneIsAnEmptyConfiguration) { EXPECT_EQ("", statementsOfJson("")); }

TEST(JsonReader, TheVersionMustBeKnown) {
  EXPECT_EQ("1:1 the member 'version' is missing\n", errorsOf("{}"));
  EXPECT_EQ("1:12 version: version 2 is unknown here; this is version 1\n", errorsOf("{\"version\":2}"));
}

TEST(JsonReader, AnErrorHasItsPathAndPlace) {
  EXPECT_EQ("3:46 classMaps[0].rules[1].sequence: a whole number belongs here, not a text\n",
            errorsOf("{\"version\": 1, \"classMaps\": [\n"
                     "  {\"name\": \"C\", \"rules\": [{\"sequence\": 1}, \n"
                     "                                 {\"sequence\":\"2\"}]}]}\n"));
}

TEST(JsonReader, UnknownMembersAreRefused) {
  EXPECT_EQ("1:14 unknown member 'colour'\n", errorsOfJson("\"colour\":1"));
  EXPECT_EQ("1:39 classMaps[0]: unknown member 'x'\n",
            errorsOfJson("\"classMaps\":[{\"name\":\"C\",\"x\":1}]"));
}

TEST(JsonReader, DuplicateMembersAreRefused) {
  EXPECT_EQ("1:33 duplicate member 'bgpRedirect'\n",
            errorsOfJson("\"bgpRedirect\":true,\"bgpRedirect\":true"));
}

TEST(JsonReader, WrongTypesAreRefused) {
  EXPECT_EQ("1:28 bgpRedirect: true or false belongs here, not a whole number\n",
            errorsOfJson("\"bgpRedirect\":1"));
  EXPECT_EQ("1:26 classMaps: an array belongs here, not null\n", errorsOfJson("\"classMaps\":null"));
  EXPECT_EQ("1:27 classMaps[0]: an object belongs here, not a text\n", errorsOfJson("\"classMaps\":[\"C\"]"));
  EXPECT_EQ("1:35 classMaps[0].name: a text belongs here, not an array\n",
            errorsOfJson("\"classMaps\":[{\"name\":[]}]"));
  EXPECT_EQ("1:1 an object belongs here, not an array\n1:1 the member 'version' is missing\n",
            errorsOf("[]") + "1:1 the member 'version' is missing\n");
  EXPECT_EQ("1:12 version: a whole number belongs here, not a negative or broken number\n",
            errorsOf("{\"version\":-1}"));
  EXPECT_EQ("1:12 version: a whole number belongs here, not a negative or broken number\n",
            errorsOf("{\"version\":1.5}"));
}

TEST(JsonReader, NamesAreCheckedAsInTheTextForm) {
  EXPECT_EQ("1:35 classMaps[0].name: the name 'a b' holds a blank or a character that does not print\n",
            errorsOfJson("\"classMaps\":[{\"name\":\"a b\"}]"));
  EXPECT_EQ("1:35 classMaps[0].name: the name 'a\\x00b' holds a blank or a character that does not print\n",
            errorsOfJson("\"classMaps\":[{\"name\":\"a\\u0000b\"}]"));
  EXPECT_EQ("1:48 classMaps[1].name: duplicate name 'A'\n",
            errorsOfJson("\"classMaps\":[{\"name\":\"A\"},{\"name\":\"A\"}]"));
}

TEST(JsonReader, AClassForwardsInOneWay) {
  auto const errorOf = [](char const* members) {
    return errorsOf(
        std::string("{\"version\":1,\"classMaps\":[{\"name\":\"C\"}],\"policyMaps\":[{\"name\":\"P\","
                    "\"classes\":[\n{\"name\":\"C\",\"sequence\":1,") +
        members + "}]}]}");
  };
  EXPECT_EQ("2:1 policyMaps[0].classes[0]: a class that drops forwards nowhere\n",
            errorOf("\"drop\":true,\"nexthops\":[]"));
  EXPECT_EQ("2:1 policyMaps[0].classes[0]: 'recursive' needs next hops or a group\n",
            errorOf("\"recursive\":true"));
  EXPECT_EQ("2:49 policyMaps[0].classes[0].nexthops[1]: duplicate next hop '10.0.0.1'\n",
            errorOf("\"nexthops\":[\"10.0.0.1\",\"10.0.0.1\"]"));
}

TEST(JsonReader, NestingHasALimit) {
  EXPECT_EQ("1:17 nested deeper than 16\n", errorsOf(std::string(100000, '[')));
}

TEST(JsonReader, BrokenJsonIsToldAtItsPlace) {
  EXPECT_EQ("2:11 no valid JSON: ", errorsOf("{\n\"version\":x}").substr(0, 20));
  EXPECT_EQ("1:13 no valid JSON: ", errorsOf("{\"version\":1").substr(0, 20));
  EXPECT_EQ("1:14 no valid JSON: ", errorsOf("{\"version\":1}}").substr(0, 20));
}

TEST(JsonReader, BytesThatNoTextHasAreRefused) {
  EXPECT_EQ("1:12 the text is not valid UTF-8\n", errorsOf("{\"version\":\xff}"));
  EXPECT_EQ("2:1 NUL byte in the text\n", errorsOf(std::string("{\n\0}", 4)));
}

} // namespace
} // namespace Pbrctl
