#include "Reading.h"

namespace Pbrctl {
namespace {

constexpr char const* kEverything = "unresolved-nexthop drop\n"
                                    "bgp-redirect\n"
                                    "no non-aging-mac\n"
                                    "class-map ANY\n"
                                    "  10 match ip any any\n"
                                    "class-map WEB\n"
                                    "  dynamic\n"
                                    "  10 match ip 10.1.0.0/16 any protocol tcp destination-port 80-443\n"
                                    "  20 match ip any 2001:db8::/32 dscp af21\n"
                                    "  30 match access-list GUESTS\n"
                                    "nexthop-group EXITS\n"
                                    "  nexthop 192.0.2.1\n"
                                    "  nexthop 2001:db8::1\n"
                                    "policy-map WAN\n"
                                    "  dynamic\n"
                                    "  10 class WEB\n"
                                    "    set nexthop 192.0.2.1 192.0.2.2 recursive\n"
                                    "    set dscp ef\n"
                                    "  20 class ANY\n"
                                    "    set nexthop-group EXITS\n"
                                    "interface eth0\n"
                                    "  policy WAN\n"
                                    "  policy fallback WAN\n";

TEST(NativeReader, EveryStatementComesBackAsItWasWritten) {
  EXPECT_EQ(kEverything, statementsOf(kEverything));
}

TEST(NativeReader, IndentationAndCommentsDoNotMatter) {
  EXPECT_EQ("class-map A\n  10 match ip any any\n",
            statementsOf("# a comment\n! another\n\tclass-map A ! behind it\n\n10 match ip any any\r\n"));
}

TEST(NativeReader, ACommentedFileIsAnEmptyConfiguration) { EXPECT_EQ("", statementsOf("! nothing yet\n")); }

TEST(NativeReader, ANameMayBeUsedBeforeItIsDefined) {
  EXPECT_EQ("", errorsOf("interface eth0\npolicy P\npolicy-map P\nclass C\ndrop\nclass-map C\n"));
}

TEST(NativeReader, NumbersAreGivenBehindTheHighest) {
  EXPECT_EQ("class-map A\n  5 match ip any any dscp cs1\n  15 match ip any any dscp cs2\n",
            statementsOf("class-map A\n5 match ip any any dscp cs1\nmatch ip any any dscp 16\n"));
  EXPECT_EQ("3:1 no sequence number is left behind 4294967295\n",
            errorsOf("class-map A\n4294967295 match ip any any\nmatch ip any any\n"));
}

TEST(NativeReader, ABlockGoesOnWhereItIsOpenedAgain) {
  EXPECT_EQ(
      "class-map A\n  10 match ip any any dscp cs1\n  20 match ip any any dscp cs2\n",
      statementsOf("class-map A\n match ip any any dscp cs1\nclass-map A\n match ip any any dscp cs2\n"));
}

TEST(NativeReader, ExitLeavesOneBlockAndEndAllOfThem) {
  EXPECT_EQ("",
            errorsOf("class-map C\nclass-map D\npolicy-map P\nclass C\ndrop\nexit\nclass D\ndrop\nend\n"));
  EXPECT_EQ("4:1 unknown statement 'drop' in policy-map 'P'\n",
            errorsOf("policy-map P\nclass C\nexit\ndrop\nclass-map C\n"));
}

TEST(NativeReader, ADuplicateSequenceIsRefused) {
  EXPECT_EQ("3:4 duplicate sequence number 10 in class-map 'A'\n",
            errorsOf("class-map A\n10 match ip any any\n10 match ip any any dscp 1\n"));
  EXPECT_EQ("5:4 duplicate sequence number 10: class 'A' has it\n",
            errorsOf("class-map A\nclass-map B\npolicy-map P\n10 class A\n10 class B\n"));
  EXPECT_EQ("4:4 class 'A' already has the sequence number 10\n",
            errorsOf("class-map A\npolicy-map P\n10 class A\n20 class A\n"));
}

TEST(NativeReader, NamesThatAreNotDefinedAreTold) {
  EXPECT_EQ("2:1 policy-map 'P' names the class-map 'C', which is not defined\n"
            "4:2 interface 'eth0' names the policy-map 'Q', which is not defined\n"
            "5:2 interface 'eth0' names the policy-map 'R', which is not defined\n",
            errorsOf("policy-map P\nclass C\ninterface eth0\n policy Q\n policy fallback R\n"));
}

TEST(NativeReader, AnUndefinedGroupIsNoError) {
  EXPECT_EQ("", errorsOf("class-map C\npolicy-map P\nclass C\nset nexthop-group ELSEWHERE\n"));
}

TEST(NativeReader, AllErrorsOfAFileAreTold) {
  EXPECT_EQ("1:1 unknown statement 'frobnicate'\n"
            "3:26 'red' is neither 'ip' nor 'access-list'\n"
            "4:1 unknown statement 'colour' in class-map 'A'\n"
            "7:3 unknown statement 'nexthop' in class 'A'\n",
            errorsOf("frobnicate\nclass-map A\n                   match red\ncolour red\n"
                     "policy-map P\nclass A\n  nexthop 10.0.0.1\n"));
}

TEST(NativeReader, ABadValueIsToldAtItsWord) {
  auto const placeOf = [](std::string const& match) {
    return errorsOf("class-map A\n" + match + "\n").substr(0, 5);
  };
  EXPECT_EQ("2:10 ", placeOf("match ip 10.0.0.1/8 any"));
  EXPECT_EQ("2:14 ", placeOf("match ip any 10.0.0.0/33"));
  EXPECT_EQ("2:23 ", placeOf("match ip any any dscp 64"));
  EXPECT_EQ("2:27 ", placeOf("match ip any any protocol 256"));
  EXPECT_EQ("2:46 ", placeOf("match ip any any protocol udp source-port 80 x"));
  EXPECT_EQ("2:43 ", placeOf("match ip any any protocol udp source-port 90-80"));
  EXPECT_EQ("2:7 p", placeOf("match ip any any source-port 80"));
}

struct BadLine {
  char const* text; // In a policy map's class.
  char const* error;
};

TEST(NativeReader, ABadSetIsToldAtTheWordThatIsWrong) {
  BadLine const lines[] = {
      {"set nexthop", "12 the next hop is missing"},
      {"set nexthop 10.0.0.1 10.0.0.1", "22 duplicate next hop '10.0.0.1'"},
      {"set nexthop-group", "18 the nexthop-group name is missing"},
      {"set nexthop-group G H", "21 'H' does not belong here"},
      {"set vrf RED", "5 unknown statement 'set vrf'"},
      {"set", "4 the word behind 'set' is missing"},
      {"drop all", "6 'all' does not belong here"},
      {"no drop", "4 there is no 'drop' to undo"},
      {"no set dscp 1", "4 there is no such 'set dscp' to undo"},
      {"10 drop", "4 no sequence number belongs in front of 'drop'"},
      {"no", "3 the statement is missing"},
      {"1x drop", "1 '1x' is no sequence number, a number from 0 to 4294967295"},
  };
  for (BadLine const& line : lines)
    EXPECT_EQ(std::string("4:") + line.error + "\n",
              errorsOf(std::string("class-map C\npolicy-map P\nclass C\n") + line.text + "\n"));
}

TEST(NativeReader, AClassForwardsOnce) {
  EXPECT_EQ("5:1 the class says where to forward already, in line 4\n",
            errorsOf("class-map C\npolicy-map P\nclass C\nset nexthop 10.0.0.1\ndrop\n"));
}

TEST(NativeReader, NamesHaveALimitAndPrint) {
  std::string const longest(100, 'x');
  EXPECT_EQ("class-map " + longest + "\n", statementsOf("class-map " + longest + "\n"));
  EXPECT_EQ("1:11 the name '" + std::string(60, 'x') + "...' has 101 bytes, more than 100\n",
            errorsOf("class-map " + longest + "x\n"));
  EXPECT_EQ("class-map B\xc3\xbcro\n", statementsOf("class-map B\xc3\xbcro\n"));
  EXPECT_EQ("1:11 the name 'a\xc2\xa0z' holds a blank or a character that does not print\n",
            errorsOf("class-map a\xc2\xa0z\n"));
}

TEST(NativeReader, TheLinesOfARefusedBlockAreReadAllTheSame) {
  EXPECT_EQ("1:10 the name is missing\n2:9 the source prefix is missing\n",
            errorsOf("class-map\nmatch ip\n"));
}

TEST(NativeReader, BytesThatNoTextHasAreRefusedByLine) {
  EXPECT_EQ("1:11 NUL byte in the text\n2:1 the text is not valid UTF-8\n3:2 control character in the text\n",
            errorsOf(std::string("class-map \0A\n\xff\n \x01\n", 17)));
}

TEST(NativeReader, AVeryLongLineIsRefused) {
  EXPECT_EQ("1:1 the line has 10000000 bytes, more than 65536\n",
            errorsOf(std::string(10000000, 'a') + "\n"));
}

// Each `no` takes back what stands before it.
TEST(NativeReader, NoUndoesAnyStatement) {
  std::string const head = "class-map C\nmatch ip any any dscp 1\nmatch ip any any dscp 2\n"
                           "policy-map P\nclass C\n";
  EXPECT_EQ("policy-map P\n", statementsOf(head + "no class C\nno class-map C\n"));
  EXPECT_EQ("", statementsOf(head + "no policy-map P\nno class-map C\n"));
  EXPECT_EQ("class-map C\n  20 match ip any any dscp 2\n",
            statementsOf(head + "no policy-map P\nclass-map C\nno match ip any any dscp 1\n"));
  EXPECT_EQ("class-map C\n  10 match ip any any dscp 1\n",
            statementsOf(head + "no policy-map P\nclass-map C\nno 20 match\n"));
  EXPECT_EQ("", statementsOf("bgp-redirect\nno bgp-redirect\nunresolved-nexthop drop\nno unresolved-nexthop\n"
                             "no non-aging-mac\nnon-aging-mac\n"));
  EXPECT_EQ("", statementsOf("nexthop-group G\nnexthop 10.0.0.1\nno nexthop 10.0.0.1\nno nexthop-group G\n"));
  EXPECT_EQ("", statementsOf("interface e\npolicy P\npolicy fallback P\nno policy\nno policy fallback P\n"));
  EXPECT_EQ("", statementsOf("interface e\npolicy P\nno interface e\n"));
}

TEST(NativeReader, NoUndoesTheActionsOfAClass) {
  std::string const head = "class-map C\npolicy-map P\nclass C\n";
  std::string const none = "class-map C\npolicy-map P\n  10 class C\n";
  EXPECT_EQ(none, statementsOf(head + "set nexthop 10.0.0.1\nno set nexthop\n"));
  EXPECT_EQ(none + "    set nexthop 10.0.0.2\n",
            statementsOf(head + "set nexthop 10.0.0.1 10.0.0.2 recursive\nno set nexthop 10.0.0.1\n"
                                "no set nexthop recursive\n"));
  EXPECT_EQ(none, statementsOf(head + "set nexthop-group G\nno set nexthop-group G\ndrop\nno drop\n"));
  EXPECT_EQ(none, statementsOf(head + "set dscp 3\nno set dscp\n"));
  EXPECT_EQ("class-map C\npolicy-map P\n", statementsOf("class-map C\ndynamic\nno dynamic\npolicy-map P\n"));
}

TEST(NativeReader, NothingToUndoIsAnError) {
  EXPECT_EQ("1:4 there is no class-map 'A' to undo\n", errorsOf("no class-map A\n"));
  EXPECT_EQ("1:4 there is no 'bgp-redirect' to undo\n", errorsOf("no bgp-redirect\n"));
  EXPECT_EQ("2:4 there is no 'non-aging-mac' to undo\n", errorsOf("no non-aging-mac\nno non-aging-mac\n"));
  EXPECT_EQ("2:4 there is no policy 'P' to undo\n", errorsOf("interface e\nno policy P\n"));
  EXPECT_EQ("2:7 there is no such match in class-map 'A' to undo\n", errorsOf("class-map A\nno 10 match\n"));
}

TEST(NativeReader, APolicyMapMayBeCalledFallback) {
  EXPECT_EQ("policy-map fallback\ninterface e\n  policy fallback\n  policy fallback fallback\n",
            statementsOf("policy-map fallback\ninterface e\npolicy fallback\npolicy fallback fallback\n"));
}

TEST(NativeReader, ABindingIsNotOverwritten) {
  EXPECT_EQ("5:1 the interface already has the policy 'P'\n",
            errorsOf("policy-map P\npolicy-map Q\ninterface e\npolicy P\npolicy Q\n"));
}

} // namespace
} // namespace Pbrctl
