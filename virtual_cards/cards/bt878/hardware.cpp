#include "virtual_cards/cards/bt878/hardware.h"

namespace zelk::virtual_cards {

std::uint8_t Bt878Hardware::DecoderRegister(unsigned index) const {
  constexpr unsigned kDeviceStatus = 0;
  constexpr std::uint8_t kVideoPresent = 0x80;
  constexpr std::uint8_t kHorizontalLock = 0x40;
  if (index != kDeviceStatus || !HorizontalLocked()) return 0;
  return kVideoPresent | kHorizontalLock;
}

}  // namespace zelk::virtual_cards
