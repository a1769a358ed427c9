#include "OneLog.h"

#include <algorithm>

namespace replication_test {

namespace {

constexpr Vyx::AttributeId kFiller = 0x7777;

void tell(std::string& text, In& in) {
  auto const header = in.header();
  if (header.attrId == kFiller) return;
  if (!text.empty()) text += ' ';
  text += std::to_string(header.attrId);
  if (header.messageClass == kChildAnnouncement) text += '+';
  if (header.messageClass == kTransactionMarker) text += '.' + std::to_string(in.nextU32());
}

} // namespace

LogEnd::LogEnd(Demuxer::Side side, std::size_t capacity)
    : out(Vyx::ptrFromNew(new Out(capacity))), in(Vyx::ptrFromNew(new In)),
      demuxer(Vyx::ptrFromNew(new Demuxer(out, in, side))) {}

LogEnd::~LogEnd() { demuxer->close(); }

Bytes LogEnd::sent() {
  auto const pending = out->pending();
  Bytes bytes(pending.begin(), pending.end());
  out->consumed(bytes.size());
  return bytes;
}

std::string LogEnd::told() {
  LogEnd other(Demuxer::connecting);
  other.receive(sent());
  std::string text;
  while (other.in->nextMessage()) tell(text, *other.in);
  return text;
}

void LogEnd::fill() {
  while (out->hasSufficientBuffer())
    out->messageIs({Vyx::kOrphanEntityId, kFiller, false, 8}, std::uint64_t{0});
}

void LogEnd::allow(int messages) {
  allowed_ = messages;
  demuxer->throttleIs([](void* context) { return (*static_cast<int*>(context))-- > 0; }, &allowed_);
}

void LogEnd::receive(std::span<unsigned char const> bytes) {
  while (!bytes.empty()) {
    auto const space = in->space();
    std::size_t const some = std::min(space.size(), bytes.size());
    ASSERT_NE(0U, some);
    std::copy_n(bytes.begin(), some, space.begin());
    in->received(some);
    bytes = bytes.subspan(some);
  }
}

void LogEnd::message(std::string_view hexOfHeaderAndPayload) {
  receive(frameOf(hexOfHeaderAndPayload));
  ASSERT_TRUE(in->nextMessage());
}

void LogEnd::apply() {
  while (in->nextMessage()) {
    auto const header = in->header();
    if (header.attrId == kFiller) continue;
    Ptr<StreamAdapter> const adapter(demuxer->reactor(header.entityId));
    ASSERT_TRUE(adapter) << "attribute " << header.attrId;
    if (header.messageClass == kTransactionMarker) {
      auto const type = static_cast<StreamAdapter::AttrTransactionType>(in->nextU32());
      adapter->handleAttrTransaction(header.attrId, type, in->nextU32());
    } else {
      adapter->handleAttrDeserialization(header.attrId, {}, static_cast<unsigned>(in->payloadBytes()),
                                         nullptr);
    }
  }
}

} // namespace replication_test
