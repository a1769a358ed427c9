// A scripted exchange in which one of the two processes dies behind each byte that matters: at every boundary
// between messages and in the middle of every message, of what it sends and of what it has received.

#include "Child.h"
#include "Script.h"

namespace processes_test {
namespace {

// Where the messages of a stream end; the first one is its hello.
std::vector<std::size_t> boundariesOf(std::string const& stream) {
  std::vector<std::size_t> ends{Hello::kBytes};
  auto const byteAt = [&](std::size_t at) { return static_cast<unsigned char>(stream.at(at)); };
  for (std::size_t at = Hello::kBytes; at < stream.size(); ends.push_back(at))
    at += 3 + 4 + (byteAt(at) << 16U | byteAt(at + 1) << 8U | byteAt(at + 2));
  return ends;
}

// Every boundary, the very beginning included, and the middle before it.
std::vector<std::size_t> placesOf(std::string const& stream) {
  std::vector<std::size_t> places{0};
  for (std::size_t const end : boundariesOf(stream)) {
    places.push_back((places.back() + end) / 2);
    places.push_back(end);
  }
  return places;
}

class KillTest : public testing::Test {
protected:
  KillTest() {
    Child server([this] { serveUntilSpent(socket, std::make_shared<Meter>()); });
    ScriptReader reader;
    auto const meter = std::make_shared<Meter>();
    reader.connect(socket, meter);
    EXPECT_TRUE(reader.finish()) << reader.ended;
    EXPECT_EQ(outcome.told.text(), reader.told.text());
    sent = meter->read;
    received = meter->written;
  }

  static std::shared_ptr<Meter> meterOf(std::size_t toRead, std::size_t toWrite) {
    auto const meter = std::make_shared<Meter>();
    meter->toRead = toRead;
    meter->toWrite = toWrite;
    return meter;
  }

  // The server dies. The reader goes on with its successor, which has done all its steps.
  void serverDies(std::shared_ptr<Meter> const& meter) {
    Child first([&] { serveUntilSpent(socket, meter); });
    ScriptReader reader;
    auto const seen = std::make_shared<Meter>();
    reader.connect(socket, seen);
    EXPECT_TRUE(reader.loseServer());
    EXPECT_EQ("signal 9", first.wait());
    if (meter->toWrite != Meter::kNoLimit) {
      EXPECT_EQ(sent.substr(0, meter->toWrite), seen->read);
    }
    Child const second([&] { serveLate(); });
    reader.connect(socket, std::make_shared<Meter>());
    EXPECT_TRUE(reader.finish()) << reader.ended;
    EXPECT_EQ(wanted, reader.text());
    EXPECT_EQ(outcome.told.text(), reader.told.text());
    EXPECT_EQ("", reader.told.wrong());
  }
  void serveLate() {
    ScriptServer server(socket, true);
    for (;;) server.loop.turn(kLimit);
  }

  // The reader dies. What it has sent whole is applied, and another reader comes.
  void readerDies(std::shared_ptr<Meter> const& meter) {
    ScriptServer server(socket, false);
    Child first([&] { readUntilSpent(socket, meter); });
    ASSERT_TRUE(server.loop.runUntil([&] { return server.hasServed(1); }, kLimit));
    EXPECT_EQ("signal 9", first.wait());
    if (meter->toWrite != Meter::kNoLimit) {
      EXPECT_EQ(editsWithin(meter->toWrite), server.told.changesOf(kEdited));
    }
    Child const second([&] { readToTheEnd(); });
    ASSERT_TRUE(server.loop.runUntil([&] { return server.hasServed(2); }, kLimit));
    EXPECT_EQ(wanted, server.text());
    EXPECT_EQ(wanted, folder.read("text"));
    EXPECT_EQ(outcome.told.text(), server.told.text());
    EXPECT_EQ("", server.told.wrong());
  }
  void readToTheEnd() {
    ScriptReader reader;
    reader.connect(socket, std::make_shared<Meter>());
    folder.write("text", reader.finish() ? reader.text() : reader.ended);
  }
  // How many of the reader's edits are whole in so much of what it sends.
  unsigned editsWithin(std::size_t bytes) const {
    auto const ends = boundariesOf(received);
    auto const whole = std::count_if(ends.begin(), ends.end(), [&](auto end) { return end <= bytes; });
    auto const others = static_cast<std::ptrdiff_t>(ends.size() - kEdits);
    return static_cast<unsigned>(std::max<std::ptrdiff_t>(0, whole - others));
  }

  SharedFolder folder;
  std::string const socket = folder / "log";
  Outcome const outcome;
  std::string const wanted = textOf(outcome.trees);
  std::string sent;     // By the server.
  std::string received; // By the server.
};

TEST_F(KillTest, TheExchangeHasMessagesOfEveryKind) {
  EXPECT_GT(boundariesOf(sent).size(), 100U);
  EXPECT_EQ(sent.size(), boundariesOf(sent).back());
  // The hello, what is asked for, how much was heard before the first edit, the edits.
  EXPECT_EQ(1 + std::size(kPaths) + 1 + kEdits, boundariesOf(received).size());
}

TEST_F(KillTest, AServerMayDieBehindWhateverItSends) {
  for (std::size_t const place : placesOf(sent)) {
    SCOPED_TRACE(place);
    serverDies(meterOf(Meter::kNoLimit, place));
    if (HasFailure()) return;
  }
}

TEST_F(KillTest, AServerMayDieBehindWhateverItReceives) {
  for (std::size_t const place : placesOf(received)) {
    SCOPED_TRACE(place);
    serverDies(meterOf(place, Meter::kNoLimit));
    if (HasFailure()) return;
  }
}

TEST_F(KillTest, AReaderMayDieBehindWhateverItReceives) {
  for (std::size_t const place : placesOf(sent)) {
    SCOPED_TRACE(place);
    readerDies(meterOf(place, Meter::kNoLimit));
    if (HasFailure()) return;
  }
}

TEST_F(KillTest, AReaderMayDieBehindWhateverItSends) {
  for (std::size_t const place : placesOf(received)) {
    SCOPED_TRACE(place);
    readerDies(meterOf(Meter::kNoLimit, place));
    if (HasFailure()) return;
  }
}

} // namespace
} // namespace processes_test
