// One connection of an attribute log: a transport, the bytes on their way out and in, and a receiver.
//
// Invariants:
// (1) The first bytes each way are a hello; until the peer's has come and is understood, no message goes out.
// (2) What goes wrong with one link ends that link and nothing else. Its receiver then hears onClosed once,
//     and nothing after it. The peer is told the words if it takes them at once.
// (3) A link holds at most the Out's capacity and one message, and the In's largest frame.
// (4) Nothing here waits but `receive`.
// (5) onRoom and onClosed come from calls of the loop or of `end`, never from within the
//     writing of a message.

#pragma once

#include "Vyx/NboAttrLog/Hello.h"
#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/NboAttrLog/Receiver.h"
#include "Vyx/NboAttrLog/Recording.h"
#include "Vyx/NboAttrLog/Source.h"
#include "Vyx/NboAttrLog/Transport.h"

#include <functional>

namespace Vyx::NboAttrLog {

// The codes of control messages: entityId 0, class kControl, variable length, the code as attribute id.
inline constexpr AttributeId kByeCode = 1; // text: why the connection ends

struct LinkOptions {
  std::size_t outCapacity = kDefaultCapacity;
  std::size_t inCapacity = kDefaultCapacity;
  std::uint32_t maxLength = kDefaultMaxLength;
  std::uint32_t features = 0; // Those of this side.
  Duration helloLimit = std::chrono::seconds(5);
  // What one call from the loop reads, and sends, at most; then others have their turn.
  std::size_t readBudget = 256 * 1024;
  std::size_t sendBudget = 1024 * 1024;
  // A writer that doesn't come back to the loop has its messages sent whenever so much has gathered.
  std::size_t streamAt = 64 * 1024;
};

class Link final : public Source, private Waker {
public:
  // The hello goes out with the first turn.
  // REQUIRES: the receiver lives until it has heard onClosed, or `receiverDel` was called.
  Link(std::unique_ptr<Transport> transport, Receiver& receiver, LinkOptions const& options = {});
  ~Link() override;

  Ptr<Out> const& out() const { return out_; }
  Ptr<In> const& in() const { return in_; }
  // REQUIRES: the link hasn't ended.
  Transport& transport() const { return *transport_; }
  std::string const& peerName() const { return peerName_; }
  // Those that both sides have named; none before onHello.
  std::uint32_t features() const { return features_; }
  std::uint64_t bytesReceived() const { return bytesReceived_; }
  std::uint64_t bytesSent() const { return bytesSent_; }

  // Each message is sent as it is finished, not at the end of the turn.
  void immediateIs(bool immediate) { isImmediate_ = immediate; }
  // Over a transport without descriptor: what the peer writes is received within the peer's call, unless this
  // link is receiving already. Otherwise it waits for the loop.
  void directIs(bool direct) { isDirect_ = direct; }
  // Called within the peer's call whenever `isReady` may have become true; for loops that would wait
  // otherwise.
  void wakeIs(std::function<void()> wake) { wake_ = std::move(wake); }
  // While it is off nothing more is read, and the peer's writes come to a halt.
  void readingIs(bool reading) { isReading_ = reading; }
  // Each byte from now on. Either may be null.
  void recordingsAre(std::unique_ptr<Recording> received, std::unique_ptr<Recording> sent);

  // NOTIFIES: onRoom, from the loop, when at most half of the capacity is pending. Comes without being asked
  // for after a message has left the Out without sufficient buffer.
  void roomWanted() { isRoomOwed_ = true; }
  // Writes a control message; `write` puts its payload on the Out.
  template <class Write> void sendControl(AttributeId code, Write&& write);
  // Ends the link and tells the peer why.
  void end(std::string const& words);
  // From now on nobody hears anything; messages are skipped.
  void receiverDel() { receiver_ = nullptr; }

  int fd() const override { return transport_ ? transport_->fd() : -1; }
  bool wantsRead() const override { return isReading_; }
  bool wantsWrite() const override;
  bool isReady() const override;
  bool hasEnded() const override { return state_ == State::ended; }
  void readable() override;
  void writable() override;
  // Sends what is pending, in one system call if the stream takes it.
  void turn() override;
  bool receive() override;
  Instant nextDeadline() const override;
  void expire(Instant now) override;

private:
  enum class State : unsigned char { hello, open, ending, ended };

  void wake() override;
  template <class Body> void enter(Body body);
  template <class Call> void tell(Call call);

  using Reading = IoResult (Transport::*)(std::span<unsigned char>);
  void read(Reading first = &Transport::read);
  void readRest();
  bool readOnce(std::size_t& budget, Reading reading = &Transport::read);
  bool readHello(std::size_t& budget);
  void handleReceived(std::span<unsigned char const> bytes);
  void handleMessages();
  void handleMessage();
  void handleBye();
  void handleNoBytes(IoResult const& result);

  static void handleCommitted(void* link, Out& out);
  void handleCommitted();
  void flush();
  bool flushOnce();
  void handleSent(std::size_t bytes);
  void handleUnsendable(IoResult const& result);
  void sendAndMakeRoom();
  bool roomIsDue() const { return isRoomOwed_ && out_->pendingBytes() <= out_->capacity() / 2; }
  std::span<unsigned char const> helloLeft() const { return std::span(hello_).subspan(helloSent_); }
  std::span<unsigned char const> framesToSend() const;

  void endsFor(Closing::Cause cause, std::string const& words);
  void sayBye();
  void close();

  LinkOptions const options_;
  std::unique_ptr<Transport> transport_; // Null once the link has ended.
  Receiver* receiver_;
  Ptr<Out> out_;
  Ptr<In> in_;
  std::string const peerName_;
  std::function<void()> wake_;
  std::unique_ptr<Recording> recordReceived_;
  std::unique_ptr<Recording> recordSent_;

  State state_ = State::hello;
  bool isImmediate_ = false;
  bool isDirect_ = false;
  bool isReading_ = true;
  bool isRoomOwed_ = false;
  bool isBlocked_ = false;    // The stream took less than it was given; a poller tells when it takes more.
  bool isUnsendable_ = false; // The peer takes nothing any more; what it has sent is still read.
  bool isFlushing_ = false;
  bool isReceiving_ = false;
  bool isSayingBye_ = false;
  unsigned depth_ = 0; // Of calls of `enter`.

  Instant helloUntil_;
  Hello::Bytes hello_;     // This side's.
  Hello::Bytes peerHello_; // As far as it has come.
  std::size_t helloSent_ = 0;
  std::size_t helloReceived_ = 0;
  std::uint32_t features_ = 0;
  std::size_t flushAt_; // When so much is pending, a finished message is followed by a flush.
  std::uint64_t bytesReceived_ = 0;
  std::uint64_t bytesSent_ = 0;
  std::uint64_t messageAt_ = 0; // Where the current message began.
  Closing closing_{};           // Of a link that is ending.
};

template <class Write> void Link::sendControl(AttributeId code, Write&& write) {
  MsgHeader header;
  header.attrId = code;
  header.variableLength = 1;
  header.messageClass = kControl;
  out_->nextHeaderIs(header);
  out_ << Out::kTransactBegin;
  write(out_);
  out_ << Out::kTransactEnd;
}

} // namespace Vyx::NboAttrLog
