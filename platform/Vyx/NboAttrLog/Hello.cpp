#include "Vyx/NboAttrLog/Hello.h"

#include "Vyx/NboAttrLog/ByteOrder.h"

#include <algorithm>

namespace Vyx::NboAttrLog {

namespace {

constexpr std::array<unsigned char, 8> kMagic = {'V', 'y', 'x', 'L', 'o', 'g', 0x0d, 0x0a};
constexpr std::size_t kMajorAt = 8, kMinorAt = 10, kFeaturesAt = 12;
static_assert(kFeaturesAt + sizeof(std::uint32_t) == Hello::kBytes);

std::string hexText(std::span<unsigned char const> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (unsigned char const byte : bytes) text += {' ', kDigits[byte >> 4], kDigits[byte & 15]};
  return text;
}

} // namespace

Hello::Bytes Hello::bytes() const {
  Bytes bytes;
  std::copy(kMagic.begin(), kMagic.end(), bytes.begin());
  storeNetwork(bytes.data() + kMajorAt, version.major);
  storeNetwork(bytes.data() + kMinorAt, version.minor);
  storeNetwork(bytes.data() + kFeaturesAt, features);
  return bytes;
}

Hello Hello::fromBytes(std::span<unsigned char const> bytes) {
  return {{loadNetwork<std::uint16_t>(bytes.data() + kMajorAt),
           loadNetwork<std::uint16_t>(bytes.data() + kMinorAt)},
          loadNetwork<std::uint32_t>(bytes.data() + kFeaturesAt)};
}

std::string Hello::refusal(std::span<unsigned char const> bytes) {
  std::size_t const known = std::min(bytes.size(), kMagic.size());
  if (!std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(known), kMagic.begin()))
    return "garbage instead of a hello:" + hexText(bytes);
  if (bytes.size() < kBytes) return "";
  Version const theirs = fromBytes(bytes).version;
  if (theirs.major == kVersion.major) return "";
  return "peer speaks version " + theirs.text() + " of the attribute log, this side " + kVersion.text();
}

} // namespace Vyx::NboAttrLog
