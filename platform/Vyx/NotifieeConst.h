// The root of all reactors: objects that are told of changes.

#pragma once

#include "Vyx/BitSet.h"
#include "Vyx/Ptr.h"
#include "Vyx/String8.h"

namespace Vyx {

class PtrInterface::NotifieeConst : public PtrInterface {
public:
  // ORDER: the slots of this table are relied on by every derived class. All default bodies do nothing, but
  // where said otherwise.

  // What stands behind this reactor: itself, or the stream adapter that it works for.
  virtual Ptr<PtrInterface const> vyxReactor() const;
  virtual PtrInterface const* vyxRawReactor() const;
  virtual bool isStreamAdapter() const;

  // Enters this reactor in its notifier's list, or takes it out. An unregistered reactor hears nothing.
  virtual void isRegisteredNotifieeIs(bool registered) const;
  virtual void vyx_bitSetIs(Vyx_BitSet flags);
  // The notifier's name, or the empty text.
  virtual String8 name() const;
  // A null pointer, or one to an entity of another type, leaves the reactor unattached.
  virtual void notifierIs(Ptr<PtrInterface const> const& notifier);

  virtual void handleNotification(ActivityConfig* activity);
  virtual void handleDefault(ActivityConfig* activity, AttributeId id, bool immediate);
  virtual void onAttribute(AttributeId id);
  virtual void onNotification();
  virtual void onCollectionNotification(String8 attribute);
  virtual void onNotificationException();
  // Called when this reactor's own entry for the attribute threw. What is thrown from here ends the round and
  // reaches the caller of the setter. The default passes on to handleNotificationException(id).
  virtual void onNotificationException(AttributeId id);
  // The default passes on to handleNotificationException().
  virtual void handleNotificationException(AttributeId id);
  // The default passes on to onNotificationException().
  virtual void handleNotificationException();
  virtual void onZeroReferences();
  virtual Activity* activityPtr() const;
  virtual Activity* vyxFwkActivity();
  virtual Activity const* vyxFwkActivity() const;
  virtual void actsm();

  ~NotifieeConst() override;

  Vyx_BitSet vyx_bitSet() const { return bitSet_; }

  // RETURNS whether the notification ends here, as it does for an object marked for deletion. Else the rest
  // is asked for: actsm(), then onAttribute(id).
  bool vyxOnAttribute(AttributeId id, void const* key);

protected:
  NotifieeConst() = default;

  Vyx_BitSet& vyxBits() { return bitSet_; }

private:
  Vyx_BitSet bitSet_;
};

} // namespace Vyx
