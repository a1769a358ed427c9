#include "Pbr/NexthopSet.h"
#include "Sets.h"

#include "support/Random.h"
#include "support/TextForms.h"

#include <map>

namespace {

using Lomu::IpGenAddr;
using Pbr::NexthopSet;

// The entries in the order of a walk: "10.0.0.1 10.0.0.2!", with a mark behind those that are false.
std::string entries(NexthopSet const& set) {
  std::string text;
  for (auto at = set.nexthopIteratorConst(); at; ++at)
    text += (text.empty() ? "" : " ") + std::string(at.key().stringValue().view()) + (at.value() ? "" : "!");
  return text;
}

TEST(NexthopSet, DefaultIsEmptyNotRecursiveAndOfTheDefaultInstance) {
  NexthopSet const set;
  EXPECT_EQ(0U, set.nexthops());
  EXPECT_EQ(0U, set.recursive());
  EXPECT_EQ("default", set.vrfName().stringValue());
}

TEST(NexthopSet, IsFalseExactlyWhenItEqualsADefaultOne) {
  EXPECT_TRUE(!NexthopSet());
  EXPECT_FALSE(!setOf({{"10.0.0.1", false}}));
  EXPECT_FALSE(!NexthopSet(1, "default"));
  EXPECT_FALSE(!NexthopSet(0, "blue"));
  EXPECT_FALSE(!NexthopSet(0, ""));
}

TEST(NexthopSet, EntriesAreSetOverwrittenAndRead) {
  NexthopSet set;
  set.nexthopIs("10.0.0.1", true);
  set.nexthopIs("10.0.0.2", false);
  set.nexthopIs("10.0.0.1", false);
  EXPECT_EQ("10.0.0.1! 10.0.0.2!", entries(set));
  set.nexthopIs("10.0.0.2", true);
  EXPECT_TRUE(set.nexthop("10.0.0.2"));
  EXPECT_FALSE(set.nexthop("10.0.0.1"));
  EXPECT_FALSE(set.nexthop("10.0.0.3"));
}

TEST(NexthopSet, OverwritingKeepsTheRecord) {
  NexthopSet set;
  auto const record = set.newNexthop("10.0.0.1", true);
  set.nexthopIs("10.0.0.1", false);
  EXPECT_EQ(record, set.nexthopIterator().member());
  EXPECT_FALSE(record->value());
}

TEST(NexthopSet, NewEntryTakesThePlaceOfTheOneThatIsThere) {
  NexthopSet set;
  auto const old = set.newNexthop("10.0.0.1", true);
  auto const record = set.newNexthop("10.0.0.1", false);
  EXPECT_NE(old, record);
  EXPECT_EQ(1U, set.nexthops());
  EXPECT_EQ(record, set.nexthopIterator().member());
  EXPECT_FALSE(set.nexthop("10.0.0.1"));
  EXPECT_TRUE(old->value());
  EXPECT_EQ(1U, old->references());
}

TEST(NexthopSet, RemovalReturnsTheFlag) {
  NexthopSet set = setOf({{"10.0.0.1", true}, {"10.0.0.2", false}});
  EXPECT_FALSE(set.nexthopDel("10.0.0.3"));
  EXPECT_FALSE(set.nexthopDel("10.0.0.2"));
  EXPECT_TRUE(set.nexthopDel("10.0.0.1"));
  EXPECT_EQ(0U, set.nexthops());
}

TEST(NexthopSet, RemovalOfAllLeavesTheOtherFields) {
  NexthopSet set = setOf({{"10.0.0.1", true}, {"10.0.0.2", true}, {"2001:db8::1", true}}, 1, "blue");
  set.nexthopDelAll();
  EXPECT_EQ(NexthopSet(1, "blue"), set);
}

TEST(NexthopSet, IsWalkedByAscendingFamilyThenBytes) {
  EXPECT_EQ("9.0.0.0 10.0.0.1 192.0.2.1 1::",
            entries(setOf({{"192.0.2.1", true}, {"1::", true}, {"10.0.0.1", true}, {"9.0.0.0", true}})));
}

TEST(NexthopSet, WalkMayBeginAtAnAddressOrBehindIt) {
  NexthopSet set = setOf({{"10.0.0.1", true}, {"10.0.0.5", true}});
  EXPECT_EQ(IpGenAddr("10.0.0.5"), set.nexthopIterator("10.0.0.5").key());
  EXPECT_EQ(IpGenAddr("10.0.0.5"), set.nexthopIterator("10.0.0.2").key());
  EXPECT_FALSE(set.nexthopIterator("10.0.0.6"));
  EXPECT_EQ(IpGenAddr("10.0.0.1"), set.nexthopIteratorConst("10.0.0.0").key());
}

TEST(NexthopSet, IteratorsAreThoseOfTheTreeWithNoFurtherField) {
  EXPECT_EQ(sizeof(NexthopSet::VyxNexthopMap::Iterator), sizeof(NexthopSet::NexthopIterator));
  EXPECT_EQ(sizeof(NexthopSet::VyxNexthopMap::IteratorConst), sizeof(NexthopSet::NexthopIteratorConst));
}

TEST(NexthopSet, CopyIsDeep) {
  NexthopSet const set = setOf({{"10.0.0.1", true}, {"10.0.0.2", true}}, 1, "blue");
  NexthopSet copy(set);
  EXPECT_EQ(set, copy);
  EXPECT_NE(set.nexthopIteratorConst().member(), copy.nexthopIteratorConst().member());
  copy.nexthopIs("10.0.0.1", false);
  copy.nexthopDel("10.0.0.2");
  EXPECT_EQ("10.0.0.1 10.0.0.2", entries(set));
}

TEST(NexthopSet, AssignmentIsDeepAndTakesAllFields) {
  NexthopSet const set = setOf({{"10.0.0.1", true}}, 7, "blue");
  NexthopSet copy = setOf({{"10.0.0.9", true}, {"10.0.0.8", true}});
  copy = set;
  EXPECT_EQ(set, copy);
  EXPECT_EQ(7U, copy.recursive());
  copy.nexthopDelAll();
  EXPECT_EQ(1U, set.nexthops());
  auto const& itself = copy;
  copy = itself;
  EXPECT_EQ(NexthopSet(7, "blue"), copy);
}

TEST(NexthopSet, RecordsEndWithTheSetUnlessHeld) {
  Vyx::Ptr<NexthopSet::VyxNexthop> record;
  {
    NexthopSet set;
    record = set.newNexthop("10.0.0.1", true);
    EXPECT_EQ(2U, record->references());
  }
  EXPECT_EQ(1U, record->references());
}

TEST(NexthopSetEquality, LooksAtEveryFieldAndEntry) {
  NexthopSet const set = setOf({{"10.0.0.1", true}, {"10.0.0.2", true}});
  EXPECT_EQ(set, setOf({{"10.0.0.2", true}, {"10.0.0.1", true}}));
  EXPECT_NE(set, setOf({{"10.0.0.1", true}}));
  EXPECT_NE(set, setOf({{"10.0.0.1", true}, {"10.0.0.2", false}}));
  EXPECT_NE(set, setOf({{"10.0.0.1", true}, {"10.0.0.3", true}}));
  EXPECT_NE(set, setOf({{"10.0.0.1", true}, {"10.0.0.2", true}}, 1));
  EXPECT_NE(set, setOf({{"10.0.0.1", true}, {"10.0.0.2", true}}, 0, "blue"));
}

TEST(NexthopSetEquality, FamiliesOfEqualBytesDiffer) {
  EXPECT_NE(setOf({{"10.0.0.1", true}}), setOf({{"a00:1::", true}}));
}

TEST(NexthopSetEquality, RecursionsOfDifferentNumbersDiffer) {
  EXPECT_NE(NexthopSet(1, "a"), NexthopSet(2, "a"));
}

TEST(NexthopSetOrder, GoesBySizeThenFlagsThenRecursionThenInstance) {
  expectAscends<NexthopSet>(
      {NexthopSet(0, "a"), NexthopSet(0, "b"), NexthopSet(9, "a"), setOf({{"9.9.9.9", false}}, 0, "a"),
       setOf({{"8.8.8.8", false}}, 1, "a"), setOf({{"7.7.7.7", true}}, 0, "a"),
       setOf({{"1.1.1.1", false}, {"1.1.1.2", true}}), setOf({{"1.1.1.1", true}, {"1.1.1.2", false}}),
       setOf({{"1.1.1.0", true}, {"1.1.1.1", true}})});
}

TEST(NexthopSetOrder, DoesNotSeeAddresses) {
  NexthopSet const a = setOf({{"10.0.0.1", true}});
  NexthopSet const b = setOf({{"10.0.0.2", true}});
  EXPECT_NE(a, b);
  EXPECT_FALSE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a > b);
  EXPECT_FALSE(b > a);
  EXPECT_TRUE(a <= b && b <= a && a >= b && b >= a);
}

