// The transport through the Bt878 driver: two I2C engines, one of which steps through a transfer,
// and the GPIO pins. Each request that fails says so in the log, with the operation's name.
#pragma once

#include "backends/bt_family/driver_bus.h"
#include "backends/bt_family/software_i2c.h"

namespace zelk {

class Bt878DriverBus final : public DriverBus, public SoftwareI2c {
 public:
  Bt878DriverBus(const ComPtr<IKsPropertySet>& capture, const FamilyLog& log)
      : DriverBus(capture, log), SoftwareI2c(false) {}

  HRESULT Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) override;
  HRESULT Read(std::uint8_t device, std::optional<std::uint8_t>& byte) override;
  // Never a success with 0xFF. The place keeps its value when the chip answers the probe but not
  // the address, and receives what the profile file says when there is no chip or it is blank.
  HRESULT ReadEeprom(std::uint8_t address, std::uint8_t* byte) override;
  HRESULT ReadRemote(std::uint32_t* code) override;
  void UseHardwareI2c(bool hardware) override { InitI2c(hardware); }

  // Sets an engine up and uses it from now on, whatever the driver answers.
  HRESULT InitI2c(bool hardware);

 private:
  // Steps of the software engine.
  HRESULT Start() override;
  HRESULT Stop() override;
  HRESULT Send(std::uint8_t byte) override;
  HRESULT Receive(std::uint8_t* byte) override;

  HRESULT HardwareRead(std::uint8_t device, std::uint8_t* byte);
  HRESULT HardwareWrite(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count);
  void MakeInput(std::uint32_t pin);
  HRESULT ReadPins(std::uint32_t first, std::uint32_t last, std::uint32_t& levels);
  bool AddressEeprom(std::uint8_t address);

  bool HasDriver(const char* operation) const;
  HRESULT Judge(const char* operation, HRESULT code) const;
  HRESULT Command(const char* operation, KsI2cRequest request);
  HRESULT CommandForByte(const char* operation, KsI2cRequest request, std::uint8_t* byte);

  bool Hardware = false;  // engine in use
};

}  // namespace zelk
