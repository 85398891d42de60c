// Where chips that the families have in common answer: 8-bit I2C bus addresses (bit 0 is the
// read/write bit).
#pragma once

#include <cstdint>

namespace zelk {

inline constexpr std::uint8_t kDemodulatorAddress = 0x86;         // TDA9887 class IF demodulator
inline constexpr std::uint8_t kSiliconDemodulatorAddress = 0x96;  // TDA8290
inline constexpr std::uint8_t kEepromAddress = 0xA0;

}  // namespace zelk
