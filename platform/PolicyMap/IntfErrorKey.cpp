#include "PolicyMap/IntfErrorKey.h"

#include "Vyx/NboAttrLog/ValueCodec.h"

#include <ostream>

namespace PolicyMap {

IntfErrorKey::IntfErrorKey(Lomu::IntfId const& intf, IntfError error) : intf_(intf), error_(error) {}

Vyx::String8 valueToStrep(IntfErrorKey const& key) {
  return key.intf().stringValue() + ":" + stringValue(key.error());
}

IntfErrorKey sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end, IntfErrorKey*) {
  std::string_view const text = Vyx::stretch(at, end);
  std::size_t const colon = text.rfind(':');
  if (colon == text.npos) Vyx::throwBadText("IntfErrorKey", text, "a colon and an error are missing");
  IntfErrorKey const key(Vyx::String8(text.substr(0, colon)),
                         IntfErrorInstance(Vyx::String8(text.substr(colon + 1))));
  at.positionIs(end.position());
  return key;
}

std::ostream& operator<<(std::ostream& out, IntfErrorKey const& key) { return out << valueToStrep(key); }

IntfErrorKey::IntfErrorKey(Vyx::NboAttrLog::In* in, Vyx::StreamBogon bogon)
    : intf_(in, bogon), error_(Vyx::NboAttrLog::read<IntfError>(*in)) {}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 IntfErrorKey const& key) {
  return out << key.intf() << key.error();
}

} // namespace PolicyMap
