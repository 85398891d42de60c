// A virtual capture card built on a Philips SAA7130/7133/7134/7135.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "virtual_cards/cards/virtual_card.h"
#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

struct Saa713xOptions {
  // The tuner module fitted, as a tuner type code. It also chooses the board code and EEPROM byte
  // 0x20 that the card's maker would have given such a board, unless the fields below say
  // otherwise.
  std::uint32_t tunerType = 1;
  std::uint32_t chipId = 0x7134;
  // The board configuration word as the driver reports it; its low byte is the board code.
  std::optional<std::uint32_t> boardConfig = std::nullopt;
  // The whole 24C02 image; without one the EEPROM holds what such a board would have.
  std::optional<std::array<std::uint8_t, 256>> eeprom = std::nullopt;
  bool eepromPresent = true;
  bool tunerFilter = true;
  // Remote control through the receiver chip at 0x80 (EEPROM byte 0x22, bit 2 clear) or GPIO lines.
  bool remoteChip = true;
  std::string friendlyName = "Korvane, Telmora WDM Video Capture (7134)";
};

class Saa713xCard : public VirtualCard {
 public:
  static std::unique_ptr<Saa713xCard> Create(const Saa713xOptions& options, Air air);

  // --- What a person or the environment does to the card ---
  // A key on the remote control: the receiver chip reports `kind` and `code` until the next key.
  virtual void PressKey(std::uint8_t kind, std::uint8_t code) = 0;
  // The level that the remote-control receiver puts on a GPIO input line.
  virtual void DriveGpioInput(unsigned line, bool high) = 0;
  // The standard that the video decoder's own detection reports.
  virtual void SetDetectedStandard(std::uint32_t standard) = 0;
  // Solders a chip of one's own onto the I2C bus, in place of the one at that address. It must
  // outlive the card's use.
  virtual void FitChip(std::uint8_t address, I2cDevice* chip) = 0;

  // --- What can be measured on the card ---
  virtual bool GpioOutput(unsigned line) const = 0;
  // The RF frequency in kHz that the card is tuned to: the picture carrier, or the FM station while
  // the FM section or receiver is selected. 0 while nothing valid was written.
  virtual double TunedKHz() const = 0;
  virtual bool HorizontalLocked() const = 0;
  // The last value written to a 4-byte property of the driver's own set, 0 before the first.
  virtual std::uint32_t DriverProperty(std::uint32_t id) const = 0;
};

}  // namespace zelk::virtual_cards
