#include "virtual_cards/chips/i2c_steps.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::uint8_t kReadBit = 0x01;
constexpr std::uint8_t kPulledUp = 0xFF;

}  // namespace

void I2cSteps::Start() {
  EndTransfer();
  state_ = State::kStarted;
}

bool I2cSteps::Write(std::uint8_t byte) {
  if (state_ == State::kWriting) {
    written_.push_back(byte);
    return true;
  }
  // Without a start nobody listens, and a chip that is sending does not either.
  if (state_ != State::kStarted) return false;
  const bool reading = (byte & kReadBit) != 0;
  device_ = bus_.Address(byte, reading ? I2cDirection::kRead : I2cDirection::kWrite);
  if (!device_) {
    state_ = State::kUnheard;
  } else {
    state_ = reading ? State::kReading : State::kWriting;
  }
  return device_ != nullptr;
}

std::uint8_t I2cSteps::Read() {
  std::uint8_t byte = kPulledUp;
  if (state_ == State::kReading) device_->Read({&byte, 1});
  return byte;
}

void I2cSteps::Stop() {
  EndTransfer();
  state_ = State::kIdle;
}

void I2cSteps::Lose() {
  if (state_ == State::kIdle) return;
  EndTransfer();
  state_ = State::kUnheard;
}

void I2cSteps::EndTransfer() {
  if (state_ == State::kWriting && !written_.empty()) device_->Write(written_);
  written_.clear();
}

}  // namespace zelk::virtual_cards
