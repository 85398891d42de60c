// The remote-control receiver of Bt878 boards, on nine GPIO pins.
#pragma once

#include <cstdint>

namespace zelk {

inline constexpr std::uint32_t kFirstRemotePin = 15;
inline constexpr std::uint32_t kLastRemotePin = 23;

// The key's code from the pins' levels, the first in bit 0: pin 18 has another use, and the second
// bit is set while a key waits.
constexpr std::uint8_t RemoteCodeOfPins(std::uint32_t levels) {
  const auto code = static_cast<std::uint8_t>(((levels >> 1) & 0xF8) | (levels & 0x07));
  return (code & 0x02) != 0 ? code : 0;
}

}  // namespace zelk
