// Where things answer on these boards: 8-bit I2C bus addresses (bit 0 is the read/write bit) and
// GPIO lines.
#pragma once

#include <cstdint>

#include "backends/tuner_modules/bus_addresses.h"

namespace zelk {

inline constexpr std::uint8_t kRemoteChipAddress = 0x80;
inline constexpr std::uint8_t kFmReceiverAddress = 0xC0;   // separate FM receiver chip
inline constexpr std::uint8_t kTunerStatusAddress = 0xC1;  // status byte of the ALPS modules
inline constexpr std::uint8_t kTunerAddress = 0xC2;

inline constexpr std::uint32_t kRemoteAcknowledgeLine = 2;
inline constexpr std::uint32_t kRemoteDataLine = 3;  // first of eight
inline constexpr std::uint32_t kTvSwitchLine = 27;   // 1 TV, 0 FM radio

}  // namespace zelk
