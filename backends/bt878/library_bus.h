// The transport through "PioGate.dll".
#pragma once

#include "backends/bt_family/io_library.h"

namespace zelk {

struct PioGateApi : IoLibraryApi {
  Entry<void(int, int)> SetGpieBit;                          // pin, output enable (0: input)
  Entry<void(int, int, std::uint32_t*, int)> GetGpDataBits;  // first pin, last pin, levels, 0
};

extern constinit PioGateApi pioGate;

inline constexpr char kPioGateFile[] = "PioGate.dll";
extern const std::span<const NamedEntry> kPioGateEntries;

class Bt878LibraryBus final : public IoLibraryBus {
 public:
  // `driver` has the I2C engines; without a capture filter it refuses to switch them, and says so.
  explicit Bt878LibraryBus(CardBus& driver) : IoLibraryBus(pioGate, {0, 6}), Driver(driver) {}

  // The libraries of these cards never got to reading the EEPROM: a chip that acknowledges makes
  // the profile file count, any other leaves the place alone. Never a success.
  HRESULT ReadEeprom(std::uint8_t address, std::uint8_t* byte) override;
  HRESULT ReadRemote(std::uint32_t* code) override;
  void UseHardwareI2c(bool hardware) override { Driver.UseHardwareI2c(hardware); }

 private:
  CardBus& Driver;
};

}  // namespace zelk
