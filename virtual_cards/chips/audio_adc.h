// An audio analogue-digital converter with input gain, of the WM8775 class. It can be written to
// alone.
#pragma once

#include <array>

#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class AudioAdc final : public I2cDevice {
 public:
  static constexpr std::uint8_t kAddress = 0x34;
  static constexpr unsigned kRegisters = 24;

  // Two bytes: register number in bits 7..1, then nine bits of content.
  bool Write(std::span<const std::uint8_t> bytes) override;
  bool Read(std::span<std::uint8_t>) override { return false; }

  // The last nine bits written to a register, 0 before the first and for a register that there is
  // not.
  std::uint16_t Register(unsigned number) const {
    return number < kRegisters ? registers_[number] : std::uint16_t{0};
  }

 private:
  std::array<std::uint16_t, kRegisters> registers_{};
};

}  // namespace zelk::virtual_cards
