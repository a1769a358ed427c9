#include "Vyx/NotifieeConst.h"

namespace Vyx {

PtrInterface::NotifieeConst::~NotifieeConst() = default;

Ptr<PtrInterface const> PtrInterface::NotifieeConst::vyxReactor() const { return this; }
PtrInterface const* PtrInterface::NotifieeConst::vyxRawReactor() const { return this; }
bool PtrInterface::NotifieeConst::isStreamAdapter() const { return false; }
void PtrInterface::NotifieeConst::isRegisteredNotifieeIs(bool) const {}
void PtrInterface::NotifieeConst::vyx_bitSetIs(Vyx_BitSet flags) { bitSet_ = flags; }
String8 PtrInterface::NotifieeConst::name() const { return {}; }
void PtrInterface::NotifieeConst::notifierIs(Ptr<PtrInterface const> const&) {}
void PtrInterface::NotifieeConst::handleNotification(ActivityConfig*) {}
void PtrInterface::NotifieeConst::handleDefault(ActivityConfig*, AttributeId, bool) {}
void PtrInterface::NotifieeConst::onAttribute(AttributeId) {}
void PtrInterface::NotifieeConst::onNotification() {}
void PtrInterface::NotifieeConst::onCollectionNotification(String8) {}
void PtrInterface::NotifieeConst::onNotificationException() {}
void PtrInterface::NotifieeConst::onNotificationException(AttributeId id) { handleNotificationException(id); }
void PtrInterface::NotifieeConst::handleNotificationException(AttributeId) { handleNotificationException(); }
void PtrInterface::NotifieeConst::handleNotificationException() { onNotificationException(); }
void PtrInterface::NotifieeConst::onZeroReferences() {}
Activity* PtrInterface::NotifieeConst::activityPtr() const { return nullptr; }
Activity* PtrInterface::NotifieeConst::vyxFwkActivity() { return nullptr; }
Activity const* PtrInterface::NotifieeConst::vyxFwkActivity() const { return nullptr; }
void PtrInterface::NotifieeConst::actsm() {}

bool PtrInterface::NotifieeConst::vyxOnAttribute(AttributeId, void const*) { return vyxMarkedForDeletion(); }

} // namespace Vyx
