// A microcontroller that decodes an infra-red remote control and shows the last key in registers.
#pragma once

#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class RemoteReceiver final : public I2cDevice {
 public:
  static constexpr std::uint8_t kAddress = 0x80;
  static constexpr std::uint8_t kKindRegister = 0x0B;
  static constexpr std::uint8_t kCodeRegister = 0x0D;

  // Both registers read 0 before the first key.
  void PressKey(std::uint8_t kind, std::uint8_t code);

  // One byte: the register that the next read shows. A read does not move it.
  bool Write(std::span<const std::uint8_t> bytes) override;
  bool Read(std::span<std::uint8_t> bytes) override;

 private:
  std::uint8_t pointer_ = 0;
  std::uint8_t kind_ = 0;
  std::uint8_t code_ = 0;
};

}  // namespace zelk::virtual_cards
