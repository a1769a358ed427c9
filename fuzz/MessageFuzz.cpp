// Gives bytes to the reader of the attribute log, whole and in pieces. It may refuse them by the log's own
// exception or by that of a value, and in no other way; both times it must tell the same. The checksums are
// put right first, since otherwise nothing would come through.

#include "Acl/Acl.h"
#include "Kest/UniqueId.h"
#include "L3/VrfName.h"
#include "Pbr/Dscp.h"
#include "PolicyMap/MatchRule.h"
#include "Vyx/NboAttrLog/Crc32c.h"
#include "Vyx/NboAttrLog/Exceptions.h"
#include "Vyx/NboAttrLog/ValueCodec.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace Vyx::NboAttrLog;
using Bytes = std::vector<unsigned char>;

constexpr std::uint32_t kMaxLength = 4096;

// Every second byte value at the place of a checksum leaves it wrong.
Bytes withChecksums(Bytes bytes) {
  for (std::size_t at = 0; at + kFrameBytes <= bytes.size();) {
    std::size_t const checked = kLengthBytes + loadNetwork24(&bytes[at]);
    if (checked + kChecksumBytes > bytes.size() - at) break;
    unsigned char* const checksum = &bytes[at + checked];
    if (*checksum % 2 == 0) storeNetwork(checksum, Crc32c::of(&bytes[at], checked));
    at += checked + kChecksumBytes;
  }
  return bytes;
}

template <class T> void take(In& in) { read<T>(in); }

void takeSections(In& in) {
  for (std::uint8_t section : {1, 3, 4}) {
    in.sectionIs(section);
    in.sectionEnd();
  }
}

// What is read is decided by the attribute id, so that an input can ask for anything.
void takePayload(In& in) {
  static constexpr void (*kTakers[])(In&) = {
      take<bool>,          take<unsigned char>,  take<unsigned short>,     take<unsigned>,
      take<int>,           take<double>,         take<unsigned long long>, take<Vyx::String8>,
      take<Vyx::EntityId>, take<Kest::UniqueId>, take<Lomu::IpGenAddr>,    take<Lomu::IpGenPrefix>,
      take<L3::VrfName>,   take<Acl::AclType>,   take<Pbr::Dscp>,          take<PolicyMap::MatchRule>,
      takeSections};
  auto const attribute = static_cast<std::uint32_t>(in.header().attrId);
  for (std::uint32_t kinds = attribute; in.remaining() != 0; kinds /= std::size(kTakers))
    kTakers[kinds % std::size(kTakers)](in);
}

// RETURNS what came: each message's attribute, or why the reading ended.
std::string readAll(Bytes const& bytes, std::size_t piece) {
  auto const in = Vyx::ptrFromNew(new In(64, kMaxLength));
  std::string told;
  std::size_t at = 0;
  try {
    while (true) {
      while (in->nextMessage()) {
        told += std::to_string(in->header().attrId) + '/';
        try {
          takePayload(*in);
          in->expectEnd();
        } catch (Vyx::Exception const& error) {
          told += error.what();
        }
      }
      if (at == bytes.size()) return told;
      auto const space = in->space();
      if (space.empty() || space.size() > 2 * (kMaxLength + kFrameBytes)) std::abort();
      std::size_t const some = std::min({piece, space.size(), bytes.size() - at});
      std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), some, space.begin());
      in->received(some);
      at += some;
    }
  } catch (Vyx::ProtocolException const& error) {
    return told + error.what();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Bytes const bytes = withChecksums(Bytes(data, data + size));
  std::string const whole = readAll(bytes, bytes.size() + 1);
  std::string const pieces = readAll(bytes, 1 + size % 13);
  if (whole == pieces) return 0;
  std::fprintf(stderr, "whole: %s\nin pieces: %s\n", whole.c_str(), pieces.c_str());
  std::abort();
}
