#include "virtual_cards/chips/audio_adc.h"

namespace zelk::virtual_cards {

bool AudioAdc::Write(std::span<const std::uint8_t> bytes) {
  // An unfinished pair is dropped by the stop condition; what follows a pair is not acknowledged.
  if (bytes.size() > 2) return false;
  if (bytes.size() < 2) return true;
  const unsigned number = bytes[0] >> 1;
  if (number < kRegisters)
    registers_[number] = static_cast<std::uint16_t>((bytes[0] & 1) << 8 | bytes[1]);
  return true;
}

}  // namespace zelk::virtual_cards
