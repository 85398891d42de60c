// A chip that stops acknowledging for good after a number of transfers, as one does whose supply
// breaks down.
#pragma once

#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class DyingChip final : public I2cDevice {
 public:
  // The chip must outlive the object.
  DyingChip(I2cDevice& chip, unsigned transfers) : chip_(chip), transfers_(transfers) {}

  bool Acknowledges(I2cDirection direction) override {
    if (transfers_ == 0) return false;
    --transfers_;
    return chip_.Acknowledges(direction);
  }
  bool Write(std::span<const std::uint8_t> bytes) override { return chip_.Write(bytes); }
  bool Read(std::span<std::uint8_t> bytes) override { return chip_.Read(bytes); }

 private:
  I2cDevice& chip_;
  unsigned transfers_;
};

}  // namespace zelk::virtual_cards
