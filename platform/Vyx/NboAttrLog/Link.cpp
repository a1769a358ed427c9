#include "Vyx/NboAttrLog/Link.h"

#include "Vyx/NboAttrLog/Exceptions.h"

#include <algorithm>

namespace Vyx::NboAttrLog {

namespace {

// Of texts that go to the peer, or come from it.
constexpr std::size_t kMaxWords = 1000;
// Bounds how often onRoom comes in one turn, for a receiver that wants room and writes nothing.
constexpr unsigned kMaxRooms = 64;
// What is read of a peer that takes nothing any more, to find its last words.
constexpr std::size_t kMaxRest = 4 * 1024 * 1024;

// What a peer says may be shown on a terminal.
std::string printable(std::string_view text) {
  std::string result(text.substr(0, kMaxWords));
  std::replace_if(
      result.begin(), result.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
  return result;
}

std::string limitText(Duration limit) {
  return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(limit).count()) + " ms";
}

} // namespace

Link::Link(std::unique_ptr<Transport> transport, Receiver& receiver, LinkOptions const& options)
    : options_(options), transport_(std::move(transport)), receiver_(&receiver),
      out_(ptrFromNew(new Out(options.outCapacity, options.maxLength))),
      in_(ptrFromNew(new In(options.inCapacity, options.maxLength))), peerName_(transport_->peerName()),
      helloUntil_(after(Clock::now(), options.helloLimit)),
      hello_(Hello{kVersion, options.features}.bytes()), peerHello_{}, flushAt_(options.streamAt) {
  out_->inIs(in_.ptr());
  out_->committedHookIs(&Link::handleCommitted, this);
  transport_->wakerIs(this);
}

Link::~Link() {
  out_->committedHookIs(nullptr, nullptr);
  out_->connectedIs(false);
  out_->inIs(nullptr);
}

void Link::recordingsAre(std::unique_ptr<Recording> received, std::unique_ptr<Recording> sent) {
  recordReceived_ = std::move(received);
  recordSent_ = std::move(sent);
}

// Every call from outside passes here. A link that has to end does so when the outermost one returns, but
// not within a write that a peer in this process has answered: then the next turn ends it.
template <class Body> void Link::enter(Body body) {
  Ptr<Link> const self(this);
  ++depth_;
  if (state_ < State::ending) body();
  if (--depth_ == 0 && state_ == State::ending && !isFlushing_) close();
}

// A call of the receiver, while there is one.
template <class Call> void Link::tell(Call call) {
  if (!receiver_) return;
  try {
    call(*receiver_);
  } catch (std::exception const& error) {
    endsFor(Closing::Cause::receiver, error.what());
  }
}

void Link::end(std::string const& words) {
  enter([&] { endsFor(Closing::Cause::ended, words); });
}

void Link::turn() {
  enter([this] {
    if (isDirect_ && transport_->isReadable()) read();
    sendAndMakeRoom();
  });
}

void Link::writable() {
  enter([this] {
    isBlocked_ = false;
    sendAndMakeRoom();
  });
}

void Link::readable() {
  enter([this] { read(); });
}

// Who waits to be read alone would never find out that the peer takes more.
bool Link::receive() {
  if (state_ != State::open || !isReading_ || wantsWrite() || !transport_->canAwait()) return false;
  enter([this] { read(&Transport::await); });
  return true;
}

void Link::expire(Instant now) {
  enter([&] {
    if (state_ == State::hello && now >= helloUntil_)
      endsFor(Closing::Cause::timeLimit, "no hello within " + limitText(options_.helloLimit));
    else if (isUnsendable_)
      sendAndMakeRoom();
  });
}

Instant Link::nextDeadline() const {
  if (state_ == State::ended) return kNever;
  if (state_ == State::ending || isUnsendable_) return Instant::min();
  if (receiver_ && receiver_->wantsTurn()) return Instant::min();
  return state_ == State::hello ? helloUntil_ : kNever;
}

bool Link::wantsWrite() const {
  if (state_ >= State::ending || isUnsendable_) return false;
  return !helloLeft().empty() || !framesToSend().empty() || (state_ == State::open && roomIsDue());
}

bool Link::isReady() const {
  if (!transport_ || transport_->fd() >= 0) return false;
  return (isReading_ && transport_->isReadable()) || (wantsWrite() && transport_->isWritable());
}

void Link::wake() {
  if (!isDirect_) {
    if (wake_) wake_();
    return;
  }
  Ptr<Link> const self(this);
  if (transport_ && transport_->isReadable()) readable();
  if (isBlocked_ && !isFlushing_ && transport_ && transport_->isWritable()) writable();
}

// Receiving.

void Link::read(Reading first) {
  if (isReceiving_ || !isReading_) return;
  isReceiving_ = true;
  std::size_t budget = options_.readBudget;
  do {
    for (bool more = readOnce(budget, std::exchange(first, &Transport::read)); more;) more = readOnce(budget);
    // Nobody else would come back for the rest.
    if (isDirect_) budget = options_.readBudget;
  } while (isDirect_ && isReading_ && state_ < State::ending && transport_->isReadable());
  isReceiving_ = false;
}

// To the last words of a peer that takes nothing any more.
void Link::readRest() {
  if (isReceiving_) return;
  isReceiving_ = true;
  for (std::size_t rest = kMaxRest; readOnce(rest);) {
  }
  isReceiving_ = false;
  endsFor(Closing::Cause::peerEnded, "the peer closed the connection");
}

// RETURNS whether to go on: more may be there, and the budget isn't used up.
bool Link::readOnce(std::size_t& budget, Reading reading) {
  if (state_ >= State::ending || budget == 0 || !isReading_) return false;
  if (state_ == State::hello) return readHello(budget);
  std::span<unsigned char> const room = in_->space();
  IoResult const result = (*transport_.*reading)(room);
  if (!result.is(IoResult::Kind::bytes)) {
    handleNoBytes(result);
    return false;
  }
  handleReceived(room.first(result.count));
  in_->received(result.count);
  budget -= std::min(budget, result.count);
  handleMessages();
  return result.count == room.size();
}

// Not a byte beyond the hello is taken.
bool Link::readHello(std::size_t& budget) {
  std::span<unsigned char> const room = std::span(peerHello_).subspan(helloReceived_);
  IoResult const result = transport_->read(room);
  if (!result.is(IoResult::Kind::bytes)) {
    handleNoBytes(result);
    return false;
  }
  handleReceived(room.first(result.count));
  helloReceived_ += result.count;
  budget -= std::min(budget, result.count);
  std::span<unsigned char const> const there = std::span(peerHello_).first(helloReceived_);
  std::string const refusal = Hello::refusal(there);
  if (!refusal.empty()) endsFor(Closing::Cause::hello, refusal);
  if (!refusal.empty() || there.size() < Hello::kBytes) return refusal.empty();
  features_ = Hello::fromBytes(there).features & options_.features;
  state_ = State::open;
  tell([this](Receiver& receiver) { receiver.onHello(*this); });
  return true;
}

void Link::handleReceived(std::span<unsigned char const> bytes) {
  bytesReceived_ += bytes.size();
  if (recordReceived_) recordReceived_->append(bytes);
}

void Link::handleMessages() {
  std::string wrong;
  Closing::Cause cause{};
  try {
    for (;;) {
      messageAt_ = bytesReceived_ - in_->waiting();
      if (state_ != State::open || !in_->nextMessage()) return;
      handleMessage();
    }
  } catch (ProtocolException const& error) {
    cause = Closing::Cause::protocol;
    wrong = error.what();
  } catch (std::exception const& error) {
    cause = Closing::Cause::receiver;
    wrong = error.what();
  }
  endsFor(cause, "at byte " + std::to_string(messageAt_) + ": " + wrong);
}

void Link::handleMessage() {
  if (in_->messageClass() == kControl) {
    MsgHeader const header = in_->header();
    if (header.entityId.isNull() && header.attrId == kByeCode) return handleBye();
  }
  if (!receiver_) return;
  receiver_->onMessage(*this, *in_);
  if (state_ == State::open) in_->expectEnd();
}

void Link::handleBye() {
  std::string const words = printable(in_->nextString().view());
  endsFor(Closing::Cause::peerSaid, "the peer ended the connection: " + words);
}

void Link::handleNoBytes(IoResult const& result) {
  if (result.is(IoResult::Kind::wouldBlock)) return;
  if (result.is(IoResult::Kind::failed)) return endsFor(Closing::Cause::transport, result.words());
  std::string const how = result.error ? " (" + result.words() + ")" : "";
  std::string const where = state_ == State::hello ? " before its hello was complete"
                            : in_->waiting() > 0
                                ? " in the middle of the message at byte " + std::to_string(messageAt_)
                                : "";
  endsFor(Closing::Cause::peerEnded, "the peer closed the connection" + where + how);
}

// Sending.

void Link::handleCommitted(void* link, Out&) { static_cast<Link*>(link)->handleCommitted(); }

void Link::handleCommitted() {
  if (!out_->hasSufficientBuffer()) isRoomOwed_ = true;
  if ((isImmediate_ && !isBlocked_) || out_->pendingBytes() >= flushAt_) flush();
}

std::span<unsigned char const> Link::framesToSend() const {
  return state_ == State::open || isSayingBye_ ? out_->pending() : std::span<unsigned char const>();
}

// Sends until nothing is left or the stream takes no more.
void Link::flush() {
  if (isFlushing_ || isUnsendable_) return;
  Ptr<Link> const self(this);
  isFlushing_ = true;
  while (flushOnce()) {
  }
  isFlushing_ = false;
  flushAt_ = out_->pendingBytes() + options_.streamAt;
}

// RETURNS whether there may be more to send, and the stream may take it.
bool Link::flushOnce() {
  if (!transport_) return false;
  auto const hello = helloLeft();
  auto const frames = framesToSend();
  std::size_t const size = hello.size() + frames.size();
  if (size == 0) return false;
  IoResult const result = hello.empty() ? transport_->write(frames) : transport_->write(hello, frames);
  // Over a pipe, the peer has received meanwhile, and may have ended this link.
  if (!transport_) return false;
  if (result.is(IoResult::Kind::bytes)) handleSent(result.count);
  if (result.is(IoResult::Kind::closed) || result.is(IoResult::Kind::failed)) handleUnsendable(result);
  isBlocked_ = !isUnsendable_ && result.count < size && !transport_->isWritable();
  return !isBlocked_ && !isUnsendable_;
}

void Link::handleSent(std::size_t bytes) {
  bytesSent_ += bytes;
  auto const hello = helloLeft();
  std::size_t const ofHello = std::min(bytes, hello.size());
  std::size_t const ofFrames = bytes - ofHello;
  if (recordSent_) {
    recordSent_->append(hello.first(ofHello));
    recordSent_->append(out_->pending().first(ofFrames));
  }
  helloSent_ += ofHello;
  out_->consumed(ofFrames);
}

void Link::handleUnsendable(IoResult const& result) {
  if (result.is(IoResult::Kind::failed)) endsFor(Closing::Cause::transport, result.words());
  isUnsendable_ = true;
  out_->connectedIs(false);
}

void Link::sendAndMakeRoom() {
  std::uint64_t const limit = bytesSent_ + options_.sendBudget;
  for (unsigned i = 0; i < kMaxRooms && state_ < State::ending; ++i) {
    if (!isBlocked_) flush();
    if (isUnsendable_ || state_ != State::open || !roomIsDue() || bytesSent_ >= limit) break;
    isRoomOwed_ = false;
    tell([this](Receiver& receiver) { receiver.onRoom(*this); });
  }
  if (isUnsendable_) readRest();
}

// Ending.

void Link::endsFor(Closing::Cause cause, std::string const& words) {
  if (state_ >= State::ending) return;
  closing_ = {cause, peerName_ + ": " + words};
  // What was written for a peer that never was understood is not sent.
  if (state_ == State::hello) out_->consumed(out_->pendingBytes());
  state_ = State::ending;
}

void Link::sayBye() {
  out_->committedHookIs(nullptr, nullptr);
  out_->abandon();
  std::string_view const words = std::string_view(closing_.words).substr(peerName_.size() + 2);
  try {
    sendControl(kByeCode, [&](Ptr<Out> const& out) { out << String8(words.substr(0, kMaxWords)); });
  } catch (Exception const&) {
    // Messages may be limited to less than the words take.
  }
  isSayingBye_ = true;
  flush();
  isSayingBye_ = false;
  transport_->writeEnds();
}

void Link::close() {
  ++depth_;
  bool const hears = closing_.cause != Closing::Cause::peerEnded &&
                     closing_.cause != Closing::Cause::peerSaid &&
                     closing_.cause != Closing::Cause::transport;
  if (hears && !isUnsendable_) sayBye();
  out_->committedHookIs(nullptr, nullptr);
  out_->connectedIs(false);
  state_ = State::ended;
  transport_.reset();
  wake_ = nullptr;
  --depth_;
  if (Receiver* const receiver = std::exchange(receiver_, nullptr)) receiver->onClosed(*this, closing_);
}

} // namespace Vyx::NboAttrLog
