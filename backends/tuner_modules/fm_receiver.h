// The separate FM receiver chip (TEA5767 class) that some boards carry beside their tuner module:
// five bytes written to tune it, five bytes read for its status.
#pragma once

#include <array>
#include <cstdint>

namespace zelk {

using FmReceiverBytes = std::array<std::uint8_t, 5>;

// The status read last, one copy for the whole library. Byte 1 is the PLL's, byte 2 holds the AFC
// (bits 0 to 6) and the stereo indication (bit 7), the high nibble of byte 3 the level.
inline FmReceiverBytes FmReceiverStatus = {};

// Settings that differ between boards: byte 3 carries the band and de-emphasis.
inline constexpr std::uint8_t kFmReceiverWesternBand = 0x06;
inline constexpr std::uint8_t kFmReceiverJapaneseBand = 0x26;

// The bytes that tune the chip. Its divider counts quarters of the oscillator, 225 kHz below the
// station, in steps of 50 kHz.
constexpr FmReceiverBytes FmReceiverWord(std::uint32_t frequencyKHz, bool stereo,
                                         std::uint8_t band) {
  const std::uint32_t divider = (frequencyKHz * 4000 - 900000) / 50000;
  return {static_cast<std::uint8_t>(divider >> 8), static_cast<std::uint8_t>(divider),
          static_cast<std::uint8_t>(stereo ? 0xA0 : 0xA8), band, 0x00};
}

}  // namespace zelk
