// A recorded direction of an attribute log, a field a line: offset, bytes, field, value, meaning.
//
// What the numbers mean is learnt from the recording itself: an orphan and the announcement of a child say of
// which type an entity is, and the type's record names its attributes.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/VyxType.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <span>
#include <string>

namespace Pbrctl {

class LogDump {
public:
  LogDump(std::span<unsigned char const> bytes, std::ostream& out);

  // RETURNS what is wrong with the bytes; empty when all of them were shown.
  std::string run();

private:
  using In = Vyx::NboAttrLog::In;
  using Type = Vyx::VyxType;

  void hello();
  void message();
  void payload(Vyx::NboAttrLog::MsgHeader const& header);
  void control(Vyx::AttributeId code);
  void transaction();
  void orphan();
  void constructorValues();
  void attribute(Vyx::NboAttrLog::MsgHeader const& header);
  void announcement(Vyx::VyxAttr const& attr);
  void textPiece();
  std::uint8_t section(std::size_t& end);
  void typeNames();

  // A line for `count` bytes from that place of the recording.
  void line(std::size_t offset, std::size_t count, std::string const& field, std::string const& value,
            std::string const& meaning = {});
  // Reads one field of the payload and shows it; `read` answers with value and meaning. RETURNS the value.
  template <class Read> std::string field(std::string const& name, Read read);
  void value(std::string const& name, Type const* type);
  void entityId(std::string const& name, Type const* type);
  void rest(std::string const& name);
  void number64(std::string const& name);
  void text(std::string const& name);
  Type const* typeOf(Vyx::EntityId const& id) const;
  std::string meaningOf(Vyx::NboAttrLog::MsgHeader const& header) const;

  std::span<unsigned char const> bytes_;
  std::ostream& out_;
  In in_;
  std::size_t payloadAt_ = 0;                       // Where the payload of the current message begins.
  std::map<unsigned long long, Type const*> types_; // By entity id.
  Type const* orphanType_ = nullptr;
};

} // namespace Pbrctl
