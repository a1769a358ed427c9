// Everything that is counted: one 32-bit reference word beside the table of virtual operations.
//
// Invariants:
// (1) Bits 0 to 28 of the word count the holders. An object is born with count 1, which belongs to its maker.
// (2) Bit 29: `hasNotificationActive`. Bit 30: the object is being destroyed, the word never reads as zero
//     again. Bit 31: marked for deletion.
// (3) The object is non-destructing exactly when the top byte of the word is 0x1f: the count then stands so
//     high that it can't reach zero.

#pragma once

#include "Vyx/Count.h"
#include "Vyx/Fwd.h"

namespace Vyx {

class PtrInterface : public VFPtrInterface {
public:
  class NotifieeConst;

  static constexpr std::uint32_t kCountMask = 0x1fffffffU;
  static constexpr std::uint32_t kNotificationActive = 1U << 29;
  static constexpr std::uint32_t kDestroying = 1U << 30;
  static constexpr std::uint32_t kMarkedForDeletion = 1U << 31;
  static constexpr std::uint32_t kZeroMask = kCountMask | kDestroying;
  static constexpr std::uint32_t kNondestructing = 0x1f000000U;

  PtrInterface(PtrInterface const&) = delete;
  PtrInterface& operator=(PtrInterface const&) = delete;

  // ORDER: the slots of this table are relied on by every derived class.
  virtual void hasNotificationActiveIs(bool active);
  virtual void vyxAuditErrors(unsigned depth) const;
  virtual void auditErrors(unsigned depth) const;
  virtual void isNondestructingIs(bool value);
  virtual void zeroReferencesIs(bool value);
  virtual VyxType const* fwkType() const;
  virtual ~PtrInterface();

  bool hasNotificationActive() const { return word_ & kNotificationActive; }
  bool isNondestructing() const { return (word_ >> 24) == (kNondestructing >> 24); }
  bool vyxMarkedForDeletion() const { return word_ & kMarkedForDeletion; }
  void vyxMarkedForDeletionIs(bool marked) const;

  // The whole word, for those who look at its bits.
  std::uint32_t vyxReferenceWord() const { return word_; }
  std::uint32_t references() const { return word_ & kCountMask; }

  void vyxReferenceInc() const { countRaise(word_); }
  void vyxReferenceDec() const {
    if ((countLower(word_) & kZeroMask) == 0) handleZeroRef();
  }

  // Called when the word reads zero references: destroys the object, unless a running notification round
  // still has it before it and takes a hold on it now.
  void handleZeroRef() const;

protected:
  PtrInterface() = default;

private:
  mutable std::uint32_t word_ = 1;
};

} // namespace Vyx