TEST(NexthopSetOrder, FewerEntriesAreLessWhateverTheAddresses) {
  EXPECT_LT(setOf({{"ff::", true}}, 9, "z"), setOf({{"0.0.0.1", false}, {"0.0.0.2", false}}, 0, "a"));
}

// The mix, written out for one word after another.
std::uint32_t mixed(std::initializer_list<std::uint32_t> words) {
  std::uint32_t h = 0;
  for (std::uint32_t word : words)
    for (unsigned i = 0; i < 4; ++i) {
      h = (h + ((word >> (8 * i)) & 0xff)) * 1025;
      h = h ^ (h >> 6);
    }
  h = h * 9;
  h = h ^ (h >> 11);
  return h * 32769;
}

TEST(NexthopSetHash, MixesAddressesByOrderThenRecursionThenInstance) {
  IpGenAddr const low("10.0.0.1");
  IpGenAddr const high("2001:db8::1");
  EXPECT_EQ(mixed({low.address().hash(), high.address().hash(), 7, Vyx::String8("blue").hash()}),
            setOf({{"2001:db8::1", true}, {"10.0.0.1", true}}, 7, "blue").hash());
  EXPECT_EQ(mixed({0, Vyx::String8("default").hash()}), NexthopSet().hash());
}

TEST(NexthopSetHash, DoesNotSeeFlagsAndFamilies) {
  EXPECT_EQ(setOf({{"10.0.0.1", true}}).hash(), setOf({{"10.0.0.1", false}}).hash());
  EXPECT_EQ(setOf({{"10.0.0.1", true}}).hash(), setOf({{"a00:1::", true}}).hash());
}

