// Random addresses in which runs of zeros are frequent.

#pragma once

#include "Lomu/IpGenAddr.h"
#include "support/Random.h"

inline Lomu::Ip6Addr randomIp6(Random& random) {
  unsigned char bytes[16] = {};
  for (int group = 0; group < 8; ++group) {
    if (random.oneIn(2)) continue;
    std::uint32_t const value = random.bits() & (random.oneIn(2) ? 0xffffU : 0xffU);
    bytes[2 * group] = static_cast<unsigned char>(value >> 8);
    bytes[2 * group + 1] = static_cast<unsigned char>(value);
  }
  return Lomu::Ip6Addr(bytes);
}

inline Lomu::Ip6Addr randomIp4(Random& random) {
  unsigned char bytes[16] = {};
  for (int i = 0; i < 4; ++i)
    bytes[i] = static_cast<unsigned char>(random.bits() & (random.oneIn(3) ? 0 : 0xff));
  return Lomu::Ip6Addr(bytes);
}

inline Lomu::IpGenAddr randomAddress(Random& random) {
  return random.oneIn(2) ? Lomu::IpGenAddr(4, randomIp4(random)) : Lomu::IpGenAddr(6, randomIp6(random));
}
