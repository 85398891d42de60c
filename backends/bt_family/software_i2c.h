// I2C one condition and one byte at a time, as the Bt878 driver and both I/O libraries offer it.
#pragma once

#include <cstdint>

#include "platform/com.h"

namespace zelk {

// Between two bytes.
inline constexpr std::uint32_t kI2cGapMs = 16;

class SoftwareI2c {
 public:
  // Transactions. Device addresses are 8-bit write addresses. A byte that nobody acknowledges is
  // passed over: the stop condition alone decides the result.
  HRESULT WriteSequence(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count);
  HRESULT ReadByte(std::uint8_t device, std::uint8_t* byte);
  HRESULT ReadRegisters(std::uint8_t device, std::uint8_t subaddress, std::uint8_t* bytes,
                        std::uint32_t count);

 protected:
  // `waitsForData`: the chip is given a gap between its read address and the first byte of a
  // register read.
  explicit SoftwareI2c(bool waitsForData) : WaitsForData(waitsForData) {}
  ~SoftwareI2c() = default;

  // A start or repeated start.
  virtual HRESULT Start() = 0;
  virtual HRESULT Stop() = 0;
  // Fails when the byte was not acknowledged.
  virtual HRESULT Send(std::uint8_t byte) = 0;
  virtual HRESULT Receive(std::uint8_t* byte) = 0;

 private:
  const bool WaitsForData;
};

}  // namespace zelk