TEST(NexthopSetHash, SeesAllElse) {
  std::uint32_t const hash = setOf({{"10.0.0.1", true}}, 0, "a").hash();
  EXPECT_NE(hash, setOf({{"10.0.0.2", true}}, 0, "a").hash());
  EXPECT_NE(hash, setOf({{"10.0.0.1", true}}, 1, "a").hash());
  EXPECT_NE(hash, setOf({{"10.0.0.1", true}}, 0, "b").hash());
  EXPECT_NE(hash, NexthopSet(0, "a").hash());
}

TEST(NexthopSetHash, IsTheSameOnEveryMachine) {
  EXPECT_EQ(0U, NexthopSet(0, "").hash());
  EXPECT_EQ(0x98adb391U, NexthopSet(1, "").hash());
  EXPECT_EQ(0x004b1e74U, setOf({{"10.0.0.1", true}}, 1, "").hash());
  EXPECT_EQ(0x6bae0ba1U, setOf({{"2001:db8::1", true}, {"10.0.0.1", true}}, 0, "").hash());
}

TEST(NexthopSetText, EmptySetIsNoneWhateverTheOtherFields) {
  EXPECT_EQ("None", valueToStrep(NexthopSet()));
  EXPECT_EQ("None", valueToStrep(NexthopSet(1, "blue")));
  EXPECT_EQ("None", printed(NexthopSet()));
}

