#include "Vyx/PtrInterface.h"

#include "Vyx/ReactorSnapshot.h"

namespace Vyx {

PtrInterface::~PtrInterface() = default;

void PtrInterface::hasNotificationActiveIs(bool active) { countBitsIs(word_, kNotificationActive, active); }

void PtrInterface::vyxAuditErrors(unsigned depth) const { auditErrors(depth); }

void PtrInterface::auditErrors(unsigned) const {}

void PtrInterface::isNondestructingIs(bool value) {
  std::uint32_t const word = countBitsIs(word_, kNondestructing, value);
  if ((word & kZeroMask) == 0) handleZeroRef();
}

void PtrInterface::zeroReferencesIs(bool) {}

VyxType const* PtrInterface::fwkType() const { return nullptr; }

void PtrInterface::vyxMarkedForDeletionIs(bool marked) const {
  countBitsIs(word_, kMarkedForDeletion, marked);
}

void PtrInterface::handleZeroRef() const {
  if (ReactorSnapshot::anyActive()) {
    ReactorSnapshot::holdAll();
    if ((word_ & kZeroMask) != 0) return;
  }
  word_ |= kDestroying;
  delete this;
}

} // namespace Vyx
