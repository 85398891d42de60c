// A virtual capture card built on a Conexant CX2388x.
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

struct Cx2388xOptions {
  // The tuner module fitted, as a tuner type code: 0 to 17, 20, 21 or 24 to 30. Without an
  // `eeprom` it also chooses the content that the card's maker would have programmed.
  std::uint32_t tunerType = 1;
  // The card is reached through PioGate880.dll instead of filters.
  bool ioLibrary = false;
  // Such cards come with and without a driver for the tuner.
  bool tunerFilter = false;
  std::optional<std::array<std::uint8_t, 256>> eeprom = std::nullopt;
  EepromState eepromState = EepromState::kGood;
  // Transfers that a dying EEPROM still acknowledges.
  unsigned eepromTransfers = 2;
  std::string friendlyName = "Korvane, Telmora WDM Video Capture (88x)";
  // Entry points that this edition of the I/O library lacks.
  std::vector<std::string> missingEntryPoints = {};
  // The I/O library does not find its kernel driver, or no usable I2C engine.
  bool initFails = false;
  bool i2cFails = false;
};

class Cx2388xCard : public BtCard {
 public:
  // Throws std::invalid_argument for a tuner type that no such board carries.
  static std::unique_ptr<Cx2388xCard> Create(const Cx2388xOptions& options, Air air);
};

}  // namespace zelk::virtual_cards
