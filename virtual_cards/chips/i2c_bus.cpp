#include "virtual_cards/chips/i2c_bus.h"

#include <utility>

namespace zelk::virtual_cards {

namespace {

constexpr std::uint8_t WithoutReadBit(std::uint8_t address) { return address & 0xFE; }

}  // namespace

I2cDevice* I2cBus::Attach(std::uint8_t address, I2cDevice* device) {
  for (Seat& seat : seats_) {
    if (seat.address == WithoutReadBit(address)) return std::exchange(seat.device, device);
  }
  seats_.push_back({WithoutReadBit(address), device});
  return nullptr;
}

I2cDevice* I2cBus::Address(std::uint8_t address, I2cDirection direction) const {
  I2cDevice* device = Find(address);
  return device && device->Acknowledges(direction) ? device : nullptr;
}

bool I2cBus::Write(std::uint8_t address, std::span<const std::uint8_t> bytes) const {
  I2cDevice* device = Address(address, I2cDirection::kWrite);
  return device && device->Write(bytes);
}

bool I2cBus::Read(std::uint8_t address, std::span<std::uint8_t> bytes) const {
  I2cDevice* device = Address(address, I2cDirection::kRead);
  return device && device->Read(bytes);
}

bool I2cBus::ReadAt(std::uint8_t address, std::uint8_t subaddress,
                    std::span<std::uint8_t> bytes) const {
  return Write(address, {&subaddress, 1}) && Read(address, bytes);
}

I2cDevice* I2cBus::Find(std::uint8_t address) const {
  for (const Seat& seat : seats_) {
    if (seat.address == WithoutReadBit(address)) return seat.device;
  }
  return nullptr;
}

}  // namespace zelk::virtual_cards
