// What a card offers behind its transport: a driver's property set, or an I/O library. A device
// chooses one in HWInit and does not ask again which it is.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/com.h"

namespace zelk {

class CardBus {
 public:
  // Device addresses are 8-bit write addresses. At most 64 bytes.
  virtual HRESULT Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) = 0;
  // `byte` is what the transfer left, whatever its result; empty where none took place.
  virtual HRESULT Read(std::uint8_t device, std::optional<std::uint8_t>& byte) = 0;
  // Whether the place (null allowed) is written when the result is a failure differs: see there.
  virtual HRESULT ReadEeprom(std::uint8_t address, std::uint8_t* byte) = 0;
  // The code of the key that is held on the remote control, 0 without one. The place may be null.
  virtual HRESULT ReadRemote(std::uint32_t* code) = 0;
  // The decoder's horizontal lock, 0 when it cannot be read.
  virtual HRESULT ReadHorizontalLock(LONG& locked) = 0;
  // Chooses the I2C engine, on cards whose driver offers two. What the driver answers changes
  // nothing for the transfers that follow.
  virtual void UseHardwareI2c(bool) {}

 protected:
  ~CardBus() = default;
};

// For a transfer to the IF demodulator: it goes by the hardware engine, all others by the software.
class HardwareI2c {
 public:
  explicit HardwareI2c(CardBus& bus) : Bus(bus) { Bus.UseHardwareI2c(true); }
  ~HardwareI2c() { Bus.UseHardwareI2c(false); }
  HardwareI2c(const HardwareI2c&) = delete;
  HardwareI2c& operator=(const HardwareI2c&) = delete;

 private:
  CardBus& Bus;
};

}  // namespace zelk
