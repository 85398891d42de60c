// What the makers of Bt878 boards program into their EEPROMs.
#pragma once

#include <optional>

#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

inline constexpr std::uint8_t kBt878TunerByte = 0x41;
inline constexpr std::uint8_t kBt878OptionByte = 0x42;
inline constexpr std::uint8_t kBt878ProductByte = 0xFD;

// The image for a tuner type, its rest erased; nothing for a type that no Bt878 board carries.
std::optional<Eeprom::Image> Bt878EepromImage(std::uint32_t tunerType);

}  // namespace zelk::virtual_cards