TEST(NexthopSetText, AddressesAreDividedByOneBlankThenRecursive) {
  EXPECT_EQ("10.0.0.1", valueToStrep(setOf({{"10.0.0.1", true}})));
  EXPECT_EQ("10.0.0.1 2001:db8::1",
            valueToStrep(setOf({{"2001:db8::1", false}, {"10.0.0.1", true}}, 0, "blue")));
  EXPECT_EQ("10.0.0.1 recursive", valueToStrep(setOf({{"10.0.0.1", true}}, 7)));
  EXPECT_EQ("10.0.0.1 10.0.0.2 recursive", printed(setOf({{"10.0.0.1", true}, {"10.0.0.2", true}}, 1)));
}

// Reads from the front of a text. RETURNS the set's text and the position that the reader came to.
struct Reading {
  NexthopSet set;
  std::size_t position;
};
Reading read(Vyx::String8 const& text) {
  Vyx::StrepIterator8 at = text.begin();
  NexthopSet set = Vyx::sequenceToValue<NexthopSet>(at, text.end());
  return {std::move(set), at.position()};
}

TEST(NexthopSetReading, TakesAddressesWithTheFlagSet) {
  auto const [set, position] = read("10.0.0.2 10.0.0.1 2001:db8::1");
  EXPECT_EQ("10.0.0.1 10.0.0.2 2001:db8::1", entries(set));
  EXPECT_EQ(0U, set.recursive());
  EXPECT_EQ("default", set.vrfName().stringValue());
  EXPECT_EQ(29U, position);
}

TEST(NexthopSetReading, OneAddressTwiceIsOneEntry) {
  EXPECT_EQ("10.0.0.1", entries(read("10.0.0.1 10.0.0.1").set));
}

TEST(NexthopSetReading, EmptyTextIsADefaultSet) {
  EXPECT_TRUE(!read("").set);
  EXPECT_EQ("read as None", refusal<NexthopSet>(""));
}

TEST(NexthopSetReading, BlankAtTheEndIsTaken) {
  auto const [set, position] = read("10.0.0.1 ");
  EXPECT_EQ("10.0.0.1", entries(set));
  EXPECT_EQ(9U, position);
}

TEST(NexthopSetReading, SecondBlankBeginsTheNextWord) {
  EXPECT_EQ("10.0.0.1 10.0.0.2", entries(read("10.0.0.1  10.0.0.2").set));
}

TEST(NexthopSetReading, LetterRStopsItWhereverItStands) {
  auto const [set, position] = read("1.2.3.4 recursive");
  EXPECT_EQ("1.2.3.4", entries(set));
  EXPECT_EQ(1U, set.recursive());
  EXPECT_EQ(8U, position);
  EXPECT_EQ(8U, read("1.2.3.4 r").position);
  auto const [cut, cutAt] = read("1.2.3.4r and 5.6.7.8");
  EXPECT_EQ("", entries(cut));
  EXPECT_EQ(1U, cut.recursive());
  EXPECT_EQ(7U, cutAt);
}

TEST(NexthopSetReading, FirstByteIsTakenWhateverItIs) {
  auto const [set, position] = read("recursive");
  EXPECT_EQ("", entries(set));
  EXPECT_EQ(1U, set.recursive());
  EXPECT_EQ(4U, position);
}

TEST(NexthopSetReading, SetsOwnTextWithRecursiveIsJunkAsAWhole) {
  NexthopSet const set = setOf({{"1.2.3.4", true}}, 7);
  EXPECT_EQ("junk at column 8 deserializing 1.2.3.4 recursive", refusal<NexthopSet>(valueToStrep(set)));
  EXPECT_EQ(setOf({{"1.2.3.4", true}}, 1), read(valueToStrep(set)).set);
}

TEST(NexthopSetReading, NoneIsNoAddress) {
  EXPECT_EQ("IpGenAddr: \"None\": four octets with dots between are needed", refusal<NexthopSet>("None"));
}

TEST(NexthopSetReading, BadWordIsRefusedInTheAddressReadersWords) {
  EXPECT_EQ("IpGenAddr: \"10.0.0.300\": octet 300 is above 255", refusal<NexthopSet>("10.0.0.1 10.0.0.300"));
}

