#include "Vyx/String8.h"

#include "support/Allocations.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <thread>
#include <vector>

namespace {

using Vyx::Name;
using Vyx::String8;

TEST(String8, EmptyTextsAreAlike) {
  EXPECT_EQ(String8(), String8(""));
  EXPECT_EQ(String8(), String8(static_cast<char const*>(nullptr)));
  EXPECT_TRUE(String8("").empty());
  EXPECT_STREQ("", String8().charPtr());
  EXPECT_EQ(0U, String8().hash());
}

TEST(String8, CopySharesStorage) {
  String8 const text("a text");
  String8 const copy(text);
  EXPECT_EQ(text.charPtr(), copy.charPtr());
  EXPECT_EQ(text, copy);
}

TEST(String8, AssignedToItselfKeepsText) {
  String8 text("kept");
  String8& same = text;
  text = same;
  EXPECT_EQ("kept", text);
  text = std::move(same);
  EXPECT_EQ("kept", text);
}

TEST(String8, MovedFromIsEmpty) {
  String8 from("moved");
  String8 const to(std::move(from));
  EXPECT_EQ("moved", to);
  EXPECT_TRUE(from.empty());
}

TEST(String8, HoldsNulBytes) {
  String8 const text(std::string_view("a\0b", 3));
  EXPECT_EQ(3U, text.bytes());
  EXPECT_NE(text, String8("a"));
  EXPECT_EQ('\0', text.charPtr()[text.bytes()]);
}

TEST(String8, ComparesAsUnsignedBytes) {
  EXPECT_LT(String8("a"), String8("ab"));
  EXPECT_LT(String8("ab"), String8("b"));
  EXPECT_LT(String8("z"), String8("\xc3\xa4"));
  EXPECT_LT(String8(), String8("a"));
  EXPECT_GE(String8("b"), String8("b"));
}

TEST(String8, NameAndTextConvertIntoEachOther) {
  Name const name = String8("Pbr");
  String8 const text = name;
  EXPECT_EQ(text.charPtr(), name.charPtr());
  EXPECT_EQ(text.hash(), name.hash());
}

TEST(String8, HashIsThatOfTheTextOnEveryMachine) {
  EXPECT_EQ(0x19b86472U, String8("default").hash());
  EXPECT_EQ(String8("default").hash(), String8(std::string("def") + "ault").hash());
}

TEST(String8, SumIsTheTextsInARow) {
  String8 const left("left");
  EXPECT_EQ("left, right", left + ", " + "right");
  EXPECT_EQ(left.charPtr(), (left + "").charPtr());
  EXPECT_EQ(left.charPtr(), ("" + left).charPtr());
}

TEST(String8, StreamsAllItsBytes) {
  std::ostringstream out;
  out << String8(std::string_view("a\0b", 3)) << Name("!");
  EXPECT_EQ(std::string("a\0b!", 4), out.str());
}

TEST(String8, FormatIsOfAnyLength) {
  EXPECT_EQ("", Vyx::format("%s", ""));
  EXPECT_EQ("7-0042", Vyx::format("%d-%04x", 7, 0x42));
  std::string const longText(5000, 'x');
  EXPECT_EQ(String8("<" + longText + ">"), Vyx::format("<%s>", longText.c_str()));
}

TEST(String8, IteratorKeepsTextAlive) {
  String8::IteratorConst at;
  {
    String8 const text("short-lived");
    at = text.begin();
  }
  ++at;
  EXPECT_EQ('h', *at);
  EXPECT_EQ(1U, at.position());
}

class ThreadSafeCounting {
public:
  ThreadSafeCounting() { Vyx::VFPtrInterface::enableThreadSafePointers = true; }
  ThreadSafeCounting(ThreadSafeCounting const&) = delete;
  ThreadSafeCounting& operator=(ThreadSafeCounting const&) = delete;
  ~ThreadSafeCounting() { Vyx::VFPtrInterface::enableThreadSafePointers = false; }
};

TEST(String8, ThreadsShareTextsUnderTheSwitch) {
  ThreadSafeCounting const counting;
  String8 const text("shared");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([text] {
      for (int n = 0; n < 20000; ++n) String8(text).swap(*std::make_unique<String8>(text));
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ("shared", text);
}

TEST(TextBuffer, PutsThePieceBehindTheFront) {
  Vyx::TextBuffer buffer("path.");
  for (char const* piece : {"a", "", "quite a long piece, longer than there was room for", "b"}) {
    String8 const expected(std::string("path.") + piece);
    EXPECT_EQ(expected, buffer.with(piece));
    EXPECT_EQ(expected.hash(), buffer.with(piece).hash());
    EXPECT_STREQ(expected.charPtr(), buffer.with(piece).charPtr());
  }
}

TEST(TextBuffer, TextThatIsHeldStaysAsItIs) {
  Vyx::TextBuffer buffer("path.");
  String8 const held = buffer.with("one");
  EXPECT_EQ(String8("path.two"), buffer.with("two"));
  EXPECT_EQ(String8("path.one"), held);
}

TEST(TextBuffer, UsesItsStorageAgain) {
  Vyx::TextBuffer buffer("path.");
  char const* const bytes = buffer.with("three").charPtr();
  EXPECT_EQ(bytes, buffer.with("one").charPtr());
}

TEST(TextPool, MakesTheTextsThatItIsGiven) {
  Vyx::TextPool pool;
  for (char const* text : {"seven", "", "one", "seventeen", "one", "x", "seven", "", "y", "seventy"}) {
    Vyx::String8 const made = pool.text(text);
    EXPECT_EQ(Vyx::String8(text), made);
    EXPECT_EQ(Vyx::String8(text).hash(), made.hash());
    EXPECT_STREQ(text, made.charPtr());
  }
}

TEST(TextPool, TextThatIsHeldStaysAsItIs) {
  Vyx::TextPool pool;
  std::vector<Vyx::String8> held;
  for (int i = 0; i < 20; ++i) held.push_back(pool.text(std::to_string(1000 + i)));
  for (int i = 0; i < 20; ++i) EXPECT_EQ(std::to_string(1000 + i), held[static_cast<std::size_t>(i)].view());
}

TEST(TextPool, TextsThatNobodyHoldsTakeNoMemory) {
  Vyx::TextPool pool;
  auto const some = [&] {
    for (int i = 0; i < 100; ++i) pool.text(std::to_string(1000 + i));
  };
  some();
  EXPECT_EQ(0U, allocations::takenBy(some));
}

TEST(TextPool, LongTextsAreNotKept) {
  Vyx::TextPool pool;
  std::size_t const before = allocations::living();
  pool.text(std::string(1000, 'x'));
  EXPECT_EQ(before, allocations::living());
}

} // namespace
