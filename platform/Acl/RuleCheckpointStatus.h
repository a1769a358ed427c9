// What a checkpoint holds of one rule: how many packets it had matched, in two words. The default is zero.

#pragma once

#include "Vyx/NboAttrLog/In.h"
#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/Strep.h"

#include <compare>
#include <cstdint>

namespace Acl {

class RuleCheckpointStatus {
public:
  RuleCheckpointStatus() = default;
  RuleCheckpointStatus(std::uint32_t pktMatchHigh, std::uint32_t pktMatchLow)
      : pktMatchHigh_(pktMatchHigh), pktMatchLow_(pktMatchLow) {}
  RuleCheckpointStatus(Vyx::NboAttrLog::In* in, Vyx::StreamBogon) : RuleCheckpointStatus(in->nextU64()) {}

  std::uint32_t pktMatchHigh() const { return pktMatchHigh_; }
  std::uint32_t pktMatchLow() const { return pktMatchLow_; }
  unsigned long long pktMatch() const {
    return static_cast<unsigned long long>(pktMatchHigh_) << 32 | pktMatchLow_;
  }

  friend bool operator==(RuleCheckpointStatus const& x, RuleCheckpointStatus const& y) {
    return x.pktMatch() == y.pktMatch();
  }
  friend std::strong_ordering operator<=>(RuleCheckpointStatus const& x, RuleCheckpointStatus const& y) {
    return x.pktMatch() <=> y.pktMatch();
  }

  // On the log: the high word, then the low one.
  static constexpr std::size_t kLogBytes = 8;
  void toLog(unsigned char* to) const {
    Vyx::NboAttrLog::storeNetwork(to, static_cast<std::uint64_t>(pktMatch()));
  }

  static Vyx::VyxType const* _fwkType();

private:
  explicit RuleCheckpointStatus(unsigned long long pktMatch)
      : RuleCheckpointStatus(static_cast<std::uint32_t>(pktMatch >> 32),
                             static_cast<std::uint32_t>(pktMatch)) {}

  std::uint32_t pktMatchHigh_ = 0;
  std::uint32_t pktMatchLow_ = 0;
};
static_assert(sizeof(RuleCheckpointStatus) == 8 && alignof(RuleCheckpointStatus) == 4);

// The count in plain decimal.
Vyx::String8 valueToStrep(RuleCheckpointStatus const& status);
RuleCheckpointStatus sequenceToValue(Vyx::StrepIterator8& at, Vyx::StrepIterator8 const& end,
                                     RuleCheckpointStatus*);
std::ostream& operator<<(std::ostream& out, RuleCheckpointStatus const& status);

inline Vyx::Ptr<Vyx::NboAttrLog::Out> const& operator<<(Vyx::Ptr<Vyx::NboAttrLog::Out> const& out,
                                                        RuleCheckpointStatus const& status) {
  out->put(status);
  return out;
}

} // namespace Acl
