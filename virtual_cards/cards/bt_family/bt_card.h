// What a person can do to a Bt878 or CX2388x card, and measure on it.
#pragma once

#include <cstdint>

#include "virtual_cards/cards/virtual_card.h"
#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class BtCard : public VirtualCard {
 public:
  // A key that is held on the remote control until it is released. Bit 1 of the code marks a key:
  // applications take a code without it for none.
  virtual void PressKey(std::uint8_t code) = 0;
  virtual void ReleaseKey() = 0;
  // Solders a chip of one's own onto the I2C bus, in place of the one at that address; null takes
  // that one off. It must outlive the card's use.
  virtual void FitChip(std::uint8_t address, I2cDevice* chip) = 0;

  // The RF frequency in kHz that the card is tuned to: the picture carrier, or the FM station while
  // the FM section is selected. 0 while nothing valid was written.
  virtual double TunedKHz() const = 0;
  virtual bool HorizontalLocked() const = 0;
  // One of the two hardware locks, 0 or 1.
  virtual bool Lock(unsigned kind) const = 0;
};

}  // namespace zelk::virtual_cards
