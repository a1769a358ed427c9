#include "pbrctl/LogDump.h"

#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/NboAttrLog/Frame.h"
#include "Vyx/NboAttrLog/Hello.h"
#include "Vyx/NboAttrLog/Link.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "Vyx/NboAttrLog/TextPieceFlags.h"
#include "Vyx/StreamAdapter.h"
#include "Vyx/TypeOf.h"
#include "pbrctl/Attributes.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/LogValues.h"

#include <algorithm>
#include <cstring>
#include <ostream>

namespace Pbrctl {

using namespace Vyx::NboAttrLog;
using Vyx::EntityId;
using Vyx::StreamAdapter;
using Vyx::VyxAttr;
using Vyx::VyxType;

namespace {

constexpr std::size_t kShownBytes = 8;
constexpr std::size_t kSectionHead = 4;

std::string textOf(Vyx::Name const& name) { return std::string(name.view()); }
std::string hex(unsigned long long number) { return Vyx::format("0x%llx", number).charPtr(); }
std::string nameOf(VyxType const* type) { return type ? textOf(type->fullTypeName()) : "unknown type"; }

char const* markerName(unsigned type) {
  switch (type) {
  case StreamAdapter::attrTransactionBegin:
    return "begin";
  case StreamAdapter::attrTransactionAbort:
    return "abort";
  case StreamAdapter::attrTransactionEnd:
    return "end";
  }
  return "unknown";
}

char const* syncModeName(unsigned mode) {
  switch (mode) {
  case StreamAdapter::syncModeNone:
    return "none";
  case StreamAdapter::syncModeLive:
    return "live: the other side has everything";
  case StreamAdapter::syncModeFull:
    return "full: everything is being sent";
  }
  return "unknown";
}

char const* controlName(Vyx::AttributeId code) {
  switch (code) {
  case kByeCode:
    return "bye";
  case kMountCode:
    return "mount";
  case kRootCode:
    return "root";
  case kRefusedCode:
    return "refused";
  case kProbeCode:
    return "probe";
  case kAnswerCode:
    return "answer";
  case kHeardCode:
    return "heard";
  }
  return "unknown";
}

} // namespace

LogDump::LogDump(std::span<unsigned char const> bytes, std::ostream& out)
    : bytes_(bytes), out_(out), in_(kDefaultCapacity, kLargestMaxLength) {}

std::string LogDump::run() {
  std::size_t at = 0;
  try {
    hello();
    at = Hello::kBytes;
    for (std::size_t given = at; at < bytes_.size();) {
      std::span<unsigned char> const room = in_.space();
      std::size_t const count = std::min(room.size(), bytes_.size() - given);
      std::copy_n(bytes_.data() + given, count, room.data());
      in_.received(count);
      given += count;
      while (in_.nextMessage()) {
        payloadAt_ = at + kPayloadOffset;
        message();
        at += kFrameBytes + in_.payloadBytes();
      }
      if (given == bytes_.size()) break;
    }
  } catch (Vyx::Exception const& e) {
    return "at byte " + std::to_string(at) + ": " + e.what();
  }
  if (at == bytes_.size()) return {};
  return "at byte " + std::to_string(at) + ": the recording ends within a message";
}

void LogDump::line(std::size_t offset, std::size_t count, std::string const& name, std::string const& value,
                   std::string const& meaning) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string shown;
  for (std::size_t i = 0; i < std::min(count, kShownBytes); ++i) {
    unsigned char const byte = bytes_[offset + i];
    (shown += kHex[byte >> 4]) += kHex[byte & 15];
    shown += i + 1 == kShownBytes && count > kShownBytes ? '+' : ' ';
  }
  shown.resize(3 * kShownBytes + 1, ' ');
  std::string text = Vyx::format("%08llx", static_cast<unsigned long long>(offset)).charPtr();
  text += "  " + shown + " " + name;
  text.resize(std::max(text.size(), std::size_t{60}), ' ');
  text += "  " + value;
  if (!meaning.empty()) text += "   (" + meaning + ")";
  out_ << text << '\n';
}

void LogDump::hello() {
  auto const start = bytes_.first(std::min(bytes_.size(), Hello::kBytes));
  if (auto const words = Hello::refusal(start); !words.empty()) Vyx::throwProtocolException(words);
  if (start.size() < Hello::kBytes) Vyx::throwProtocolException("the recording ends within the hello");
  Hello const hello = Hello::fromBytes(start);
  line(0, 8, "magic", "VyxLog");
  line(8, 4, "version", hello.version.text());
  line(12, 4, "features", hex(hello.features));
}

