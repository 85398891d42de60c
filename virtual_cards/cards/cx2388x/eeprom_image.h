// What the makers of CX2388x boards program into their EEPROMs.
#pragma once

#include <optional>

#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

inline constexpr std::uint8_t kCx2388xTunerByte = 0x06;
inline constexpr std::uint8_t kCx2388xOptionByte = 0x42;

// The image for a tuner type, its rest erased; nothing for a type that no CX2388x board carries.
std::optional<Eeprom::Image> Cx2388xEepromImage(std::uint32_t tunerType);

}  // namespace zelk::virtual_cards
