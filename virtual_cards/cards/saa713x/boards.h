// SAA713x boards as their maker configured them: which tuner module goes with which board code.
#pragma once

#include <cstdint>

#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

struct Saa713xBoard {
  std::uint32_t tunerType;
  // Low byte of the board configuration. Its bit 0 tells boards with an FM section from their
  // twins.
  std::uint8_t boardCode;
  // EEPROM byte 0x20: names the module where the board code does not, else erased.
  std::uint8_t eepromTuner = Eeprom::kErased;
  // GPIO line 27 switches between the TV tuner and a separate FM receiver.
  bool fmSwitch = false;
};

// The board on which a tuner type is sold, null for a type that no board carries.
const Saa713xBoard* BoardForTuner(std::uint32_t tunerType);
// The board of a board code, null for a code that was never given out.
const Saa713xBoard* BoardForCode(std::uint8_t boardCode);

// What the maker programmed into such a board's EEPROM; the rest of it is erased.
Eeprom::Image DefaultEeprom(const Saa713xBoard& board, bool remoteChip);

}  // namespace zelk::virtual_cards