void LogDump::message() {
  MsgHeader const header = in_.header();
  std::size_t const start = payloadAt_ - kPayloadOffset;
  out_ << '\n';
  line(start, kLengthBytes, "length", std::to_string(kHeaderBytes + in_.payloadBytes()));
  bool const isRuntimes = header.messageClass == kControl;
  line(start + 3, 8, "entity id", hex(header.entityId.value()),
       isRuntimes                                ? "the connection"
       : header.entityId == Vyx::kOrphanEntityId ? "an orphan"
                                                 : nameOf(typeOf(header.entityId)));
  line(start + 11, 4, "attribute id", std::to_string(header.attrId), meaningOf(header));
  char const* const kind = isRuntimes                                  ? "control"
                           : header.messageClass == kTransactionMarker ? "transaction marker"
                           : header.messageClass == kChildAnnouncement ? "announcement of a child"
                                                                       : "plain";
  line(start + 15, 1, "form", kind,
       header.variableLength ? "variable length" : "fixed length " + std::to_string(header.fixedLength));
  payload(header);
  if (in_.remaining() != 0) rest("rest");
  line(payloadAt_ + in_.payloadBytes(), kChecksumBytes, "checksum", "right");
}

std::string LogDump::meaningOf(MsgHeader const& header) const {
  if (header.messageClass == kControl) return controlName(header.attrId);
  if (header.attrId == kOrphanAttrId) return "an entity without parent is announced";
  if (header.attrId == -kOrphanAttrId) return "the entity is no more";
  if (header.attrId == Vyx::kSyncModeId) return "sync mode";
  VyxType const* const type = typeOf(header.entityId);
  VyxAttr const* const attr = type ? type->attr(std::abs(header.attrId)) : nullptr;
  if (!attr) return "unknown";
  return textOf(attr->name()) + (header.attrId < 0 ? " is removed" : "");
}

void LogDump::payload(MsgHeader const& header) {
  if (header.messageClass == kControl) return control(header.attrId);
  if (header.messageClass == kTransactionMarker) return transaction();
  if (header.entityId == Vyx::kOrphanEntityId && header.attrId == kOrphanAttrId) return orphan();
  if (header.attrId == Vyx::kSyncModeId) {
    field("mode", [](In& in) {
      unsigned const mode = in.nextU32();
      return std::pair(std::to_string(mode), std::string(syncModeName(mode)));
    });
    return;
  }
  attribute(header);
}

template <class Read> std::string LogDump::field(std::string const& name, Read read) {
  std::size_t const start = in_.position();
  std::pair<std::string, std::string> const shown = read(in_);
  line(payloadAt_ + start, in_.position() - start, name, shown.first, shown.second);
  return shown.first;
}

void LogDump::number64(std::string const& name) {
  field(name, [](In& in) { return std::pair(std::to_string(in.nextU64()), std::string()); });
}

void LogDump::text(std::string const& name) {
  field(name, [](In& in) { return std::pair(inQuotes(in.nextString().view()), std::string()); });
}

void LogDump::rest(std::string const& name) {
  std::size_t const start = in_.position();
  std::size_t const count = in_.remaining();
  in_.remainingSkip();
  line(payloadAt_ + start, count, name, std::to_string(count) + " bytes", "unknown");
}

void LogDump::value(std::string const& name, VyxType const* type) {
  if (!type) return rest(name);
  std::size_t const start = in_.position();
  auto const read = readLogValue(*type, in_);
  if (!read) return rest(name);
  line(payloadAt_ + start, in_.position() - start, name, escaped(*read), nameOf(type));
}

void LogDump::entityId(std::string const& name, VyxType const* type) {
  field(name, [&](In& in) {
    EntityId const id = in.nextEntityId();
    if (type) types_[id.value()] = type;
    return std::pair(hex(id.value()), id.isNull() ? "none" : nameOf(typeOf(id)));
  });
}

