#include "Pbr/Dscp.h"

#include <ostream>

namespace Pbr {

namespace {

unsigned char readValue(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end) {
  try {
    return Vyx::sequenceToValue<unsigned char>(begin, end);
  } catch (Vyx::RangeException const& error) {
    Vyx::rethrowFromDeserializeAttr(error, "value");
  }
}

} // namespace

Dscp::Dscp(Vyx::StrepIterator8& begin, Vyx::StrepIterator8 const& end) { store(readValue(begin, end)); }

void Dscp::throwOutOfRange() {
  Vyx::throwRangeException("Dscp::value < Dscp::min or > Dscp::invalid not allowed");
}

Vyx::String8 valueToStrep(Dscp const& dscp) {
  return Vyx::valueToStrep(static_cast<unsigned long long>(dscp.value()));
}

std::ostream& operator<<(std::ostream& out, Dscp const& dscp) { return out << valueToStrep(dscp); }

} // namespace Pbr
