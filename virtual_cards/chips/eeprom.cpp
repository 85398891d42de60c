#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

bool Eeprom::Write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return true;
  pointer_ = bytes[0];
  for (const std::uint8_t byte : bytes.subspan(1)) {
    image_[pointer_] = byte;
    pointer_ = static_cast<std::uint8_t>((pointer_ & 0xF8) | ((pointer_ + 1) & 0x07));
  }
  return true;
}

bool Eeprom::Read(std::span<std::uint8_t> bytes) {
  for (std::uint8_t& byte : bytes) byte = image_[pointer_++];
  return true;
}

}  // namespace zelk::virtual_cards