void LogDump::control(Vyx::AttributeId code) {
  switch (code) {
  case kByeCode:
    return text("words");
  case kRootCode:
    return text("path");
  case kRefusedCode:
    text("path");
    return text("words");
  case kProbeCode:
  case kAnswerCode:
  case kHeardCode:
    return number64("number");
  case kMountCode:
    text("path");
    field("mode", [](In& in) {
      unsigned const mode = in.nextU8();
      return std::pair(std::to_string(mode), std::string(wordOf(static_cast<MountMode>(mode))));
    });
    return;
  default:
    return;
  }
}

void LogDump::transaction() {
  field("marker", [](In& in) {
    unsigned const type = in.nextU32();
    return std::pair(std::to_string(type), std::string(markerName(type)));
  });
  field("count", [](In& in) { return std::pair(std::to_string(in.nextU32()), std::string()); });
}

// Sections are read by hand, so that their heads are shown, too.
std::uint8_t LogDump::section(std::size_t& end) {
  std::size_t const start = in_.position();
  unsigned const number = in_.nextU8();
  std::size_t const high = in_.nextU8();
  std::size_t const length = high << 16 | in_.nextU16();
  line(payloadAt_ + start, kSectionHead, "section", std::to_string(number),
       std::to_string(length) + " bytes");
  end = in_.position() + length;
  if (length > in_.remaining()) Vyx::throwProtocolException("a section reaches beyond its message");
  return static_cast<std::uint8_t>(number);
}

void LogDump::orphan() {
  orphanType_ = nullptr;
  while (in_.remaining() != 0) {
    std::size_t end = 0;
    std::uint8_t const number = section(end);
    std::size_t const more = in_.bounded(end - in_.position());
    if (number == Out::kTypeNames)
      typeNames();
    else if (number == Out::kConstructorValues)
      constructorValues();
    else if (number == Out::kEntityIdSection)
      entityId("entity id", orphanType_);
    if (in_.remaining() != 0) rest("rest");
    in_.unbounded(more);
  }
}

void LogDump::typeNames() {
  while (in_.remaining() != 0) {
    std::string const name = field("type", [](In& in) {
      std::string text(in.nextString().view());
      VyxType const* const type = VyxType::typeByName(Vyx::Name(text));
      return std::pair(std::move(text), std::string(type ? "" : "unknown here"));
    });
    if (!orphanType_) orphanType_ = VyxType::typeByName(Vyx::Name(name));
  }
}

void LogDump::constructorValues() {
  if (!orphanType_) return;
  auto const& names = orphanType_->constructorArgNameQ();
  auto const& types = orphanType_->constructorArgTypeQ();
  for (std::size_t i = 0; i < names.size() && in_.remaining() != 0; ++i)
    value(textOf(names[i]), VyxType::typeByName(types[i]));
}

void LogDump::announcement(VyxAttr const& attr) {
  for (VyxAttr::Argument const& argument : attr.arguments())
    value(textOf(argument.name), VyxType::typeByName(argument.type));
  if (in_.remaining() != 0) entityId("entity id", attr.valueType());
}

void LogDump::attribute(MsgHeader const& header) {
  VyxType const* const type = typeOf(header.entityId);
  VyxAttr const* const attr = type ? type->attr(std::abs(header.attrId)) : nullptr;
  if (!attr) return;
  if (header.messageClass == kChildAnnouncement) return announcement(*attr);
  if (isKeyed(*attr)) value("key", &keyTypeOf(*attr));
  if (header.attrId < 0) return;
  if (isReference(*attr))
    entityId("entity id", nullptr);
  else if (attr->valueType() == Vyx::typeOf<Vyx::String8>() && !isKeyed(*attr))
    textPiece();
  else
    value("value", attr->valueType());
}

// An empty text has nothing at all.
void LogDump::textPiece() {
  if (in_.remaining() == 0) return;
  field("flags", [](In& in) {
    unsigned const flags = in.nextU8();
    return std::pair(std::to_string(flags), std::string(flags & kFirstPiece ? "the first" : "goes on") +
                                                (flags & kMoreFollow ? ", more follow" : ", the last"));
  });
  field("run", [](In& in) {
    std::string run(in.remaining(), '\0');
    in.bytesTo(run.data(), run.size());
    return std::pair(inQuotes(run), std::string());
  });
}

VyxType const* LogDump::typeOf(EntityId const& id) const {
  auto const found = types_.find(id.value());
  return found == types_.end() ? nullptr : found->second;
}

} // namespace Pbrctl
