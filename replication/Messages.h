// The messages that an adapter writes, one function a kind.

#pragma once

#include "Vyx/NboAttrLog/ValueCodec.h"
#include "frame/ChildCollection.h"
#include "replication/Guards.h"

namespace replication {

using Vyx::Connection;
using Vyx::NboAttrLog::MsgHeader;
using Vyx::NboAttrLog::Out;

// One message with a payload of no fixed size.
template <class Payload>
void writeMessage(StreamAdapter& adapter, Vyx::AttributeId aid, std::uint32_t messageClass,
                  Payload const& payload) {
  auto const& out = adapter.nboAttrLogOut();
  out->nextHeaderIs({adapter.entityId(), aid, 1, 0, messageClass, 0});
  out << Connection::Out::kTransactBegin;
  payload(out);
  out << Connection::Out::kTransactEnd;
}

// A message whose values have sizes of their own is written in one go; the bytes are those of the calls one
// by one.
template <class... Values>
void writeWhole(Vyx::Ptr<Out> const& out, MsgHeader const& header, Values const&... values) {
  if constexpr ((Vyx::NboAttrLog::FixedSize<Values> && ...)) {
    out->messageIs(header, values...);
  } else {
    out->nextHeaderIs(header);
    out << Connection::Out::kTransactBegin;
    (Vyx::NboAttrLog::write(out, values), ...);
    out << Connection::Out::kTransactEnd;
  }
}

// What is written about a value is numbered, so that a change of the other side that crosses it is told from
// one that follows it.
template <class Write> void writeNumbered(StreamAdapter& adapter, Write const& write) {
  adapter.vyxBeforeWriting();
  write();
  adapter.vyxWrittenAtIs(adapter.nboAttrLogOut()->messages());
}

template <class Attr, class Sa> void writeScalar(Sa& adapter) {
  auto const header = Vyx::NboAttrLog::scalarHeader<typename Attr::Type>(adapter.entityId(), Attr::id);
  writeNumbered(adapter,
                [&] { writeWhole(adapter.nboAttrLogOut(), header, valueOf<Attr>(entityOf(adapter))); });
}

// The number of an entity on this log; 0 for none.
// THROWS: EntityIdUnavailableException; AttrLogRecordException.
template <class T> unsigned long long numberOf(StreamAdapter& adapter, Vyx::Ptr<T> const& entity) {
  if (!entity) return 0;
  Vyx::Expect const expect(Vyx::kAttrLogRecord);
  return entity->entityId(adapter.nboAttrLogOut(), false, true, true).value();
}

template <class Attr, class Sa> void writeReference(Sa& adapter) {
  auto const number = numberOf(adapter, valueOf<Attr>(entityOf(adapter)));
  writeNumbered(adapter,
                [&] { writeMessage(adapter, Attr::id, 0, [&](auto const& out) { out->put(number); }); });
}

// What stands behind the key: the value, or the number of what is referred to.
template <class Attr>
void writeMember(StreamAdapter& adapter, typename Attr::Key const& key, typename Attr::Type const& value) {
  MsgHeader const header{adapter.entityId(), Attr::id, true, 0, Vyx::NboAttrLog::kPlain, 0};
  auto const write = [&](auto const& behind) {
    writeNumbered(adapter, [&] { writeWhole(adapter.nboAttrLogOut(), header, key, behind); });
  };
  if constexpr (kKind<Attr> == Kind::references)
    write(numberOf(adapter, value));
  else
    write(value);
}

// A member, or a keyed child, that is there no more.
template <class Attr> void writeRemoval(StreamAdapter& adapter, typename Attr::Key const& key) {
  writeNumbered(adapter, [&] {
    writeMessage(adapter, -Attr::id, 0, [&](auto const& out) { Vyx::NboAttrLog::write(out, key); });
  });
}

// A single child that is there no more.
template <class Attr> void writeRemoval(StreamAdapter& adapter) {
  auto const& out = adapter.nboAttrLogOut();
  out->nextHeaderIs({adapter.entityId(), -Attr::id, 0, 0, 0, 0});
  out << Connection::Out::kTransactBegin << Connection::Out::kTransactEnd;
}

// With what the other side makes a child: the values that the attribute's setter takes, in order.
template <class Attr> auto constructorValues(typename Attr::ChildType const& child) {
  auto all = Attr::ChildType::vyxParameters(child);
  if constexpr (frame::NamesItsMembers<Attr>)
    return std::apply([](auto const&, auto const&... rest) { return std::tuple(rest...); }, all);
  else
    return all;
}

template <class Values> void writeValues(Vyx::Ptr<Out> const& out, Values const& values) {
  std::apply([&](auto const&... value) { (Vyx::NboAttrLog::write(out, value), ...); }, values);
}

template <class Attr>
void writeAnnouncement(StreamAdapter& adapter, typename Attr::ChildType const& child,
                       Vyx::EntityId const& id) {
  writeMessage(adapter, Attr::id, Vyx::NboAttrLog::kChildAnnouncement, [&](auto const& out) {
    writeValues(out, constructorValues<Attr>(child));
    out << id;
  });
}

} // namespace replication
