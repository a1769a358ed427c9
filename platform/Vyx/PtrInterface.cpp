#include "Vyx/PtrInterface.h"

#include "Vyx/ReactorSnapshot.h"

namespace Vyx {

PtrInterface::~PtrInterface() = default;

void PtrInterface::hasNotificationActiveIs(bool active) {
  word_ = active ? word_ | kNotificationActive : word_ & ~kNotificationActive;
}

void PtrInterface::vyxAuditErrors(unsigned depth) const { auditErrors(depth); }

void PtrInterface::auditErrors(unsigned) const {}

void PtrInterface::isNondestructingIs(bool value) {
  if (value) {
    word_ |= kNondestructing;
    return;
  }
  word_ &= ~kNondestructing;
  if ((word_ & kZeroMask) == 0) handleZeroRef();
}

void PtrInterface::zeroReferencesIs(bool) {}

VyxType const* PtrInterface::fwkType() const { return nullptr; }

void PtrInterface::vyxMarkedForDeletionIs(bool marked) const {
  word_ = marked ? word_ | kMarkedForDeletion : word_ & ~kMarkedForDeletion;
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
