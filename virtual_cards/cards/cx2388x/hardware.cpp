#include "virtual_cards/cards/cx2388x/hardware.h"

namespace zelk::virtual_cards {

// The four upper bits of the code come in the order in which they arrive from the air, the other
// way round.
void Cx2388xHardware::ShowKey(std::uint8_t code) {
  remoteLines_ = code & 0x0F;
  for (unsigned bit = 4; bit < 8; ++bit) {
    if (code >> bit & 1) remoteLines_ |= static_cast<std::uint8_t>(1U << (11 - bit));
  }
}

std::uint8_t Cx2388xHardware::DecoderRegister(unsigned index) const {
  constexpr unsigned kDeviceStatus = 0x100;
  constexpr std::uint8_t kHorizontalLock = 0x20;
  return index == kDeviceStatus && HorizontalLocked() ? kHorizontalLock : 0;
}

}  // namespace zelk::virtual_cards
