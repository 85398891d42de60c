#include "virtual_cards/cards/bt878/gpio_pins.h"

namespace zelk::virtual_cards {

void GpioPins::SetOutputEnable(unsigned pin, bool output) {
  const std::uint32_t mask = 1U << pin;
  outputEnables_ = output ? outputEnables_ | mask : outputEnables_ & ~mask;
}

std::uint32_t GpioPins::Read(unsigned first, unsigned last) const {
  const std::uint32_t levels = inputs_ & ~outputEnables_;
  return levels >> first & ((1U << (last - first + 1)) - 1);
}

// Three bits of the code, the receiver's strobe, then the other five.
void GpioPins::ShowKey(std::uint8_t code) {
  constexpr std::uint32_t kStrobe = 0x08;
  const std::uint32_t pins = (code & 0x07U) | kStrobe | (code & 0xF8U) << 1;
  inputs_ = pins << kRemoteFirst;
}

}  // namespace zelk::virtual_cards
