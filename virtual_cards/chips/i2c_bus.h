// An I2C bus with chips on it. Addresses are 8-bit bus addresses; the read/write bit does not
// matter.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelk::virtual_cards {

enum class I2cDirection { kWrite, kRead };

// A chip as the bus sees it. A transfer that the chip does not acknowledge answers false and
// changes nothing. A read at a subaddress is a write of that byte followed by a read. A master that
// drives the bus step by step writes in one piece but reads byte by byte.
class I2cDevice {
 public:
  virtual ~I2cDevice() = default;
  // Whether the chip acknowledges its address. The bus asks once for each transfer, ahead of it.
  virtual bool Acknowledges(I2cDirection) { return true; }
  virtual bool Write(std::span<const std::uint8_t> bytes) = 0;
  virtual bool Read(std::span<std::uint8_t> bytes) = 0;
};

class I2cBus {
 public:
  // Puts a chip on the bus. It takes over the address from the chip that was there, which is
  // returned (null for none). The bus does not own its chips.
  I2cDevice* Attach(std::uint8_t address, I2cDevice* device);

  // Puts an address on the bus: the chip that acknowledges it, null for none.
  I2cDevice* Address(std::uint8_t address, I2cDirection direction) const;
  bool Write(std::uint8_t address, std::span<const std::uint8_t> bytes) const;
  bool Read(std::uint8_t address, std::span<std::uint8_t> bytes) const;
  bool ReadAt(std::uint8_t address, std::uint8_t subaddress, std::span<std::uint8_t> bytes) const;

 private:
  struct Seat {
    std::uint8_t address;
    I2cDevice* device;
  };

  I2cDevice* Find(std::uint8_t address) const;

  std::vector<Seat> seats_;
};

}  // namespace zelk::virtual_cards
