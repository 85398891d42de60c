// What sits on a virtual Bt878 card.
#pragma once

#include "virtual_cards/cards/bt878/gpio_pins.h"
#include "virtual_cards/cards/bt_family/hardware.h"

namespace zelk::virtual_cards {

class Bt878Hardware final : public BtHardware {
 public:
  using BtHardware::BtHardware;

  GpioPins& Gpio() { return gpio_; }
  void ShowKey(std::uint8_t code) { gpio_.ShowKey(code); }
  void ShowNoKey() { gpio_.ShowNoKey(); }

  // A register of the video decoder; those that nobody reads are 0.
  std::uint8_t DecoderRegister(unsigned index) const;

 private:
  GpioPins gpio_;
};

}  // namespace zelk::virtual_cards
