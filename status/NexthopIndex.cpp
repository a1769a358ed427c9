#include "Pbr/NexthopIndex.h"

#include "Vyx/NboAttrLog/ValueCodec.h"

#include <ostream>

namespace Pbr {

namespace {

unsigned long long readValue(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end) {
  try {
    return Vyx::sequenceToValue<unsigned long long>(begin, end);
  } catch (Vyx::RangeException const& error) {
    Vyx::rethrowFromDeserializeAttr(error, "value");
  }
}

} // namespace

NexthopIndex::NexthopIndex(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end)
    : value_(readValue(begin, end)) {}

Vyx::String8 valueToStrep(NexthopIndex const& index) { return Vyx::valueToStrep(index.value()); }

std::ostream& operator<<(std::ostream& out, NexthopIndex const& index) { return out << valueToStrep(index); }

NexthopIndex::NexthopIndex(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : value_(in->nextU64()) {}

Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                 NexthopIndex const& index) {
  return out << index.value();
}

} // namespace Pbr
