// The remote-control receiver of CX2388x boards, on eight GPIO lines.
#pragma once

#include <cstdint>

namespace zelk {

// The key's code: the upper four lines are wired in reverse order, and bit 1 is set while a key
// waits.
constexpr std::uint8_t RemoteCodeOfPort(std::uint8_t lines) {
  std::uint8_t code = lines & 0x0F;
  for (int bit = 4; bit < 8; ++bit) {
    if ((lines >> bit) & 1) code |= 0x80 >> (bit - 4);
  }
  return (code & 0x02) != 0 ? code : 0;
}

}  // namespace zelk