TEST(NexthopSetReading, PlainSetsReadBack) {
  expectReadsBack(setOf({{"10.0.0.1", true}}));
  expectReadsBack(setOf({{"10.0.0.1", true}, {"255.255.255.255", true}, {"2001:db8::1", true}}));
}

TEST(NexthopSetLimits, InstanceOfAHundredAndOneBytesIsRefused) {
  NexthopSet set(0, std::string(100, 'v').c_str());
  EXPECT_EQ(100U, set.vrfName().stringValue().bytes());
  EXPECT_EQ("VrfName::bytes > 100 not allowed",
            rangeMessage([&] { set.vrfNameIs(std::string(101, 'v').c_str()); }));
  EXPECT_EQ("VrfName::bytes > 100 not allowed",
            rangeMessage([] { NexthopSet(0, std::string(101, 'v').c_str()); }));
  EXPECT_EQ(100U, set.vrfName().stringValue().bytes());
}

// Random sets beside a plain model of the three fields.
struct Model {
  std::map<IpGenAddr, bool> nexthop;
  unsigned recursive = 0;
  std::string vrfName = "default";

  std::vector<bool> flags() const {
    std::vector<bool> result;
    for (auto const& [key, value] : nexthop) result.push_back(value);
    return result;
  }
  bool equals(Model const& o) const {
    return nexthop == o.nexthop && recursive == o.recursive && vrfName == o.vrfName;
  }
  bool less(Model const& o) const {
    if (nexthop.size() != o.nexthop.size()) return nexthop.size() < o.nexthop.size();
    return std::tuple(flags(), recursive, vrfName) < std::tuple(o.flags(), o.recursive, o.vrfName);
  }
};

class NexthopSetModel : public testing::Test {
protected:
  Random random;

  IpGenAddr address() {
    unsigned char bytes[16] = {};
    bytes[3] = static_cast<unsigned char>(random.below(20));
    return IpGenAddr(random.oneIn(2) ? 4 : 6, Lomu::Ip6Addr(bytes));
  }
  void change(NexthopSet& set, Model& model) {
    IpGenAddr const key = address();
    bool const value = random.oneIn(2);
    switch (random.below(6)) {
    case 0:
      EXPECT_EQ(model.nexthop.count(key) && model.nexthop[key], set.nexthopDel(key));
      model.nexthop.erase(key);
      break;
    case 1:
      set.recursiveIs(model.recursive = random.below(2));
      break;
    case 2:
      model.vrfName = random.oneIn(2) ? "default" : "blue";
      set.vrfNameIs(model.vrfName.c_str());
      break;
    default:
      model.nexthop[key] = value;
      random.oneIn(2) ? set.nexthopIs(key, value) : static_cast<void>(set.newNexthop(key, value));
    }
  }
  static void expectSame(NexthopSet const& set, Model const& model) {
    ASSERT_EQ(model.nexthop.size(), set.nexthops());
    auto at = set.nexthopIteratorConst();
    for (auto const& [key, value] : model.nexthop) {
      ASSERT_EQ(key, at.key());
      ASSERT_EQ(value, at.value());
      ++at;
    }
    EXPECT_FALSE(at);
  }
};

TEST_F(NexthopSetModel, BehavesAsAMapBesideTwoFields) {
  NexthopSet sets[2];
  Model models[2];
  for (int step = 0; step < 3000; ++step) {
    std::size_t const i = random.below(2);
    change(sets[i], models[i]);
    if (random.oneIn(50)) {
      sets[i] = sets[1 - i];
      models[i] = models[1 - i];
    }
    ASSERT_NO_FATAL_FAILURE(expectSame(sets[i], models[i]));
    ASSERT_EQ(models[0].equals(models[1]), sets[0] == sets[1]);
    ASSERT_EQ(models[0].less(models[1]), sets[0] < sets[1]);
    ASSERT_EQ(models[1].less(models[0]), sets[0] > sets[1]);
    if (sets[0] == sets[1]) {
      ASSERT_EQ(sets[0].hash(), sets[1].hash());
    }
  }
}

} // namespace
