// A virtual capture card built on a Bt878.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "virtual_cards/cards/bt_family/bt_card.h"
#include "virtual_cards/cards/bt_family/eeprom_state.h"

namespace zelk::virtual_cards {

struct Bt878Options {
  // The tuner module fitted, as a tuner type code: 0, 1, 4 to 15, 20, 21, 40 or 42 to 45. Without
  // an `eeprom` it also chooses the content that the card's maker would have programmed.
  std::uint32_t tunerType = 1;
  // The card is reached through PioGate.dll instead of filters. What the EEPROM holds of the
  // board's description then also stands in "Telmora2k.ini", where the card's installer put it.
  bool ioLibrary = false;
  bool tunerFilter = true;
  std::optional<std::array<std::uint8_t, 256>> eeprom = std::nullopt;
  EepromState eepromState = EepromState::kGood;
  // Transfers that a dying EEPROM still acknowledges.
  unsigned eepromTransfers = 2;
  std::string friendlyName = "Telmora Capture";
  // Entry points that this edition of the I/O library lacks.
  std::vector<std::string> missingEntryPoints = {};
  // The I/O library does not find its kernel driver, or no usable I2C engine.
  bool initFails = false;
  bool i2cFails = false;
};

class Bt878Card : public BtCard {
 public:
  // Throws std::invalid_argument for a tuner type that no such board carries.
  static std::unique_ptr<Bt878Card> Create(const Bt878Options& options, Air air);
};

}  // namespace zelk::virtual_cards
