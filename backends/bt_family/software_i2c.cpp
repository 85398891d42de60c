#include "backends/bt_family/software_i2c.h"

#include "common/wait.h"

namespace zelk {

HRESULT SoftwareI2c::WriteSequence(std::uint8_t device, const std::uint8_t* bytes,
                                   std::uint32_t count) {
  Start();
  Send(device);
  for (std::uint32_t i = 0; i < count; ++i) {
    WaitMs(kI2cGapMs);
    Send(bytes[i]);
  }
  return Stop();
}

HRESULT SoftwareI2c::ReadByte(std::uint8_t device, std::uint8_t* byte) {
  Start();
  Send(device | 1);
  WaitMs(kI2cGapMs);
  Receive(byte);
  return Stop();
}

HRESULT SoftwareI2c::ReadRegisters(std::uint8_t device, std::uint8_t subaddress,
                                   std::uint8_t* bytes, std::uint32_t count) {
  Start();
  Send(device);
  WaitMs(kI2cGapMs);
  Send(subaddress);
  WaitMs(kI2cGapMs);
  Start();
  Send(device | 1);
  if (WaitsForData) WaitMs(kI2cGapMs);
  for (std::uint32_t i = 0; i < count; ++i) {
    Receive(&bytes[i]);
    WaitMs(kI2cGapMs);
  }
  return Stop();
}

}  // namespace zelk
