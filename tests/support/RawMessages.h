// Messages of an attribute log as whoever likes may write them, right or wrong.

#pragma once

#include "Vyx/NboAttrLog/Frame.h"
#include "Vyx/NboAttrLog/Hello.h"
#include "Vyx/NboAttrLog/Peer.h"

#include <string>

class RawMessages {
public:
  using AttributeId = Vyx::AttributeId;
  using EntityId = Vyx::EntityId;
  using Out = Vyx::NboAttrLog::Out;

  static std::string hello() {
    auto const bytes = Vyx::NboAttrLog::Hello().bytes();
    return {bytes.begin(), bytes.end()};
  }
  // The bytes of what was written to `out`.
  std::string taken() {
    auto const bytes = out->pending();
    std::string const all(bytes.begin(), bytes.end());
    out->consumed(all.size());
    return all;
  }

  template <class Write>
  void message(EntityId const& id, AttributeId aid, std::uint32_t kind, Write const& write) {
    out->nextHeaderIs({id, aid, true, 0, kind, 0});
    out << Out::kTransactBegin;
    write();
    out << Out::kTransactEnd;
  }
  template <class Write> void control(AttributeId code, Write const& write) {
    message(EntityId(), code, Vyx::NboAttrLog::kControl, write);
  }
  void orphan(char const* type, EntityId const& id) {
    message(Vyx::kOrphanEntityId, Vyx::NboAttrLog::kOrphanAttrId, Vyx::NboAttrLog::kPlain, [&] {
      out->currentPayloadSectionIs(Out::kTypeNames);
      out << Vyx::String8(type);
      out->currentPayloadSectionIs(Out::kConstructorValues);
      out << Vyx::String8("pbr");
      out->currentPayloadSectionIs(Out::kEntityIdSection);
      out << id;
    });
  }
  void bringRoot(char const* path, char const* type, EntityId const& id) {
    control(Vyx::NboAttrLog::kRootCode, [&] { out << Vyx::String8(path); });
    orphan(type, id);
  }
  template <class... Values>
  void child(EntityId const& parent, AttributeId aid, EntityId const& id, Values const&... values) {
    message(parent, aid, Vyx::NboAttrLog::kChildAnnouncement, [&] {
      (put(values), ...);
      out << id;
    });
  }
  void put(char const* text) { out << Vyx::String8(text); }
  template <class T> void put(T const& value) { out->put(value); }
  void scalar(EntityId const& id, AttributeId aid, bool value) {
    out->nextHeaderIs({id, aid, false, 1, Vyx::NboAttrLog::kPlain, 0});
    out << Out::kTransactBegin << value << Out::kTransactEnd;
  }
  void mount(char const* path, unsigned char mode) {
    control(Vyx::NboAttrLog::kMountCode, [&] { out << Vyx::String8(path) << mode; });
  }

  Vyx::Ptr<Out> out = Vyx::ptrFromNew(new Out);
};
