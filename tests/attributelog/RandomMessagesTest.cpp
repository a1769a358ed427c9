// Random messages through random buffers in random pieces, read back to the same.

#include "Wire.h"

#include "support/Random.h"

#include "Kest/UniqueId.h"
#include "Lomu/IpGenAddr.h"

#include <deque>

namespace {

using namespace Vyx::NboAttrLog;

struct Message {
  MsgHeader header;
  std::string text;
  bool flag;
  std::uint32_t number;
  unsigned long long wide;
  Kest::UniqueId id;
  Lomu::IpGenAddr address;
};

class RandomMessages : public testing::Test {
protected:
  static constexpr std::uint32_t kMaxLength = 5000;

  Message anyMessage() {
    Message message;
    message.header = variable(EntityId(random.bits(), random.bits()), static_cast<int>(random.bits()));
    message.header.messageClass = kClasses[random.below(4)];
    message.text = std::string(random.oneIn(10) ? random.below(4900) : random.below(20),
                               static_cast<char>(random.bits()));
    message.flag = random.oneIn(2);
    message.number = random.bits();
    message.wide = static_cast<unsigned long long>(random.bits()) << 32 | random.bits();
    message.id = Kest::UniqueId(random.bits(), 7, static_cast<std::uint16_t>(random.bits()));
    message.address = random.oneIn(2) ? "10.9.8.7" : "2001:db8::7";
    return message;
  }
  void write() {
    Message const m = anyMessage();
    wire.write(m.header, m.flag, Vyx::String8(m.text), m.number, m.wide, m.id, m.address);
    expected.push_back(m);
  }
  void carry() {
    auto const pending = wire.out->pending();
    auto const space = wire.in->space();
    std::size_t const most = std::min(pending.size(), space.size());
    if (most == 0) return;
    std::size_t const some = 1 + random.below(static_cast<std::uint32_t>(most));
    std::copy_n(pending.begin(), some, space.begin());
    wire.in->received(some);
    wire.out->consumed(some);
  }
  void read() {
    if (!wire.in->nextMessage()) return;
    ASSERT_FALSE(expected.empty());
    Message const m = expected.front();
    expected.pop_front();
    In& in = *wire.in;
    EXPECT_EQ(m.header, in.header());
    EXPECT_EQ(m.flag, NboAttrLog::read<bool>(in));
    EXPECT_EQ(m.text, NboAttrLog::read<Vyx::String8>(in).view());
    if (random.oneIn(3)) carry();
    EXPECT_EQ(m.number, NboAttrLog::read<std::uint32_t>(in));
    EXPECT_EQ(m.wide, NboAttrLog::read<unsigned long long>(in));
    EXPECT_EQ(m.id, NboAttrLog::read<Kest::UniqueId>(in));
    EXPECT_EQ(m.address, NboAttrLog::read<Lomu::IpGenAddr>(in));
    in.expectEnd();
  }
  void unfinished() {
    wire.out->nextHeaderIs(variable(EntityId(1, 0), 1));
    wire.out << Vyx::String8(std::string(random.below(3000), 'u'));
    wire.out->abandon();
  }

  Random random;
  Wire wire{64U << random.below(8), kMaxLength};
  std::deque<Message> expected;

private:
  struct NboAttrLog {
    template <class T> static T read(In& in) { return Vyx::NboAttrLog::read<T>(in); }
  };
};

TEST_F(RandomMessages, AreReadAsTheyWereWritten) {
  for (int step = 0; step < 20000; ++step) {
    std::uint32_t const what = random.below(20);
    if (what < 6 && wire.out->hasSufficientBuffer()) write();
    if (what == 6) unfinished();
    if (what < 15) carry();
    if (what > 8) read();
    if (HasFatalFailure()) return;
  }
  for (int step = 0; step < 2000000 && !expected.empty(); ++step) {
    carry();
    read();
  }
  EXPECT_TRUE(expected.empty());
  EXPECT_EQ(0U, wire.out->pendingBytes());
}

} // namespace
