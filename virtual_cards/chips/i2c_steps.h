// A bus master that drives an I2C bus step by step: start, byte out, byte in, stop. Every byte out
// shows its acknowledge; a chip gets what was written to it as one transfer.
#pragma once

#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

class I2cSteps {
 public:
  // The bus must outlive the object.
  explicit I2cSteps(const I2cBus& bus) : bus_(bus) {}

  // A start condition, or a repeated one in the middle of a transfer, which ends that transfer.
  void Start();
  // The first byte after a start is an address. True when a chip acknowledges the byte.
  bool Write(std::uint8_t byte);
  // All ones while no chip is sending.
  std::uint8_t Read();
  void Stop();
  // A byte went astray on its way: what follows up to the next start is nobody's.
  void Lose();

 private:
  enum class State { kIdle, kStarted, kWriting, kReading, kUnheard };

  void EndTransfer();

  const I2cBus& bus_;
  State state_ = State::kIdle;
  I2cDevice* device_ = nullptr;
  std::vector<std::uint8_t> written_;
};

}  // namespace zelk::virtual_cards
