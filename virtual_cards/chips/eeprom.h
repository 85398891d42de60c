// A 24C02: 256 bytes of EEPROM behind one address pointer.
#pragma once

#include <array>

#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class Eeprom final : public I2cDevice {
 public:
  using Image = std::array<std::uint8_t, 256>;

  static constexpr std::uint8_t kAddress = 0xA0;
  static constexpr std::uint8_t kErased = 0xFF;

  explicit Eeprom(const Image& image) : image_(image) {}

  // The first byte sets the pointer, the others are stored from there. The chip writes within one
  // page of 8 bytes at a time: a longer write wraps around to the start of its page.
  bool Write(std::span<const std::uint8_t> bytes) override;
  bool Read(std::span<std::uint8_t> bytes) override;

 private:
  Image image_;
  std::uint8_t pointer_ = 0;
};

}  // namespace zelk::virtual_cards
